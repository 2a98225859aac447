// pimstore/item_types.h - the three kinds of store items as types.
#ifndef TAMU_PIMSTORE_ITEM_TYPES_H_
#define TAMU_PIMSTORE_ITEM_TYPES_H_

#include <cstdint>

#include "platform/com_ptr.h"
#include "platform/poom.h"

namespace tamu {

// What CreateItem makes, and the folder that it lies in.
template <typename Item>
inline constexpr std::int32_t kItemType = 0;
template <>
inline constexpr std::int32_t kItemType<platform::IContact> = platform::kContactItem;
template <>
inline constexpr std::int32_t kItemType<platform::IAppointment> = platform::kAppointmentItem;
template <>
inline constexpr std::int32_t kItemType<platform::ITask> = platform::kTaskItem;

template <typename Item>
inline constexpr std::int32_t kItemFolder = 0;
template <>
inline constexpr std::int32_t kItemFolder<platform::IContact> = platform::kContactsFolder;
template <>
inline constexpr std::int32_t kItemFolder<platform::IAppointment> = platform::kCalendarFolder;
template <>
inline constexpr std::int32_t kItemFolder<platform::ITask> = platform::kTasksFolder;

template <typename Item>
inline constexpr platform::GUID kItemIid = platform::IID_IUnknown;
template <>
inline constexpr platform::GUID kItemIid<platform::IContact> = platform::IID_IContact;
template <>
inline constexpr platform::GUID kItemIid<platform::IAppointment> = platform::IID_IAppointment;
template <>
inline constexpr platform::GUID kItemIid<platform::ITask> = platform::IID_ITask;

// The item as what it is asked to be; null when it is not, and for no item.
template <typename Item>
[[nodiscard]] platform::ComPtr<Item> ItemAs(platform::IUnknown* item) {
  platform::ComPtr<Item> typed;
  if (item == nullptr || platform::Failed(item->QueryInterface(kItemIid<Item>, typed.put_void()))) {
    typed.reset();
  }
  return typed;
}

}  // namespace tamu

#endif  // TAMU_PIMSTORE_ITEM_TYPES_H_
