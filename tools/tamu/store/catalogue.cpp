#include "store/catalogue.h"

#include "device/ink/documents.h"
#include "display_text.h"
#include "platform/bstr.h"
#include "platform/last_error.h"
#include "text/date_value.h"

namespace tamu::tool {
namespace {

using namespace platform;

enum class Walk : std::uint8_t { kDone, kStopped, kFailed };

template <typename Interface>
std::u16string Text(Interface* item, HRESULT (TAMU_COM_CALL Interface::*getter)(BSTR*)) {
  BStr text;
  static_cast<void>((item->*getter)(text.put()));
  return std::u16string(text.view());
}

template <typename Interface>
DATE Date(Interface* item, HRESULT (TAMU_COM_CALL Interface::*getter)(DATE*)) {
  DATE date = kNoDate;
  static_cast<void>((item->*getter)(&date));
  return date;
}

template <typename Interface>
bool Flag(Interface* item, HRESULT (TAMU_COM_CALL Interface::*getter)(VARIANT_BOOL*)) {
  VARIANT_BOOL flag = kVariantFalse;
  static_cast<void>((item->*getter)(&flag));
  return flag != kVariantFalse;
}

std::optional<double> Known(DATE date) {
  return date == kNoDate ? std::nullopt : std::optional<double>(date);
}

void Describe(IContact* contact, CatalogueEntry* entry) {
  entry->title = Text(contact, &IContact::get_FileAs);
  if (entry->title.empty()) {
    const std::u16string first = Text(contact, &IContact::get_FirstName);
    const std::u16string last = Text(contact, &IContact::get_LastName);
    entry->title = first + (first.empty() || last.empty() ? u"" : u" ") + last;
  }
  entry->detail = Text(contact, &IContact::get_CompanyName);
}

void Describe(IAppointment* event, CatalogueEntry* entry) {
  entry->title = Text(event, &IAppointment::get_Subject);
  entry->when = Known(Date(event, &IAppointment::get_Start));
  entry->detail = Text(event, &IAppointment::get_Location);
  if (Flag(event, &IAppointment::get_IsRecurring)) {
    entry->state = "repeats";
  } else if (Flag(event, &IAppointment::get_AllDayEvent)) {
    entry->state = "all day";
  }
}

void Describe(ITask* task, CatalogueEntry* entry) {
  entry->title = Text(task, &ITask::get_Subject);
  entry->when = Known(Date(task, &ITask::get_DueDate));
  if (Flag(task, &ITask::get_Complete)) {
    entry->state = "done";
  } else if (Flag(task, &ITask::get_IsRecurring)) {
    entry->state = "repeats";
  }
}

// The items of one folder.
template <typename Interface>
Walk WalkItems(const DeviceSession& device, StoredKind kind, std::int32_t folder, const GUID& iid,
               const CatalogueTaker& taker) {
  const ComPtr<IPOutlookItemCollection> items = device.Items(folder);
  std::int32_t count = 0;
  if (!items || Failed(items->get_Count(&count))) return Walk::kFailed;
  for (std::int32_t i = 1; i <= count; ++i) {
    ComPtr<IDispatch> dispatch;
    ComPtr<Interface> item;
    if (Failed(items->Item(i, dispatch.put())) || !dispatch ||
        Failed(dispatch->QueryInterface(iid, item.put_void()))) {
      return Walk::kFailed;
    }
    CatalogueEntry entry;
    entry.id.kind = kind;
    static_cast<void>(item->get_Oid(&entry.id.oid));
    Describe(item.get(), &entry);
    if (!taker(entry)) return Walk::kStopped;
  }
  return Walk::kDone;
}

Walk WalkNotes(const CatalogueTaker& taker) {
  constexpr double kDaysBefore1970 = 25569;  // of 30 December 1899
  constexpr double kSecondsOfDay = 86400;
  std::vector<device::Document> documents;
  if (device::DOCUMENTS_List(&documents) != 0) return Walk::kFailed;
  for (const device::Document& document : documents) {
    CatalogueEntry entry;
    entry.id.kind = StoredKind::kNote;
    entry.id.title = document.title;
    entry.title = document.title;
    const double utc = kDaysBefore1970 + static_cast<double>(document.modified) / kSecondsOfDay;
    DateFields fields;
    if (DATE_ToFields({utc, true}, &fields)) {
      const DateValue local = DATE_FromUtc(fields);
      if (local.valid) entry.when = local.days;
    }
    if (!taker(entry)) return Walk::kStopped;
  }
  return Walk::kDone;
}

void Describe(const SRow& row, CatalogueEntry* entry) {
  for (std::uint32_t i = 0; i < row.cValues; ++i) {
    const SPropValue& cell = row.lpProps[i];
    switch (cell.ulPropTag) {
      case PR_ENTRYID:
        entry->id.entry_id.assign(cell.Value.bin.lpb, cell.Value.bin.lpb + cell.Value.bin.cb);
        break;
      case PR_SUBJECT:
        entry->title = cell.Value.lpszW;
        break;
      case PR_SENDER_EMAIL_ADDRESS:
        entry->detail = cell.Value.lpszW;
        break;
      case PR_MESSAGE_FLAGS:
        if ((cell.Value.l & kMessageRead) == 0) entry->state = "unread";
        break;
      case PR_MESSAGE_DELIVERY_TIME: {
        const DateValue local = DATE_FromFileTime(cell.Value.ft);
        if (local.valid) entry->when = local.days;
        break;
      }
      default:
        break;
    }
  }
}

Walk WalkFolder(MailBox box, const CatalogueTaker& taker) {
  constexpr std::int32_t kRowsAtOnce = 50;
  IMAPIFolder* const folder = DeviceSession::Folder(box);
  if (folder == nullptr) return Walk::kFailed;
  ComPtr<IMAPITable> table;
  SizedPropTagArray<5> columns{5,
                               {PR_ENTRYID, PR_SUBJECT, PR_SENDER_EMAIL_ADDRESS, PR_MESSAGE_FLAGS,
                                PR_MESSAGE_DELIVERY_TIME}};
  if (Failed(folder->GetContentsTable(0, table.put())) ||
      Failed(table->SetColumns(columns.get(), 0))) {
    return Walk::kFailed;
  }
  for (;;) {
    SRowSet* rows = nullptr;
    if (Failed(table->QueryRows(kRowsAtOnce, 0, &rows))) return Walk::kFailed;
    bool go_on = rows->cRows != 0;
    const bool end = !go_on;
    for (std::uint32_t i = 0; go_on && i < rows->cRows; ++i) {
      CatalogueEntry entry;
      entry.id.kind = StoredKind::kMessage;
      entry.folder = MAILBOX_Name(box);
      Describe(rows->aRow[i], &entry);
      go_on = taker(entry);
    }
    FreeProws(rows);
    if (end) return Walk::kDone;
    if (!go_on) return Walk::kStopped;
  }
}

Walk WalkMessages(const CatalogueTaker& taker) {
  for (const MailBox box : kMailBoxes) {
    if (const Walk walk = WalkFolder(box, taker); walk != Walk::kDone) return walk;
  }
  return Walk::kDone;
}

Walk WalkKind(const DeviceSession& device, StoredKind kind, const CatalogueTaker& taker) {
  switch (kind) {
    case StoredKind::kContact:
      return WalkItems<IContact>(device, kind, kContactsFolder, IID_IContact, taker);
    case StoredKind::kEvent:
      return WalkItems<IAppointment>(device, kind, kCalendarFolder, IID_IAppointment, taker);
    case StoredKind::kTodo:
      return WalkItems<ITask>(device, kind, kTasksFolder, IID_ITask, taker);
    case StoredKind::kNote:
      return WalkNotes(taker);
    case StoredKind::kMessage:
      break;
  }
  return WalkMessages(taker);
}

std::string FailureText(StoredKind kind) {
  return "the " + std::string(STORED_Words(kind).many) + " of the device cannot be read";
}

bool CountItems(const DeviceSession& device, std::int32_t folder, std::uint64_t* count) {
  const ComPtr<IPOutlookItemCollection> items = device.Items(folder);
  std::int32_t number = 0;
  if (!items || Failed(items->get_Count(&number))) return false;
  *count = static_cast<std::uint64_t>(number);
  return true;
}

bool CountMessages(std::uint64_t* count) {
  *count = 0;
  for (const MailBox box : kMailBoxes) {
    IMAPIFolder* const folder = DeviceSession::Folder(box);
    ComPtr<IMAPITable> table;
    std::uint32_t rows = 0;
    if (folder == nullptr || Failed(folder->GetContentsTable(0, table.put())) ||
        Failed(table->GetRowCount(0, &rows))) {
      return false;
    }
    *count += rows;
  }
  return true;
}

}  // namespace

std::string CATALOGUE_Label(const CatalogueEntry& entry) {
  std::string text(STORED_Words(entry.id.kind).one);
  if (entry.id.kind != StoredKind::kNote) text += " " + entry.id.Text();
  if (!entry.title.empty()) text += " \"" + DISPLAY_Line(entry.title) + "\"";
  return text;
}

bool CATALOGUE_List(const DeviceSession& device, const std::vector<StoredKind>& kinds,
                    const CatalogueTaker& taker, std::string* problem) {
  for (const StoredKind kind : kinds) {
    switch (WalkKind(device, kind, taker)) {
      case Walk::kDone:
        break;
      case Walk::kStopped:
        return true;
      case Walk::kFailed:
        *problem = FailureText(kind);
        return false;
    }
  }
  return true;
}

bool CATALOGUE_Count(const DeviceSession& device, StoredKind kind, std::uint64_t* count,
                     std::string* problem) {
  bool counted = false;
  std::vector<device::Document> documents;
  switch (kind) {
    case StoredKind::kContact:
      counted = CountItems(device, kContactsFolder, count);
      break;
    case StoredKind::kEvent:
      counted = CountItems(device, kCalendarFolder, count);
      break;
    case StoredKind::kTodo:
      counted = CountItems(device, kTasksFolder, count);
      break;
    case StoredKind::kNote:
      counted = device::DOCUMENTS_List(&documents) == 0;
      *count = documents.size();
      break;
    case StoredKind::kMessage:
      counted = CountMessages(count);
      break;
  }
  if (!counted) *problem = FailureText(kind);
  return counted;
}

}  // namespace tamu::tool
