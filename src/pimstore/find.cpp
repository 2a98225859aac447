#include "pimstore/find.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <optional>
#include <span>
#include <string>

#include "core/log.h"
#include "mailstore/mail_operations.h"
#include "pimstore/contact_fields.h"
#include "pimstore/item_access.h"
#include "pimstore/item_types.h"
#include "pimstore/notes.h"
#include "pimstore/session.h"

namespace tamu {
namespace {

using platform::BStr;
using platform::ComPtr;
using platform::ExactTerm;
using platform::IAppointment;
using platform::IContact;
using platform::IDispatch;
using platform::IExactFind;
using platform::IFolder;
using platform::IPOutlookItemCollection;
using platform::ITask;

using Items = ComPtr<IPOutlookItemCollection>;

Items ItemsOf(std::int32_t folder_number) {
  ComPtr<IFolder> folder;
  Items items;
  if (platform::Failed(POL_Application()->GetDefaultFolder(folder_number, folder.put())) ||
      !folder || platform::Failed(folder->get_Items(items.put()))) {
    items.reset();
  }
  return items;
}

ExactTerm TextTerm(const char16_t* property, const BStr& text) noexcept {
  return {property, text.get(), text.size(), 0};
}

// Asks the store for an item by its index. Nothing when the store has no such thing: its items have
// to be walked. Else the item, or null.
template <typename Item>
std::optional<ComPtr<Item>> FindByIndex(const Items& items, std::span<const ExactTerm> terms) {
  ComPtr<IExactFind> index;
  if (platform::Failed(items->QueryInterface(platform::IID_IExactFind, index.put_void())) ||
      !index) {
    return std::nullopt;
  }
  ComPtr<IDispatch> item;
  if (platform::Failed(
          index->FindExact(terms.data(), static_cast<std::uint32_t>(terms.size()), item.put()))) {
    return std::nullopt;
  }
  return ItemAs<Item>(item.get());
}

// Visits all items in order up to the first one that matches.
template <typename Item, typename Matches>
ComPtr<Item> FindByWalk(const Items& items, Matches matches) {
  const std::int32_t count = GetValue(items.get(), &IPOutlookItemCollection::get_Count, 0);
  for (std::int32_t i = 1; i <= count; ++i) {
    ComPtr<IDispatch> found;
    if (platform::Failed(items->Item(i, found.put()))) continue;
    ComPtr<Item> item = ItemAs<Item>(found.get());
    if (item && matches(item.get())) return item;
  }
  return {};
}

// The parts of a name in the order of the record, which is that of kNameFields.
using Name = std::array<BStr, kNameFields.size()>;
constexpr std::array<const char16_t*, kNameFields.size()> kNameProperties = {
    u"LastName", u"FirstName", u"MiddleName", u"Title", u"Suffix"};
// In which order a restriction names them.
constexpr std::array<std::size_t, kNameFields.size()> kRestrictionOrder = {3, 1, 2, 0, 4};

// "[FirstName]="Anna" AND [LastName]="Berg"", from the parts that are not empty. Quotes within a
// part stand as they are. Throws std::bad_alloc.
std::u16string RestrictionOf(const Name& name) {
  std::u16string restriction;
  for (const std::size_t part : kRestrictionOrder) {
    if (name[part].empty()) continue;
    if (!restriction.empty()) restriction += u" AND ";
    restriction += u'[';
    restriction += kNameProperties[part];
    restriction += u"]=\"";
    restriction += name[part].view();
    restriction += u'"';
  }
  return restriction;
}

BStr RestrictionText(const Name& name) noexcept {
  try {
    const std::u16string text = RestrictionOf(name);
    return BStr(platform::SysAllocStringLen(text.data(), static_cast<std::uint32_t>(text.size())));
  } catch (const std::bad_alloc&) {
    return {};
  }
}

bool HasName(IContact* contact, const Name& name) {
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (GetText(contact, kNameFields[i].get).view() != name[i].view()) return false;
  }
  return true;
}

// A restriction takes no notice of case and none of empty parts, so every answer is compared.
ComPtr<IContact> FindByRestriction(const Items& items, const Name& name) {
  const BStr restriction = RestrictionText(name);
  if (restriction.get() == nullptr) return {};
  ComPtr<IDispatch> found;
  platform::HRESULT result = items->Find(restriction.get(), found.put());
  while (platform::Succeeded(result) && found.get() != nullptr) {
    ComPtr<IContact> contact = ItemAs<IContact>(found.get());
    if (contact && HasName(contact.get(), name)) return contact;
    result = items->FindNext(found.put());
  }
  return {};
}

ComPtr<IContact> FindContact(const ContactShape& record) {
  const Items items = ItemsOf(platform::kContactsFolder);
  if (!items) return {};
  Name name;
  std::array<ExactTerm, kNameFields.size()> terms;
  for (std::uint32_t i = 0; i < name.size(); ++i) {
    name[i] = WideOf(record.prop_n, i);
    terms[i] = TextTerm(kNameProperties[i], name[i]);
  }
  if (auto found = FindByIndex<IContact>(items, terms)) return *found;
  return FindByRestriction(items, name);
}

ComPtr<ITask> FindTask(const ToDoShape& record) {
  const BStr subject = WideOf(record.prop_summary);
  if (subject.empty()) return {};
  const Items items = ItemsOf(platform::kTasksFolder);
  if (!items) return {};
  const ExactTerm term = TextTerm(u"Subject", subject);
  if (auto found = FindByIndex<ITask>(items, {&term, 1})) return *found;
  return FindByWalk<ITask>(items, [&](ITask* task) {
    return GetText(task, &ITask::get_Subject).view() == subject.view();
  });
}

ComPtr<IAppointment> FindAppointment(const EventShape& record) {
  const Items items = ItemsOf(platform::kCalendarFolder);
  if (!items) return {};
  const DateValue start = DATE_FromProperty(record.prop_dtstart);
  const BStr subject = WideOf(record.prop_summary);
  const bool by_subject = !subject.empty();
  const BStr body = by_subject ? BStr() : WideOf(record.prop_description);
  const std::array<ExactTerm, 2> terms = {
      {{u"Start", nullptr, 0, start.days},
       by_subject ? TextTerm(u"Subject", subject) : TextTerm(u"Body", body)}};
  if (auto found = FindByIndex<IAppointment>(items, terms)) return *found;
  return FindByWalk<IAppointment>(items, [&](IAppointment* appointment) {
    platform::DATE date = 0;
    if (platform::Failed(appointment->get_Start(&date)) || date != start.days) return false;
    if (by_subject) {
      return GetText(appointment, &IAppointment::get_Subject).view() == subject.view();
    }
    return GetText(appointment, &IAppointment::get_Body).view() == body.view();
  });
}

// Reports a found item. One whose id cannot be read is found all the same.
template <typename Item>
std::uint32_t Report(const ComPtr<Item>& item, char* id_out) {
  if (!item) return 0;
  std::int32_t oid = 0;
  if (id_out != nullptr && platform::Succeeded(item->get_Oid(&oid))) {
    const auto text = ObjectIdText(oid);
    std::memcpy(id_out, text.data(), text.size());
  }
  return 1;
}

std::uint32_t FindNote(const NoteShape& record, char* id_out) {
  const BStr title = WideOf(record.prop_summary);
  if (title.empty() || !NOTE_Exists(title.c_str())) return 0;
  if (id_out != nullptr) {
    if (const MemPtr<char> text = AnsiOf(title)) std::strcpy(id_out, text.get());
  }
  return 1;
}

}  // namespace

std::uint32_t POL_FindObject(ObjectKind kind, const ObjectRecord* record, char* id_out,
                             std::uint32_t) noexcept {
  LOG_Info("TAMU:  POL_FindObject()");
  if (kind >= KIND_MSG_INBOX && kind <= KIND_MSG_OUTBOX) {
    return MAPI_FindMail(&record->message, id_out);
  }
  if (POL_Application() == nullptr) return 0;
  switch (kind) {
    case KIND_CONTACT:
      return Report(FindContact(record->contact), id_out);
    case KIND_CALENDAR:
      if (record->event.component == COMPONENT_EVENT) {
        return Report(FindAppointment(record->event), id_out);
      }
      return Report(FindTask(record->todo), id_out);
    case KIND_NOTE:
      return FindNote(record->note, id_out);
    default:
      return 0;
  }
}

}  // namespace tamu
