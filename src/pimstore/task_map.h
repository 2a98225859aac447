// pimstore/task_map.h - to-do records and stored tasks, one made of the other.
//   Ownership  items and records are borrowed.
//   Errors     none: what the store refuses stays as it was, what memory runs out for is missing;
//              reminders and rules that cannot be kept are logged.
#ifndef TAMU_PIMSTORE_TASK_MAP_H_
#define TAMU_PIMSTORE_TASK_MAP_H_

#include "platform/poom.h"
#include "tamu/tamu.h"

namespace tamu {

// Puts a record into an item, which the caller saves; a recurring one is saved once before its
// reminder is put. What the record does not have stays as it is, but recurrence and reminder are
// then taken from the item. A completion date has no field that could be put.
void TaskToStore(platform::ITask* item, const ToDoShape& record) noexcept;

// Fills an empty record with an item.
void TaskFromStore(platform::ITask* item, ToDoShape* record) noexcept;

}  // namespace tamu

#endif  // TAMU_PIMSTORE_TASK_MAP_H_
