#include <algorithm>
#include <array>

#include "pimstore/contact_fields.h"
#include "pimstore/contact_map.h"
#include "text/property.h"

namespace tamu {
namespace {

using platform::BStr;
using platform::IContact;

template <std::size_t count>
std::array<BStr, count> TextsOf(IContact* item, const std::array<ContactText, count>& fields) {
  std::array<BStr, count> texts;
  for (std::size_t i = 0; i < count; ++i) texts[i] = GetText(item, fields[i].get);
  return texts;
}

template <std::size_t count>
bool AnyText(const std::array<BStr, count>& texts) noexcept {
  return std::any_of(texts.begin(), texts.end(), [](const BStr& text) { return !text.empty(); });
}

// Stores texts as the components of a property from `first` on; empty ones leave theirs empty.
template <std::size_t count>
void SetComponents(Property* property, const std::array<BStr, count>& texts, std::uint32_t first,
                   std::uint32_t options) noexcept {
  for (const BStr& text : texts) PROP_SetWide(text.c_str(), property, options, first++);
}

void AppendName(IContact* item, Ref<Property>* chain) {
  SetComponents(PROP_Append(chain), TextsOf(item, kNameFields), 0, 0);
}

void AppendTextIfAny(IContact* item, const ContactText& field, Ref<Property>* chain) {
  const BStr text = GetText(item, field.get);
  if (!text.empty()) AppendText(chain, text);
}

void AppendAddress(IContact* item, const ContactAddress& address, Ref<Property>* chain) {
  const auto texts = TextsOf(item, address.fields);
  if (!AnyText(texts)) return;
  Property* const property = PROP_Append(chain);
  if (!address.type.empty()) PROP_AddParam(property, address.type);
  SetComponents(property, texts, kStreetComponent, kAllowQuotedPrintable);
}

void AppendOrganisation(IContact* item, Ref<Property>* chain) {
  const auto texts = TextsOf(item, kOrgFields);
  if (AnyText(texts)) SetComponents(PROP_Append(chain), texts, 0, 0);
}

void AppendTelephone(IContact* item, const ContactTelephone& row, Ref<Property>* chain) {
  const BStr number = GetText(item, row.field.get);
  if (number.empty()) return;
  Property* const property = PROP_Append(chain);
  PROP_AddParam(property, row.type);
  PROP_SetWide(number.c_str(), property, 0, 0);
}

void AppendEmails(IContact* item, Ref<Property>* chain) {
  for (const ContactText& field : kEmailFields) {
    const BStr address = GetText(item, field.get);
    if (address.empty()) continue;
    const bool preferred = *chain == nullptr;
    Property* const property = PROP_Append(chain);
    PROP_AddParam(property, "INTERNET");
    if (preferred) PROP_AddParam(property, "PREF");
    PROP_SetWide(address.c_str(), property, 0, 0);
  }
}

void AppendExtra(IContact* item, const ContactExtra& row, Ref<Property>* chain) {
  if (row.text.get == nullptr) {
    return AppendDateIfAny(chain, GetDate(item, row.date.get), DateForm::kDate);
  }
  const BStr text = GetText(item, row.text.get);
  if (row.always_written || !text.empty()) AppendText(chain, text, row.options);
}

}  // namespace

void ContactFromStore(IContact* item, ContactShape* record) noexcept {
  FillHeader(record, kStoredContact, "2.1", GetValue(item, &IContact::get_Oid, 0));
  AppendName(item, &record->prop_n);
  AppendTextIfAny(item, kFileAs, &record->prop_fn);
  AppendDateIfAny(&record->prop_bday, GetDate(item, kBirthday.get), DateForm::kDate);
  for (const ContactAddress& address : kAddresses) AppendAddress(item, address, &record->prop_adr);
  AppendTextIfAny(item, kJobTitle, &record->prop_title);
  AppendOrganisation(item, &record->prop_org);
  for (const ContactTelephone& row : kTelephoneFields)
    AppendTelephone(item, row, &record->prop_tel);
  AppendTextIfAny(item, kWebPage, &record->prop_url);
  AppendEmails(item, &record->prop_email);
  for (const ContactExtra& row : kExtras) AppendExtra(item, row, &(record->*row.property));
}

}  // namespace tamu
