#include <array>
#include <cstring>

#include "pimstore/contact_fields.h"
#include "pimstore/contact_map.h"
#include "text/property.h"

namespace tamu {
namespace {

using platform::BStr;
using platform::IContact;

bool Carries(const Property& property, std::string_view type) noexcept {
  return PROP_FindParam(property.params, type) != nullptr;
}

// An entry of a list counts when it has a value, be it an empty one.
bool Counts(const Property& property) noexcept { return property.values != nullptr; }

void Put(IContact* item, const ContactText& field, const BStr& text) {
  (item->*field.put)(text.get());
}

void Put(IContact* item, const ContactDate& field, const Property* property) {
  (item->*field.put)(DATE_FromProperty(property).days);
}

// Puts the components of a property, the empty ones, too.
template <std::size_t count>
void PutComponents(IContact* item, const std::array<ContactText, count>& fields,
                   Property* property) {
  std::uint32_t component = 0;
  for (const ContactText& field : fields) Put(item, field, WideOf(property, component++));
}

// Post office box, extended address and street, a line each, without the empty ones.
BStr StreetOf(Property* address) noexcept {
  constexpr std::u16string_view kLineBreak = u"\r\n";
  std::array<BStr, kStreetComponent + 1> lines;
  std::size_t length = 0;
  for (std::uint32_t i = 0; i <= kStreetComponent; ++i) {
    lines[i] = WideOf(address, i);
    if (lines[i].empty()) continue;
    length += lines[i].size() + (length != 0 ? kLineBreak.size() : 0);
  }
  if (length == 0) return {};
  BStr street(platform::SysAllocStringLen(nullptr, static_cast<std::uint32_t>(length)));
  if (street.get() == nullptr) return street;
  char16_t* out = street.get();
  for (const BStr& line : lines) {
    if (line.empty()) continue;
    if (out != street.get()) out += kLineBreak.copy(out, kLineBreak.size());
    out += line.view().copy(out, line.size());
  }
  return street;
}

void PutAddress(IContact* item, const ContactAddress& address, Property* property) {
  Put(item, address.fields[0], StreetOf(property));
  for (std::uint32_t i = 1; i < address.fields.size(); ++i) {
    Put(item, address.fields[i], WideOf(property, kStreetComponent + i));
  }
}

// The first home address, the first of the others that is for work, and the first of the rest.
void PutAddresses(IContact* item, Property* first) {
  std::array<bool, kAddresses.size()> taken{};
  const auto take = [&](AddressPlace place, Property* property) {
    if (taken[place]) return false;
    taken[place] = true;
    PutAddress(item, kAddresses[place], property);
    return true;
  };
  for (Property* entry = first; entry != nullptr; entry = entry->next) {
    if (!Counts(*entry)) continue;
    if (Carries(*entry, "HOME") && take(kHomeAddress, entry)) continue;
    if (Carries(*entry, "WORK") && take(kBusinessAddress, entry)) continue;
    take(kOtherAddress, entry);
  }
}

// Types that name a field of their own. A number may have several of them.
struct SpecialTelephone {
  std::string_view type;
  TelephonePlace place;
};
constexpr SpecialTelephone kSpecialTelephones[] = {
    {"CELL", kMobileTelephone},   {"PAGER", kPager},
    {"CAR", kCarTelephone},       {"X-ASSISTANT", kAssistantTelephone},
    {"X-RADIO", kRadioTelephone},
};

class TelephoneRouter {
 public:
  explicit TelephoneRouter(IContact* item) noexcept : item_(item) {}

  void Route(Property* entry) {
    if (RouteSpecial(entry)) return;
    const bool fax = Carries(*entry, "FAX");
    const bool work = Carries(*entry, "WORK");
    const bool home = entry->params == nullptr || Carries(*entry, "HOME") ||
                      (!work && (fax || Carries(*entry, "VOICE")));
    if (home) {
      fax ? (void)Take(kHomeFax, entry) : TakeFirstFree(kHomeTelephone, kHome2Telephone, entry);
    } else if (work) {
      fax ? (void)Take(kBusinessFax, entry)
          : TakeFirstFree(kBusinessTelephone, kBusiness2Telephone, entry);
    }
  }

 private:
  bool RouteSpecial(Property* entry) {
    bool special = false;
    for (const SpecialTelephone& row : kSpecialTelephones) {
      if (!Carries(*entry, row.type)) continue;
      special = true;
      Take(row.place, entry);
    }
    return special;
  }

  // Every field takes the first number that is routed to it.
  bool Take(TelephonePlace place, Property* entry) {
    if (taken_[place]) return false;
    taken_[place] = true;
    Put(item_, kTelephoneFields[place].field, WideOf(entry));
    return true;
  }

  void TakeFirstFree(TelephonePlace first, TelephonePlace second, Property* entry) {
    if (!Take(first, entry)) Take(second, entry);
  }

  IContact* item_;
  std::array<bool, kTelephones> taken_{};
};

void PutTelephones(IContact* item, Property* first) {
  TelephoneRouter router(item);
  for (Property* entry = first; entry != nullptr; entry = entry->next) {
    if (Counts(*entry)) router.Route(entry);
  }
}

void PutWebPage(IContact* item, Property* first) {
  for (Property* entry = first; entry != nullptr; entry = entry->next) {
    const BStr url = WideOf(entry);
    if (url.empty()) continue;
    Put(item, kWebPage, url);
    return;
  }
}

// Only addresses of type INTERNET are taken, on purpose.
bool IsEmail(const Property& entry) noexcept { return Counts(entry) && Carries(entry, "INTERNET"); }

// The preferred address first (of several the last one, on purpose), then the others in order.
void PutEmails(IContact* item, Property* first) {
  Property* preferred = nullptr;
  for (Property* entry = first; entry != nullptr; entry = entry->next) {
    if (IsEmail(*entry) && Carries(*entry, "PREF")) preferred = entry;
  }
  std::size_t next = 0;
  if (preferred != nullptr) Put(item, kEmailFields[next++], WideOf(preferred));
  for (Property* entry = first; entry != nullptr && next < kEmailFields.size();
       entry = entry->next) {
    if (entry != preferred && IsEmail(*entry)) Put(item, kEmailFields[next++], WideOf(entry));
  }
}

void PutExtra(IContact* item, const ContactExtra& row, Property* property) {
  if (property == nullptr) return;
  if (row.text.put != nullptr) {
    Put(item, row.text, WideOf(property));
  } else {
    Put(item, row.date, property);
  }
}

}  // namespace

void ContactToStore(IContact* item, const ContactShape& record) noexcept {
  Put(item, kFileAs, WideOf(record.prop_fn));
  PutComponents(item, kNameFields, record.prop_n);
  if (record.prop_bday != nullptr) Put(item, kBirthday, record.prop_bday.get());
  PutAddresses(item, record.prop_adr);
  if (record.prop_title != nullptr) Put(item, kJobTitle, WideOf(record.prop_title));
  if (record.prop_org != nullptr) PutComponents(item, kOrgFields, record.prop_org);
  PutTelephones(item, record.prop_tel);
  PutWebPage(item, record.prop_url);
  PutEmails(item, record.prop_email);
  for (const ContactExtra& row : kExtras) PutExtra(item, row, record.*row.property);
}

}  // namespace tamu
