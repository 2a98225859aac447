#include "pimstore/exceptions.h"

#include <utility>

#include "core/log.h"
#include "pimstore/item_access.h"
#include "platform/com_ptr.h"
#include "text/property.h"

namespace tamu {
namespace {

using platform::ComPtr;
using platform::IAppointment;
using platform::IException;
using platform::IExceptions;
using platform::IRecurrencePattern;

bool HasDate(const StringItem& component) noexcept {
  return component.text != nullptr && *component.text != '\0';
}

// Calls `visit` with the text of every date.
template <typename Visit>
void ForEachDate(const Property* first, Visit visit) {
  for (const Property* node = first; node != nullptr; node = node->next) {
    for (const StringItem* item = node->values; item != nullptr; item = item->next) {
      if (HasDate(*item)) visit(item->text.get());
    }
  }
}

void DeleteOccurrence(IRecurrencePattern* pattern, const char* date) {
  ComPtr<IAppointment> occurrence;
  if (platform::Failed(pattern->GetOccurrence(DATE_FromIso8601(date).days, occurrence.put())) ||
      !occurrence) {
    LOG_Error("TAMU:  Could not find Appointment for '%s' (Exception not made)", date);
    return;
  }
  occurrence->Delete();
}

}  // namespace

void ExceptionsToStore(IAppointment* item, IRecurrencePattern* pattern,
                       const Property* first) noexcept {
  bool any = false;
  ForEachDate(first, [&](const char*) { any = true; });
  if (!any) return;
  item->Save();
  ForEachDate(first, [&](const char* date) { DeleteOccurrence(pattern, date); });
}

void ExceptionsFromStore(IRecurrencePattern* pattern, DateForm form,
                         Ref<Property>* chain) noexcept {
  ComPtr<IExceptions> exceptions;
  if (platform::Failed(pattern->get_Exceptions(exceptions.put())) || !exceptions) return;
  const std::int32_t count = GetValue(exceptions.get(), &IExceptions::get_Count, 0);
  std::uint32_t dates = 0;
  for (std::int32_t i = 1; i <= count; ++i) {
    ComPtr<IException> exception;
    if (platform::Failed(exceptions->Item(i, exception.put())) || !exception) continue;
    if (!GetFlag(exception.get(), &IException::get_Deleted)) continue;
    const DateValue date = GetDate(exception.get(), &IException::get_OriginalDate);
    if (DATE_IsNone(date)) continue;
    MemPtr<char> text = DateBytes(date, form);
    if (!text) continue;
    if (*chain == nullptr && PROP_Append(chain) == nullptr) return;
    if (PROP_SetValue(*chain, std::move(text), dates)) ++dates;
  }
}

}  // namespace tamu
