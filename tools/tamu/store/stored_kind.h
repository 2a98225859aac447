// store/stored_kind.h - the kinds of objects in the device's stores, as commands name them.
#ifndef TAMU_TOOLS_STORE_STORED_KIND_H_
#define TAMU_TOOLS_STORE_STORED_KIND_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "object_view.h"
#include "tamu/tamu.h"

namespace tamu::tool {

enum class StoredKind : std::uint8_t { kContact, kEvent, kTodo, kNote, kMessage };
inline constexpr StoredKind kStoredKinds[] = {StoredKind::kContact, StoredKind::kEvent,
                                              StoredKind::kTodo, StoredKind::kNote,
                                              StoredKind::kMessage};

// "event" and "events".
[[nodiscard]] KindWords STORED_Words(StoredKind kind) noexcept;

// The kinds that a name on the command line means, in the singular or the plural: one of them, or
// events and to-dos for "calendar". Empty for any other name.
[[nodiscard]] std::vector<StoredKind> STORED_KindsNamed(std::string_view name);

// The kinds that several names mean together, each once and in their order; all without a name.
// Empty when one of them means none.
[[nodiscard]] std::vector<StoredKind> STORED_KindsNamed(const std::vector<std::string>& names);

// The names of all kinds, for messages: "contact, event, todo, calendar, note, message".
[[nodiscard]] std::string_view STORED_KindNames() noexcept;

// The stored kind of a record.
[[nodiscard]] StoredKind STORED_KindOf(ObjectKind kind, const ObjectRecord& record) noexcept;

// The library's kind; of messages the inbox's.
[[nodiscard]] ObjectKind STORED_ObjectKind(StoredKind kind) noexcept;

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_STORE_STORED_KIND_H_
