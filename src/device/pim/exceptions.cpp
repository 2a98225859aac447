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

// One exception as it was when it was asked for.
class Exception final : public ItemObject<Exception, platform::IException> {
 public:
  Exception(std::shared_ptr<ItemState> state, const ExceptionRecord& exception) noexcept
      : ItemObject(std::move(state)), exception_(exception) {}

  [[nodiscard]] bool Implements(const platform::GUID& iid) const noexcept {
    return iid == platform::IID_IDispatch || iid == platform::IID_IException;
  }

  HRESULT TAMU_COM_CALL get_AppointmentItem(platform::IAppointment** item) override {
    TAMU_DEVICE_OUT(item, nullptr);
    TAMU_DEVICE_CALL("IException::get_AppointmentItem");
    if (exception_.deleted) return hr::kFalse;
    platform::ComPtr<platform::IRecurrencePattern> pattern;
    TAMU_DEVICE_TRY(MakePattern(shared_state(), pattern.put()));
    return pattern->GetOccurrence(DayOf(exception_.original_start), item);
  }
  HRESULT TAMU_COM_CALL get_OriginalDate(DATE* date) override {
    TAMU_DEVICE_OUT(date, platform::kNoDate);
    TAMU_DEVICE_CALL("IException::get_OriginalDate");
    *date = exception_.original_start;
    return hr::kOk;
  }
  HRESULT TAMU_COM_CALL get_Deleted(VARIANT_BOOL* deleted) override {
    TAMU_DEVICE_OUT(deleted, platform::kVariantFalse);
    TAMU_DEVICE_CALL("IException::get_Deleted");
    if (exception_.deleted) *deleted = platform::kVariantTrue;
    return hr::kOk;
  }
  HRESULT TAMU_COM_CALL get_Application(platform::IPOutlookApp** application) override {
    return GetApplication("IException::get_Application", state().application.get(), application);
  }

 private:
  ExceptionRecord exception_;
};

// The exceptions of the series in hand, as they are now.
class Exceptions final : public ItemObject<Exceptions, platform::IExceptions> {
 public:
  explicit Exceptions(std::shared_ptr<ItemState> state) noexcept : ItemObject(std::move(state)) {}

  [[nodiscard]] bool Implements(const platform::GUID& iid) const noexcept {
    return iid == platform::IID_IDispatch || iid == platform::IID_IExceptions;
  }

  HRESULT TAMU_COM_CALL Item(std::int32_t index, platform::IException** exception) override {
    TAMU_DEVICE_OUT(exception, nullptr);
    TAMU_DEVICE_CALL("IExceptions::Item");
    const std::vector<ExceptionRecord>& exceptions = record().exceptions;
    if (index < 1 || static_cast<std::size_t>(index) > exceptions.size()) {
      return hr::kInvalidArgument;
    }
    return MakeObject<Exception>(exception, shared_state(),
                                 exceptions[static_cast<std::size_t>(index) - 1]);
  }
  HRESULT TAMU_COM_CALL get_Count(std::int32_t* count) override {
    TAMU_DEVICE_OUT(count, 0);
    TAMU_DEVICE_CALL("IExceptions::get_Count");
    *count = static_cast<std::int32_t>(record().exceptions.size());
    return hr::kOk;
  }
  HRESULT TAMU_COM_CALL get__NewEnum(platform::IUnknown** enumerator) override {
    TAMU_DEVICE_OUT(enumerator, nullptr);
    TAMU_DEVICE_CALL("IExceptions::get__NewEnum");
    return hr::kNotImplemented;
  }
  HRESULT TAMU_COM_CALL get_Application(platform::IPOutlookApp** application) override {
    return GetApplication("IExceptions::get_Application", state().application.get(), application);
  }
};

}  // namespace

HRESULT MakeExceptions(std::shared_ptr<ItemState> state, platform::IExceptions** out) noexcept {
  return MakeObject<Exceptions>(out, std::move(state));
}

}  // namespace tamu::device
