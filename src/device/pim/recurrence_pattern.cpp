#include "device/call_gate.h"
#include "device/pim/guarded.h"
#include "device/pim/item_values.h"
#include "device/pim/local_date.h"
#include "device/pim/pim_objects.h"

namespace tamu::device {
namespace {

using platform::DATE;
using platform::HRESULT;
using platform::VARIANT_BOOL;
namespace hr = platform::hr;

constexpr std::int32_t kAllWeekdays = 127;
constexpr std::int32_t kLastDayOfMonth = 31;
constexpr std::int32_t kLastInstance = 5;
constexpr std::int32_t kLastMonth = 12;
constexpr std::int32_t kNoLimit = std::numeric_limits<std::int32_t>::max();

constexpr std::size_t Index(AppointmentProperty property) noexcept {
  return static_cast<std::size_t>(property);
}

bool IsType(std::int32_t type) noexcept {
  switch (type) {
    case platform::kRecursDaily:
    case platform::kRecursWeekly:
    case platform::kRecursMonthly:
    case platform::kRecursMonthlyNth:
    case platform::kRecursYearly:
    case platform::kRecursYearlyNth:
      return true;
    default:
      return false;
  }
}

// Where what is put goes.
RecurrenceRecord& PatternToPut(ItemState* item) noexcept {
  return item->record.recurrence ? *item->record.recurrence : item->prepared;
}

// A recurring appointment starts and lasts as its pattern says.
void FollowPattern(ItemState* item) noexcept {
  if (!item->record.recurrence || item->record.kind != ItemKind::kAppointment) return;
  const RecurrenceRecord pattern = *item->record.recurrence;
  const std::optional<double> end_time = item->end_time;
  const DATE start = JoinDate(DayOf(pattern.pattern_start), pattern.start_time);
  if (DateOf(item->record, Index(AppointmentProperty::Start)) != start) {
    static_cast<void>(PutStart(item, start));
  }
  if (NumberOf(item->record, Index(AppointmentProperty::Duration)) != pattern.duration) {
    static_cast<void>(PutDuration(item, pattern.duration));
  }
  item->end_time = end_time;
}

// The length that ends at a time of day, of the same day or the next.
std::int32_t MinutesUntil(double start_time, double end_time) noexcept {
  const std::int32_t seconds = SecondsOfTime(end_time) - SecondsOfTime(start_time);
  return (seconds < 0 ? seconds + kSecondsPerDay : seconds) / kSecondsPerMinute;
}

double EndTimeOf(const RecurrenceRecord& pattern) noexcept {
  return TimeOf(DateOfSeconds(SecondsOfTime(pattern.start_time) +
                              std::int64_t{pattern.duration} * kSecondsPerMinute));
}

// The item in hand of one occurrence. Throws std::bad_alloc when memory runs out.
std::shared_ptr<ItemState> MakeOccurrenceState(const std::shared_ptr<ItemState>& series,
                                               DATE original_start) {
  ItemRecord record = series->record;
  const std::int64_t length = SecondsOf(DateOf(record, Index(AppointmentProperty::End))) -
                              SecondsOf(DateOf(record, Index(AppointmentProperty::Start)));
  record.recurrence.reset();
  record.exceptions.clear();
  DateOf(record, Index(AppointmentProperty::Start)) = original_start;
  DateOf(record, Index(AppointmentProperty::End)) =
      DateOfSeconds(SecondsOf(original_start) + length);
  std::shared_ptr<ItemState> state = MakeState(series->application.get(), record);
  state->occurrence = OccurrenceOf{series, original_start, std::move(record)};
  return state;
}

class Pattern final : public ItemObject<Pattern, platform::IRecurrencePattern> {
 public:
  explicit Pattern(std::shared_ptr<ItemState> state) noexcept : ItemObject(std::move(state)) {}

  [[nodiscard]] bool Implements(const platform::GUID& iid) const noexcept {
    return iid == platform::IID_IDispatch || iid == platform::IID_IRecurrencePattern;
  }

  // The getters, and the putters of plain fields with their lowest and highest numbers.
#define TAMU_GET(name, type, value)                           \
  HRESULT TAMU_COM_CALL get_##name(type* out) override {      \
    TAMU_DEVICE_OUT(out, type{});                             \
    TAMU_DEVICE_CALL("IRecurrencePattern::get_" #name);       \
    const RecurrenceRecord pattern = CurrentPattern(state()); \
    *out = value;                                             \
    return hr::kOk;                                           \
  }
#define TAMU_FIELD(name, field, lowest, highest)                              \
  TAMU_GET(name, std::int32_t, pattern.field)                                 \
  HRESULT TAMU_COM_CALL put_##name(std::int32_t number) override {            \
    TAMU_DEVICE_CALL("IRecurrencePattern::put_" #name);                       \
    if (number < (lowest) || number > (highest)) return hr::kInvalidArgument; \
    PatternToPut(&state()).field = number;                                    \
    return hr::kOk;                                                           \
  }
  TAMU_GET(RecurrenceType, std::int32_t, pattern.type)
  TAMU_GET(PatternStartDate, DATE, pattern.pattern_start)
  TAMU_GET(StartTime, DATE, pattern.start_time)
  TAMU_GET(EndTime, DATE, state().end_time ? *state().end_time : EndTimeOf(pattern))
  TAMU_GET(PatternEndDate, DATE, pattern.pattern_end)
  TAMU_GET(NoEndDate, VARIANT_BOOL,
           pattern.no_end ? platform::kVariantTrue : platform::kVariantFalse)
  TAMU_GET(Occurrences, std::int32_t, pattern.occurrences)
  TAMU_GET(Duration, std::int32_t, pattern.duration)
  TAMU_FIELD(Interval, interval, 1, kNoLimit)
  TAMU_FIELD(DayOfWeekMask, day_of_week_mask, 0, kAllWeekdays)
  TAMU_FIELD(DayOfMonth, day_of_month, -kLastDayOfMonth, kLastDayOfMonth)
  TAMU_FIELD(Instance, instance, 0, kLastInstance)
  TAMU_FIELD(MonthOfYear, month_of_year, 0, kLastMonth)
#undef TAMU_GET
#undef TAMU_FIELD

  HRESULT TAMU_COM_CALL put_RecurrenceType(std::int32_t type) override {
    TAMU_DEVICE_CALL("IRecurrencePattern::put_RecurrenceType");
    if (!IsType(type)) return hr::kInvalidArgument;
    RecurrenceRecord pattern = CurrentPattern(state());
    pattern.type = type;
    pattern.interval = 1;
    pattern.day_of_week_mask = 0;
    pattern.day_of_month = 0;
    pattern.instance = 0;
    pattern.month_of_year = 0;
    record().recurrence = pattern;
    FollowPattern(&state());
    return hr::kOk;
  }
  HRESULT TAMU_COM_CALL put_PatternStartDate(DATE date) override {
    TAMU_DEVICE_CALL("IRecurrencePattern::put_PatternStartDate");
    if (!IsDate(date) || date == platform::kNoDate) return hr::kInvalidArgument;
    PatternToPut(&state()).pattern_start = date;
    state().start_was_put = true;
    FollowPattern(&state());
    return hr::kOk;
  }
  HRESULT TAMU_COM_CALL put_StartTime(DATE time) override {
    TAMU_DEVICE_CALL("IRecurrencePattern::put_StartTime");
    if (!HasTimes() || !IsDate(time)) return hr::kInvalidArgument;
    RecurrenceRecord pattern = CurrentPattern(state());
    pattern.start_time = TimeOf(time);
    if (state().end_time) pattern.duration = MinutesUntil(pattern.start_time, *state().end_time);
    PutTimes(pattern);
    return hr::kOk;
  }
  HRESULT TAMU_COM_CALL put_EndTime(DATE time) override {
    TAMU_DEVICE_CALL("IRecurrencePattern::put_EndTime");
    if (!HasTimes() || !IsDate(time)) return hr::kInvalidArgument;
    RecurrenceRecord pattern = CurrentPattern(state());
    state().end_time = TimeOf(time);
    pattern.duration = MinutesUntil(pattern.start_time, *state().end_time);
    PutTimes(pattern);
    return hr::kOk;
  }
  HRESULT TAMU_COM_CALL put_Duration(std::int32_t minutes) override {
    TAMU_DEVICE_CALL("IRecurrencePattern::put_Duration");
    if (!HasTimes() || minutes < 0) return hr::kInvalidArgument;
    RecurrenceRecord pattern = CurrentPattern(state());
    state().end_time.reset();
    pattern.duration = minutes;
    PutTimes(pattern);
    return hr::kOk;
  }
  HRESULT TAMU_COM_CALL put_PatternEndDate(DATE date) override {
    TAMU_DEVICE_CALL("IRecurrencePattern::put_PatternEndDate");
    if (!IsDate(date) || date == platform::kNoDate) return hr::kInvalidArgument;
    RecurrenceRecord& pattern = PatternToPut(&state());
    pattern.pattern_end = date;
    pattern.no_end = false;
    state().put_end = PutEnd::kDate;
    return hr::kOk;
  }
  HRESULT TAMU_COM_CALL put_NoEndDate(VARIANT_BOOL no_end) override {
    TAMU_DEVICE_CALL("IRecurrencePattern::put_NoEndDate");
    PatternToPut(&state()).no_end = no_end != 0;
    return hr::kOk;
  }
  HRESULT TAMU_COM_CALL put_Occurrences(std::int32_t count) override {
    TAMU_DEVICE_CALL("IRecurrencePattern::put_Occurrences");
    if (count < 1) return hr::kInvalidArgument;
    RecurrenceRecord& pattern = PatternToPut(&state());
    pattern.occurrences = count;
    pattern.no_end = false;
    state().put_end = PutEnd::kCount;
    return hr::kOk;
  }

  HRESULT TAMU_COM_CALL get_Exceptions(platform::IExceptions** exceptions) override {
    TAMU_DEVICE_OUT(exceptions, nullptr);
    TAMU_DEVICE_CALL("IRecurrencePattern::get_Exceptions");
    return MakeExceptions(shared_state(), exceptions);
  }
  HRESULT TAMU_COM_CALL get_Application(platform::IPOutlookApp** application) override {
    return GetApplication("IRecurrencePattern::get_Application", state().application.get(),
                          application);
  }
  // A date at midnight means the occurrence of that day; any other has to be its start, to the
  // second. Tasks have no occurrences to give.
  HRESULT TAMU_COM_CALL GetOccurrence(DATE date, platform::IAppointment** occurrence) override {
    TAMU_DEVICE_OUT(occurrence, nullptr);
    TAMU_DEVICE_CALL("IRecurrencePattern::GetOccurrence");
    if (!HasTimes() || !IsDate(date) || !record().recurrence) return hr::kInvalidArgument;
    const RecurrenceRecord pattern = CompletePattern(state());
    const std::int32_t day = DayOf(date);
    const std::int32_t second = SecondsOfTime(TimeOf(date));
    if (second != 0 && second != SecondsOfTime(pattern.start_time)) return hr::kInvalidArgument;
    if (!HappensOn(pattern, day)) return hr::kInvalidArgument;
    const ExceptionRecord* exception = ExceptionOn(record(), day);
    if (exception != nullptr && exception->deleted) return hr::kInvalidArgument;
    return Guarded([&] {
      return MakeAppointment(MakeOccurrenceState(shared_state(), JoinDate(day, pattern.start_time)),
                             occurrence);
    });
  }

 private:
  [[nodiscard]] bool HasTimes() const noexcept { return record().kind == ItemKind::kAppointment; }

  void PutTimes(const RecurrenceRecord& times) noexcept {
    RecurrenceRecord& pattern = PatternToPut(&state());
    pattern.start_time = times.start_time;
    pattern.duration = times.duration;
    state().time_was_put = true;
    state().duration_was_put = true;
    FollowPattern(&state());
  }
};

}  // namespace

HRESULT MakePattern(std::shared_ptr<ItemState> state, platform::IRecurrencePattern** out) noexcept {
  return MakeObject<Pattern>(out, std::move(state));
}

}  // namespace tamu::device
