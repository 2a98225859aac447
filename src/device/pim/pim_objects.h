// device/pim/pim_objects.h - makes the objects of the object model.
//   Ownership  what is made carries one reference and keeps the application and the item alive.
//   Errors     results of com.h; `*out` is null after a failure.
#ifndef TAMU_DEVICE_PIM_PIM_OBJECTS_H_
#define TAMU_DEVICE_PIM_PIM_OBJECTS_H_

#include <memory>

#include "device/pim/application.h"
#include "device/pim/item_state.h"

namespace tamu::device {

// The object of an item in hand; its IDispatch is the typed interface itself.
[[nodiscard]] platform::HRESULT MakeItem(std::shared_ptr<ItemState> state,
                                         platform::IDispatch** out) noexcept;
[[nodiscard]] platform::HRESULT MakeContact(std::shared_ptr<ItemState> state,
                                            platform::IContact** out) noexcept;
[[nodiscard]] platform::HRESULT MakeTask(std::shared_ptr<ItemState> state,
                                         platform::ITask** out) noexcept;
[[nodiscard]] platform::HRESULT MakeAppointment(std::shared_ptr<ItemState> state,
                                                platform::IAppointment** out) noexcept;

// A new, unsaved item.
[[nodiscard]] platform::HRESULT NewItem(PimApplication* application, ItemKind kind,
                                        platform::IDispatch** out) noexcept;
// The object of a record that was loaded; kCorrupt for one that is not well formed.
[[nodiscard]] platform::HRESULT OpenItem(PimApplication* application, ItemRecord record,
                                         platform::IDispatch** out) noexcept;
// The state of an unsaved copy, with pattern, exceptions and recipients. Throws std::bad_alloc when
// memory runs out.
[[nodiscard]] std::shared_ptr<ItemState> CopyState(const ItemState& item);

[[nodiscard]] platform::HRESULT MakePattern(std::shared_ptr<ItemState> state,
                                            platform::IRecurrencePattern** out) noexcept;
[[nodiscard]] platform::HRESULT MakeExceptions(std::shared_ptr<ItemState> state,
                                               platform::IExceptions** out) noexcept;
[[nodiscard]] platform::HRESULT MakeRecipients(std::shared_ptr<ItemState> state,
                                               platform::IRecipients** out) noexcept;

[[nodiscard]] platform::HRESULT MakeFolder(PimApplication* application, ItemKind kind,
                                           platform::IFolder** out) noexcept;
[[nodiscard]] platform::HRESULT MakeCollection(PimApplication* application, ItemKind kind,
                                               platform::IPOutlookItemCollection** out) noexcept;

}  // namespace tamu::device

#endif  // TAMU_DEVICE_PIM_PIM_OBJECTS_H_
