// pimstore/calendar_fields.h - what tasks and appointments are mapped alike: class, recurrence,
// and the header and texts of their records.
//   `Item` is ITask or IAppointment, whose methods have the same names.
#ifndef TAMU_PIMSTORE_CALENDAR_FIELDS_H_
#define TAMU_PIMSTORE_CALENDAR_FIELDS_H_

#include <string_view>

#include "pimstore/item_access.h"
#include "pimstore/recurrence_map.h"
#include "platform/com_ptr.h"
#include "text/property.h"
#include "text/property_text.h"

namespace tamu {

template <typename Item>
void PutClass(Item* item, Property* property) {
  const platform::BStr text = WideOf(property);
  if (text.empty()) return;
  const bool is_private = text.view() == u"PRIVATE" || text.view() == u"CONFIDENTIAL";
  item->put_Sensitivity(is_private ? platform::kSensitivityPrivate : platform::kSensitivityNormal);
}

template <typename Item>
void AppendClass(Item* item, Ref<Property>* chain) {
  switch (GetValue(item, &Item::get_Sensitivity, -1)) {
    case platform::kSensitivityNormal:
      return AppendAscii(chain, "PUBLIC");
    case platform::kSensitivityPrivate:
      return AppendAscii(chain, "PRIVATE");
    default:
      return;
  }
}

// Replaces the item's recurrence by the rule, which begins at `start` (null: where the pattern has
// it). Without a rule, and for one that the store cannot express, the recurrence is cleared.
// Returns the pattern when the rule was translated.
template <typename Item>
platform::ComPtr<platform::IRecurrencePattern> PutRecurrence(Item* item, const Property* rule,
                                                             const Property* start) {
  platform::ComPtr<platform::IRecurrencePattern> pattern;
  if (!HasText(rule)) {
    item->ClearRecurrencePattern();
    return pattern;
  }
  if (platform::Failed(item->GetRecurrencePattern(pattern.put())) || !pattern) return {};
  if (start != nullptr) pattern->put_PatternStartDate(DATE_FromProperty(start).days);
  const RuleTranslation translation = RecurrenceToStore(pattern.get(), PROP_GetValue(rule, 0));
  if (translation == RuleTranslation::kDone) return pattern;
  pattern.reset();
  if (translation == RuleTranslation::kNotExpressible) item->ClearRecurrencePattern();
  return pattern;
}

// The pattern of an item that recurs, else null.
template <typename Item>
platform::ComPtr<platform::IRecurrencePattern> PatternOf(Item* item) {
  platform::ComPtr<platform::IRecurrencePattern> pattern;
  if (!GetFlag(item, &Item::get_IsRecurring) ||
      platform::Failed(item->GetRecurrencePattern(pattern.put()))) {
    pattern.reset();
  }
  return pattern;
}

template <typename Item>
void AppendDescription(Item* item, Ref<Property>* chain) {
  const platform::BStr text = GetText(item, &Item::get_Body);
  if (!text.empty()) AppendText(chain, text, kAllowQuotedPrintable);
}

template <typename Item, typename Shape>
void FillCalendarHeader(Item* item, std::uint8_t component, Shape* record) {
  FillHeader(record, kStoredCalendarItem, "1.0", GetValue(item, &Item::get_Oid, 0));
  record->component = component;
}

}  // namespace tamu

#endif  // TAMU_PIMSTORE_CALENDAR_FIELDS_H_
