#include "device/call_gate.h"
#include "device/pim/guarded.h"
#include "device/pim/item_values.h"
#include "device/pim/pim_objects.h"

namespace tamu::device {
namespace {

using platform::DATE;
using platform::HRESULT;
using platform::VARIANT_BOOL;
namespace hr = platform::hr;

class Appointment final : public ItemObject<Appointment, platform::IAppointment> {
 public:
  explicit Appointment(std::shared_ptr<ItemState> state) noexcept : ItemObject(std::move(state)) {}

  [[nodiscard]] bool Implements(const platform::GUID& iid) const noexcept {
    return iid == platform::IID_IDispatch || iid == platform::IID_IAppointment;
  }

  HRESULT TAMU_COM_CALL ClearRecurrencePattern() override {
    TAMU_DEVICE_CALL("IAppointment::ClearRecurrencePattern");
    if (state().occurrence) return hr::kInvalidArgument;
    ClearPattern(&state());
    return hr::kOk;
  }
  // Of an occurrence: the pattern of its series.
  HRESULT TAMU_COM_CALL GetRecurrencePattern(platform::IRecurrencePattern** pattern) override {
    TAMU_DEVICE_OUT(pattern, nullptr);
    TAMU_DEVICE_CALL("IAppointment::GetRecurrencePattern");
    return MakePattern(state().occurrence ? state().occurrence->series : shared_state(), pattern);
  }
  HRESULT TAMU_COM_CALL get_IsRecurring(VARIANT_BOOL* recurring) override {
    TAMU_DEVICE_OUT(recurring, platform::kVariantFalse);
    TAMU_DEVICE_CALL("IAppointment::get_IsRecurring");
    if (record().recurrence || state().occurrence) *recurring = platform::kVariantTrue;
    return hr::kOk;
  }

  TAMU_ITEM_TEXT(IAppointment, AppointmentProperty, Subject)
  TAMU_ITEM_TEXT(IAppointment, AppointmentProperty, Location)
  TAMU_ITEM_TEXT(IAppointment, AppointmentProperty, Categories)
  TAMU_ITEM_GETTER(IAppointment, AppointmentProperty, Start, DATE, GetDate)
  TAMU_ITEM_GETTER(IAppointment, AppointmentProperty, Duration, std::int32_t, GetNumber)
  TAMU_ITEM_GETTER(IAppointment, AppointmentProperty, End, DATE, GetDate)
  TAMU_ITEM_FLAG(IAppointment, AppointmentProperty, AllDayEvent)
  TAMU_ITEM_NUMBER(IAppointment, AppointmentProperty, BusyStatus, platform::kBusyFree,
                   platform::kBusyOutOfOffice)
  TAMU_ITEM_NUMBER(IAppointment, AppointmentProperty, Sensitivity, kLowestSensitivity,
                   kHighestSensitivity)
  TAMU_ITEM_TEXT(IAppointment, AppointmentProperty, Body)
  TAMU_ITEM_FLAG(IAppointment, AppointmentProperty, ReminderSet)
  TAMU_ITEM_TEXT(IAppointment, AppointmentProperty, ReminderSoundFile)
  TAMU_ITEM_NUMBER(IAppointment, AppointmentProperty, ReminderMinutesBeforeStart, 0,
                   kHighestOptions)
  TAMU_ITEM_NUMBER(IAppointment, AppointmentProperty, ReminderOptions, kLowestOptions,
                   kHighestOptions)
  TAMU_ITEM_INK(IAppointment, AppointmentProperty)

  HRESULT TAMU_COM_CALL put_Start(DATE date) override {
    TAMU_DEVICE_CALL("IAppointment::put_Start");
    return PutStart(&state(), date);
  }
  HRESULT TAMU_COM_CALL put_Duration(std::int32_t minutes) override {
    TAMU_DEVICE_CALL("IAppointment::put_Duration");
    return PutDuration(&state(), minutes);
  }
  HRESULT TAMU_COM_CALL put_End(DATE date) override {
    TAMU_DEVICE_CALL("IAppointment::put_End");
    return PutEndDate(&state(), date);
  }
  HRESULT TAMU_COM_CALL get_Recipients(platform::IRecipients** recipients) override {
    TAMU_DEVICE_OUT(recipients, nullptr);
    TAMU_DEVICE_CALL("IAppointment::get_Recipients");
    return MakeRecipients(shared_state(), recipients);
  }
  HRESULT TAMU_COM_CALL get_MeetingStatus(std::int32_t* status) override {
    TAMU_DEVICE_OUT(status, 0);
    TAMU_DEVICE_CALL("IAppointment::get_MeetingStatus");
    *status = record().recipients.empty() ? 0 : 1;
    return hr::kOk;
  }

  // Of an occurrence: only one that was not changed is accepted, for there is no place for a changed
  // one.
  HRESULT TAMU_COM_CALL Save() override {
    TAMU_DEVICE_CALL("IAppointment::Save");
    if (!state().occurrence) return SaveItem(&state());
    return state().occurrence->as_made == record() ? hr::kOk : hr::kNotImplemented;
  }
  HRESULT TAMU_COM_CALL Send() override {
    TAMU_DEVICE_CALL("IAppointment::Send");
    return hr::kNotImplemented;
  }
  HRESULT TAMU_COM_CALL Delete() override {
    TAMU_DEVICE_CALL("IAppointment::Delete");
    if (!state().occurrence) return DeleteItem(&state());
    OccurrenceOf& occurrence = *state().occurrence;
    return DeleteOccurrence(occurrence.series.get(), occurrence.original_start);
  }
  HRESULT TAMU_COM_CALL Cancel() override {
    TAMU_DEVICE_CALL("IAppointment::Cancel");
    return hr::kNotImplemented;
  }
  // Of an occurrence: an appointment that does not recur.
  HRESULT TAMU_COM_CALL Copy(platform::IAppointment** copy) override {
    TAMU_DEVICE_OUT(copy, nullptr);
    TAMU_DEVICE_CALL("IAppointment::Copy");
    return Guarded([&] { return MakeAppointment(CopyState(state()), copy); });
  }
  HRESULT TAMU_COM_CALL Display() override {
    TAMU_DEVICE_CALL("IAppointment::Display");
    return hr::kNotImplemented;
  }
  // Of an occurrence: the id of its series.
  HRESULT TAMU_COM_CALL get_Oid(std::int32_t* oid) override {
    return GetOid("IAppointment::get_Oid", state(), oid);
  }
  HRESULT TAMU_COM_CALL get_Application(platform::IPOutlookApp** application) override {
    return GetApplication("IAppointment::get_Application", state().application.get(), application);
  }
};

}  // namespace

HRESULT MakeAppointment(std::shared_ptr<ItemState> state, platform::IAppointment** out) noexcept {
  return MakeObject<Appointment>(out, std::move(state));
}

}  // namespace tamu::device
