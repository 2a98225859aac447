// store/stored_item.h - single objects of the device by their ids: whether they are there, and what
// they are; deleting them.
//   Errors     texts for people; std::bad_alloc.
#ifndef TAMU_TOOLS_STORE_STORED_ITEM_H_
#define TAMU_TOOLS_STORE_STORED_ITEM_H_

#include <string>

#include "store/device_session.h"
#include "store/fetch.h"

namespace tamu::tool {

// False, with the reason, when the device has no object of this id and kind.
[[nodiscard]] bool ITEM_Exists(const DeviceSession& device, const ObjectId& id,
                               std::string* problem);

// Deletes the object. False, with the reason, when there is none or it cannot be deleted.
[[nodiscard]] bool ITEM_Delete(const DeviceSession& device, const ObjectId& id,
                               std::string* problem);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_STORE_STORED_ITEM_H_
