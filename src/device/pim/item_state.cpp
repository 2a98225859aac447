#include "device/pim/item_state.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "device/pim/guarded.h"
#include "device/pim/local_date.h"

namespace tamu::device {
namespace {

using platform::DATE;
using platform::HRESULT;
namespace hr = platform::hr;

constexpr std::int32_t kNewAppointmentMinutes = 60;

constexpr std::size_t Index(AppointmentProperty property) noexcept {
  return static_cast<std::size_t>(property);
}
constexpr std::size_t Index(TaskProperty property) noexcept {
  return static_cast<std::size_t>(property);
}

bool HasType(const PropertyValue& value, ValueType type) noexcept {
  switch (type) {
    case ValueType::kText:
      return std::holds_alternative<std::u16string>(value);
    case ValueType::kDate:
      return std::holds_alternative<double>(value);
    case ValueType::kNumber:
    case ValueType::kFlag:
      return std::holds_alternative<std::int32_t>(value);
    case ValueType::kBytes:
      break;
  }
  return std::holds_alternative<Bytes>(value);
}

double DateIn(const ItemRecord& item, std::size_t property) noexcept {
  const double* date = std::get_if<double>(&item.values[property]);
  return date ? *date : platform::kNoDate;
}

// From start to end of an appointment; below 0 when it ends before it starts.
std::int64_t LengthInSeconds(const ItemRecord& item) noexcept {
  return SecondsOf(DateIn(item, Index(AppointmentProperty::End))) -
         SecondsOf(DateIn(item, Index(AppointmentProperty::Start)));
}

bool EndsBeforeStart(const ItemRecord& item) noexcept {
  const DATE start = DateIn(item, Index(AppointmentProperty::Start));
  const DATE end = DateIn(item, Index(AppointmentProperty::End));
  const std::int32_t days = DayOf(end) - DayOf(start);
  return days < 0 || (days == 0 && TimeOf(end) < TimeOf(start));
}

// As many as a duration can say.
std::int32_t Minutes(std::int64_t seconds) noexcept {
  constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::min(seconds / kSecondsPerMinute, kMost));
}

// Duration follows start and end.
void UpdateDuration(ItemRecord* item) {
  NumberOf(*item, Index(AppointmentProperty::Duration)) = Minutes(LengthInSeconds(*item));
}

// The pattern of a recurring appointment follows the appointment.
void UpdatePattern(ItemState* item) {
  if (!item->record.recurrence) return;
  RecurrenceRecord& pattern = *item->record.recurrence;
  const DATE start = DateOf(item->record, Index(AppointmentProperty::Start));
  if (DayOf(pattern.pattern_start) != DayOf(start)) pattern.pattern_start = DayOf(start);
  pattern.start_time = TimeOf(start);
  pattern.duration = NumberOf(item->record, Index(AppointmentProperty::Duration));
  item->end_time.reset();
}

// What the pattern has of the item as long as it is not put.
void FollowAppointment(const ItemState& item, RecurrenceRecord* pattern) noexcept {
  const DATE start = DateIn(item.record, Index(AppointmentProperty::Start));
  if (!item.start_was_put) pattern->pattern_start = DayOf(start);
  if (!item.time_was_put) pattern->start_time = TimeOf(start);
  if (!item.duration_was_put) pattern->duration = Minutes(LengthInSeconds(item.record));
}

void FollowTask(const ItemState& item, RecurrenceRecord* pattern) noexcept {
  if (item.start_was_put) return;
  const DATE start = DateIn(item.record, Index(TaskProperty::StartDate));
  const DATE due = DateIn(item.record, Index(TaskProperty::DueDate));
  DATE first = start != platform::kNoDate ? start : due;
  if (first == platform::kNoDate && platform::Failed(Today(&first))) return;
  pattern->pattern_start = DayOf(first);
}

// Makes the record what is to be stored.
HRESULT PrepareToSave(PutEnd put_end, ItemRecord* item) {
  if (item->kind == ItemKind::kAppointment) {
    if (EndsBeforeStart(*item)) return hr::kInvalidDates;
    NumberOf(*item, Index(AppointmentProperty::MeetingStatus)) = item->recipients.empty() ? 0 : 1;
  }
  if (item->recurrence) CompleteEnd(&*item->recurrence, put_end);
  DropStrayExceptions(item);
  return hr::kOk;
}

}  // namespace

std::u16string& TextOf(ItemRecord& item, std::size_t property) {
  return std::get<std::u16string>(item.values[property]);
}
double& DateOf(ItemRecord& item, std::size_t property) {
  return std::get<double>(item.values[property]);
}
std::int32_t& NumberOf(ItemRecord& item, std::size_t property) {
  return std::get<std::int32_t>(item.values[property]);
}
Bytes& BytesOf(ItemRecord& item, std::size_t property) {
  return std::get<Bytes>(item.values[property]);
}

bool IsWellFormed(const ItemRecord& item) noexcept {
  const std::span<const PropertyInfo> rows = PropertiesOf(item.kind);
  if (item.values.size() != rows.size()) return false;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (!HasType(item.values[i], rows[i].type)) return false;
  }
  return true;
}

std::shared_ptr<ItemState> MakeState(PimApplication* application, ItemRecord record) {
  auto state = std::make_shared<ItemState>();
  application->AddRef();
  state->application.reset(application);
  state->record = std::move(record);
  for (std::size_t i = 0; i < state->record.recipients.size(); ++i) {
    state->recipient_ids.push_back(state->next_recipient_id++);
  }
  return state;
}

HRESULT FillNewItem(ItemKind kind, ItemRecord* item) {
  *item = EmptyItem(kind);
  if (kind == ItemKind::kTask) {
    NumberOf(*item, Index(TaskProperty::Importance)) = platform::kImportanceNormal;
  }
  if (kind != ItemKind::kAppointment) return hr::kOk;
  DATE start = 0;
  TAMU_DEVICE_TRY(NextFullHour(&start));
  DateOf(*item, Index(AppointmentProperty::Start)) = start;
  DateOf(*item, Index(AppointmentProperty::End)) =
      DateOfSeconds(SecondsOf(start) + kNewAppointmentMinutes * kSecondsPerMinute);
  NumberOf(*item, Index(AppointmentProperty::Duration)) = kNewAppointmentMinutes;
  NumberOf(*item, Index(AppointmentProperty::BusyStatus)) = platform::kBusyBusy;
  return hr::kOk;
}

HRESULT SaveItem(ItemState* item) noexcept {
  return Guarded([item] {
    ItemStore* store = item->application->store();
    if (store == nullptr) return hr::kUnexpected;
    if (item->deleted) return hr::kItemNotFound;
    ItemRecord record = item->record;
    TAMU_DEVICE_TRY(PrepareToSave(item->put_end, &record));
    TAMU_DEVICE_TRY(store->Save(&record));
    item->record = std::move(record);
    item->put_end = PutEnd::kNone;
    return hr::kOk;
  });
}

HRESULT DeleteItem(ItemState* item) noexcept {
  ItemStore* store = item->application->store();
  if (store == nullptr) return hr::kUnexpected;
  if (item->deleted || item->record.oid == 0) return hr::kItemNotFound;
  TAMU_DEVICE_TRY(store->Delete(item->record.oid));
  item->deleted = true;
  return hr::kOk;
}

RecurrenceRecord CurrentPattern(const ItemState& item) noexcept {
  if (item.record.recurrence) return *item.record.recurrence;
  RecurrenceRecord pattern = item.prepared;
  if (item.record.kind == ItemKind::kAppointment) {
    FollowAppointment(item, &pattern);
  } else {
    FollowTask(item, &pattern);
  }
  return pattern;
}

RecurrenceRecord CompletePattern(const ItemState& item) noexcept {
  RecurrenceRecord pattern = CurrentPattern(item);
  CompleteEnd(&pattern, item.put_end);
  return pattern;
}

void ClearPattern(ItemState* item) noexcept {
  item->record.recurrence.reset();
  item->record.exceptions.clear();
  item->prepared = RecurrenceRecord();
  item->start_was_put = false;
  item->time_was_put = false;
  item->duration_was_put = false;
  item->end_time.reset();
  item->put_end = PutEnd::kNone;
}

HRESULT PutStart(ItemState* item, DATE date) noexcept {
  if (!IsDate(date)) return hr::kInvalidArgument;
  ItemRecord& record = item->record;
  const std::int64_t length = LengthInSeconds(record);
  const bool keep_end = EndsBeforeStart(record);
  DateOf(record, Index(AppointmentProperty::Start)) = date;
  if (!keep_end) {
    DateOf(record, Index(AppointmentProperty::End)) = DateOfSeconds(SecondsOf(date) + length);
  } else if (!EndsBeforeStart(record)) {
    UpdateDuration(&record);
  }
  UpdatePattern(item);
  return hr::kOk;
}

HRESULT PutEndDate(ItemState* item, DATE date) noexcept {
  if (!IsDate(date)) return hr::kInvalidArgument;
  DateOf(item->record, Index(AppointmentProperty::End)) = date;
  if (EndsBeforeStart(item->record)) return hr::kOk;  // Save refuses it
  UpdateDuration(&item->record);
  UpdatePattern(item);
  return hr::kOk;
}

HRESULT PutDuration(ItemState* item, std::int32_t minutes) noexcept {
  if (minutes < 0) return hr::kInvalidArgument;
  ItemRecord& record = item->record;
  NumberOf(record, Index(AppointmentProperty::Duration)) = minutes;
  const DATE start = DateOf(record, Index(AppointmentProperty::Start));
  DateOf(record, Index(AppointmentProperty::End)) =
      DateOfSeconds(SecondsOf(start) + std::int64_t{minutes} * kSecondsPerMinute);
  UpdatePattern(item);
  return hr::kOk;
}

HRESULT DeleteOccurrence(ItemState* series, DATE original_start) noexcept {
  return Guarded([series, original_start] {
    ItemStore* store = series->application->store();
    if (store == nullptr) return hr::kUnexpected;
    if (series->deleted || !series->record.recurrence) return hr::kItemNotFound;
    const ExceptionRecord exception{.original_start = original_start, .deleted = true};
    const std::int32_t day = DayOf(original_start);
    if (ExceptionOn(series->record, day) != nullptr) return hr::kItemNotFound;
    ItemRecord in_hand = series->record;
    SetException(&in_hand, exception);
    if (series->record.oid != 0) {
      ItemRecord stored;
      TAMU_DEVICE_TRY(store->Load(series->record.oid, &stored));
      if (stored.recurrence && HappensOn(*stored.recurrence, day)) {
        SetException(&stored, {JoinDate(day, stored.recurrence->start_time), true});
        TAMU_DEVICE_TRY(store->Save(&stored));
      }
    }
    series->record = std::move(in_hand);
    return hr::kOk;
  });
}

}  // namespace tamu::device
