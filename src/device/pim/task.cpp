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

constexpr std::size_t Index(TaskProperty property) noexcept {
  return static_cast<std::size_t>(property);
}

// Moves a date of a task by days, its time of day kept; none stays none.
void MoveDate(double* date, std::int32_t days) noexcept {
  if (*date != platform::kNoDate) *date = JoinDate(DayOf(*date) + days, TimeOf(*date));
}

class Task final : public ItemObject<Task, platform::ITask> {
 public:
  explicit Task(std::shared_ptr<ItemState> state) noexcept : ItemObject(std::move(state)) {}

  [[nodiscard]] bool Implements(const platform::GUID& iid) const noexcept {
    return iid == platform::IID_IDispatch || iid == platform::IID_ITask;
  }

  HRESULT TAMU_COM_CALL ClearRecurrencePattern() override {
    TAMU_DEVICE_CALL("ITask::ClearRecurrencePattern");
    ClearPattern(&state());
    return hr::kOk;
  }
  HRESULT TAMU_COM_CALL GetRecurrencePattern(platform::IRecurrencePattern** pattern) override {
    TAMU_DEVICE_OUT(pattern, nullptr);
    TAMU_DEVICE_CALL("ITask::GetRecurrencePattern");
    return MakePattern(shared_state(), pattern);
  }
  HRESULT TAMU_COM_CALL get_IsRecurring(VARIANT_BOOL* recurring) override {
    TAMU_DEVICE_OUT(recurring, platform::kVariantFalse);
    TAMU_DEVICE_CALL("ITask::get_IsRecurring");
    if (record().recurrence) *recurring = platform::kVariantTrue;
    return hr::kOk;
  }

  TAMU_ITEM_TEXT(ITask, TaskProperty, Subject)
  TAMU_ITEM_TEXT(ITask, TaskProperty, Categories)
  TAMU_ITEM_DATE(ITask, TaskProperty, StartDate)
  TAMU_ITEM_DATE(ITask, TaskProperty, DueDate)
  TAMU_ITEM_GETTER(ITask, TaskProperty, DateCompleted, DATE, GetDate)
  TAMU_ITEM_NUMBER(ITask, TaskProperty, Importance, platform::kImportanceLow,
                   platform::kImportanceHigh)
  TAMU_ITEM_GETTER(ITask, TaskProperty, Complete, VARIANT_BOOL, GetFlag)
  TAMU_ITEM_NUMBER(ITask, TaskProperty, Sensitivity, kLowestSensitivity, kHighestSensitivity)
  TAMU_ITEM_FLAG(ITask, TaskProperty, TeamTask)
  TAMU_ITEM_TEXT(ITask, TaskProperty, Body)
  TAMU_ITEM_FLAG(ITask, TaskProperty, ReminderSet)
  TAMU_ITEM_TEXT(ITask, TaskProperty, ReminderSoundFile)
  TAMU_ITEM_DATE(ITask, TaskProperty, ReminderTime)
  TAMU_ITEM_NUMBER(ITask, TaskProperty, ReminderOptions, kLowestOptions, kHighestOptions)
  TAMU_ITEM_INK(ITask, TaskProperty)

  HRESULT TAMU_COM_CALL put_Complete(VARIANT_BOOL complete) override {
    TAMU_DEVICE_CALL("ITask::put_Complete");
    DATE completed = platform::kNoDate;
    if (complete) TAMU_DEVICE_TRY(Today(&completed));
    NumberOf(record(), Index(TaskProperty::Complete)) =
        complete ? platform::kVariantTrue : platform::kVariantFalse;
    DateOf(record(), Index(TaskProperty::DateCompleted)) = completed;
    return hr::kOk;
  }

  HRESULT TAMU_COM_CALL Save() override {
    TAMU_DEVICE_CALL("ITask::Save");
    return SaveItem(&state());
  }
  HRESULT TAMU_COM_CALL Delete() override {
    TAMU_DEVICE_CALL("ITask::Delete");
    return DeleteItem(&state());
  }
  HRESULT TAMU_COM_CALL SkipRecurrence() override {
    TAMU_DEVICE_CALL("ITask::SkipRecurrence");
    if (!record().recurrence) return hr::kInvalidArgument;
    double& start = DateOf(record(), Index(TaskProperty::StartDate));
    double& due = DateOf(record(), Index(TaskProperty::DueDate));
    const RecurrenceRecord pattern = CompletePattern(state());
    const double current = start != platform::kNoDate ? start
                           : due != platform::kNoDate ? due
                                                      : pattern.pattern_start;
    const std::optional<std::int32_t> next = NextAfter(pattern, DayOf(current));
    if (!next) return hr::kFalse;
    if (start == platform::kNoDate && due == platform::kNoDate) start = pattern.pattern_start;
    const std::int32_t days = *next - DayOf(current);
    MoveDate(&start, days);
    MoveDate(&due, days);
    return hr::kOk;
  }
  HRESULT TAMU_COM_CALL Copy(platform::ITask** copy) override {
    TAMU_DEVICE_OUT(copy, nullptr);
    TAMU_DEVICE_CALL("ITask::Copy");
    return Guarded([&] { return MakeTask(CopyState(state()), copy); });
  }
  HRESULT TAMU_COM_CALL Display() override {
    TAMU_DEVICE_CALL("ITask::Display");
    return hr::kNotImplemented;
  }
  HRESULT TAMU_COM_CALL get_Oid(std::int32_t* oid) override {
    return GetOid("ITask::get_Oid", state(), oid);
  }
  HRESULT TAMU_COM_CALL get_Application(platform::IPOutlookApp** application) override {
    return GetApplication("ITask::get_Application", state().application.get(), application);
  }
};

}  // namespace

HRESULT MakeTask(std::shared_ptr<ItemState> state, platform::ITask** out) noexcept {
  return MakeObject<Task>(out, std::move(state));
}

}  // namespace tamu::device
