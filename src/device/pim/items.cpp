#include "device/pim/guarded.h"
#include "device/pim/pim_objects.h"

namespace tamu::device {
namespace {

using platform::HRESULT;
namespace hr = platform::hr;

// The typed interface as the IDispatch that it is.
template <typename Interface>
HRESULT MakeTyped(HRESULT (*make)(std::shared_ptr<ItemState>, Interface**) noexcept,
                  std::shared_ptr<ItemState> state, platform::IDispatch** out) noexcept {
  Interface* item = nullptr;
  const HRESULT result = make(std::move(state), &item);
  *out = item;
  return result;
}

}  // namespace

HRESULT MakeItem(std::shared_ptr<ItemState> state, platform::IDispatch** out) noexcept {
  switch (state->record.kind) {
    case ItemKind::kAppointment:
      return MakeTyped(&MakeAppointment, std::move(state), out);
    case ItemKind::kTask:
      return MakeTyped(&MakeTask, std::move(state), out);
    case ItemKind::kContact:
      break;
  }
  return MakeTyped(&MakeContact, std::move(state), out);
}

HRESULT NewItem(PimApplication* application, ItemKind kind, platform::IDispatch** out) noexcept {
  *out = nullptr;
  return Guarded([&] {
    ItemRecord record;
    TAMU_DEVICE_TRY(FillNewItem(kind, &record));
    return MakeItem(MakeState(application, std::move(record)), out);
  });
}

HRESULT OpenItem(PimApplication* application, ItemRecord record,
                 platform::IDispatch** out) noexcept {
  *out = nullptr;
  if (!IsWellFormed(record)) return hr::kCorrupt;
  return Guarded([&] { return MakeItem(MakeState(application, std::move(record)), out); });
}

std::shared_ptr<ItemState> CopyState(const ItemState& item) {
  ItemRecord record = item.record;
  record.oid = 0;
  std::shared_ptr<ItemState> copy = MakeState(item.application.get(), std::move(record));
  copy->prepared = item.prepared;
  copy->start_was_put = item.start_was_put;
  copy->time_was_put = item.time_was_put;
  copy->duration_was_put = item.duration_was_put;
  copy->end_time = item.end_time;
  copy->put_end = item.put_end;
  return copy;
}

}  // namespace tamu::device
