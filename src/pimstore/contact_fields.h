// pimstore/contact_fields.h - which property of a vCard is which field of a stored contact.
//   What both directions agree on: a walk over these tables fills an item and a record alike.
#ifndef TAMU_PIMSTORE_CONTACT_FIELDS_H_
#define TAMU_PIMSTORE_CONTACT_FIELDS_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "pimstore/item_access.h"
#include "text/property_text.h"

namespace tamu {

struct ContactText {
  ItemGetter<platform::IContact, platform::BSTR> get;
  ItemPutter<platform::IContact, platform::BSTR> put;
};
struct ContactDate {
  ItemGetter<platform::IContact, platform::DATE> get;
  ItemPutter<platform::IContact, platform::DATE> put;
};

#define TAMU_FIELD(name) \
  { &platform::IContact::get_##name, &platform::IContact::put_##name }

inline constexpr ContactText kFileAs = TAMU_FIELD(FileAs);
inline constexpr ContactDate kBirthday = TAMU_FIELD(Birthday);
inline constexpr ContactText kJobTitle = TAMU_FIELD(JobTitle);
inline constexpr ContactText kWebPage = TAMU_FIELD(WebPage);

// The components of N and of ORG, in their order.
inline constexpr std::array<ContactText, 5> kNameFields = {{
    TAMU_FIELD(LastName),
    TAMU_FIELD(FirstName),
    TAMU_FIELD(MiddleName),
    TAMU_FIELD(Title),
    TAMU_FIELD(Suffix),
}};
inline constexpr std::array<ContactText, 2> kOrgFields = {{
    TAMU_FIELD(CompanyName),
    TAMU_FIELD(Department),
}};

// The fields of an address are the components of ADR from the street on; the two before it, post
// office box and extended address, have none.
inline constexpr std::uint32_t kStreetComponent = 2;
struct ContactAddress {
  std::string_view type;  // the parameter of an ADR of this kind; none for the other address
  std::array<ContactText, 5> fields;
};
#define TAMU_ADDRESS(name)                                                     \
  {                                                                            \
    {                                                                          \
      TAMU_FIELD(name##AddressStreet), TAMU_FIELD(name##AddressCity),          \
          TAMU_FIELD(name##AddressState), TAMU_FIELD(name##AddressPostalCode), \
          TAMU_FIELD(name##AddressCountry)                                     \
    }                                                                          \
  }
enum AddressPlace : std::size_t { kHomeAddress, kBusinessAddress, kOtherAddress };
inline constexpr std::array<ContactAddress, 3> kAddresses = {{
    {"HOME", TAMU_ADDRESS(Home)},
    {"WORK", TAMU_ADDRESS(Business)},
    {"", TAMU_ADDRESS(Other)},
}};

// The telephone numbers in the order in which they are written. Reading routes by rules of its own:
// a foreign card needs no more than the words somewhere in its parameters.
struct ContactTelephone {
  ContactText field;
  std::string_view type;  // the one parameter that the TEL is written with
};
enum TelephonePlace : std::size_t {
  kHomeTelephone,
  kHome2Telephone,
  kBusinessTelephone,
  kBusiness2Telephone,
  kHomeFax,
  kBusinessFax,
  kMobileTelephone,
  kPager,
  kCarTelephone,
  kAssistantTelephone,
  kRadioTelephone,
  kTelephones
};
inline constexpr std::array<ContactTelephone, kTelephones> kTelephoneFields = {{
    {TAMU_FIELD(HomeTelephoneNumber), "HOME;VOICE"},
    {TAMU_FIELD(Home2TelephoneNumber), "HOME;VOICE"},
    {TAMU_FIELD(BusinessTelephoneNumber), "WORK;VOICE"},
    {TAMU_FIELD(Business2TelephoneNumber), "WORK;VOICE"},
    {TAMU_FIELD(HomeFaxNumber), "HOME;FAX"},
    {TAMU_FIELD(BusinessFaxNumber), "WORK;FAX"},
    {TAMU_FIELD(MobileTelephoneNumber), "CELL"},
    {TAMU_FIELD(PagerNumber), "PAGER"},
    {TAMU_FIELD(CarTelephoneNumber), "CAR"},
    {TAMU_FIELD(AssistantTelephoneNumber), "TYPE=X-ASSISTANT"},
    {TAMU_FIELD(RadioTelephoneNumber), "TYPE=X-RADIO"},
}};

inline constexpr std::array<ContactText, 3> kEmailFields = {{
    TAMU_FIELD(Email1Address),
    TAMU_FIELD(Email2Address),
    TAMU_FIELD(Email3Address),
}};

// The last properties of a card, in their order: one value each, a text or a date.
struct ContactExtra {
  Ref<Property> ContactShape::*property;
  ContactText text;  // null for a date
  ContactDate date;
  std::uint32_t options;  // of PROP_SetWide
  bool always_written;
};
#define TAMU_EXTRA_TEXT(property, name, options, always) \
  { &ContactShape::property, TAMU_FIELD(name), {nullptr, nullptr}, options, always }
#define TAMU_EXTRA_DATE(property, name) \
  { &ContactShape::property, {nullptr, nullptr}, TAMU_FIELD(name), 0, false }
inline constexpr std::array<ContactExtra, 6> kExtras = {{
    TAMU_EXTRA_TEXT(prop_note, Body, kAllowQuotedPrintable, false),
    TAMU_EXTRA_TEXT(prop_spouse, Spouse, 0, false), TAMU_EXTRA_DATE(prop_anniversary, Anniversary),
    TAMU_EXTRA_TEXT(prop_children, Children, 0, false),
    TAMU_EXTRA_TEXT(prop_assistant, AssistantName, 0, false),
    TAMU_EXTRA_TEXT(prop_category, Categories, 0, true),  // on purpose
}};

#undef TAMU_EXTRA_DATE
#undef TAMU_EXTRA_TEXT
#undef TAMU_ADDRESS
#undef TAMU_FIELD

}  // namespace tamu

#endif  // TAMU_PIMSTORE_CONTACT_FIELDS_H_
