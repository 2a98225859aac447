#include "store/stored_kind.h"

#include <array>
#include <iterator>

#include "text/string_tools.h"

namespace tamu::tool {
namespace {

struct KindRow {
  StoredKind kind;
  KindWords words;
  ObjectKind object_kind;
};

constexpr KindRow kRows[] = {
    {StoredKind::kContact, {"contact", "contacts"}, KIND_CONTACT},
    {StoredKind::kEvent, {"event", "events"}, KIND_CALENDAR},
    {StoredKind::kTodo, {"todo", "todos"}, KIND_CALENDAR},
    {StoredKind::kNote, {"note", "notes"}, KIND_NOTE},
    {StoredKind::kMessage, {"message", "messages"}, KIND_MSG_INBOX},
};

constexpr bool RowsAreInOrder() {
  for (std::size_t i = 0; i < std::size(kRows); ++i) {
    if (static_cast<std::size_t>(kRows[i].kind) != i) return false;
  }
  return std::size(kRows) == std::size(kStoredKinds);
}
static_assert(RowsAreInOrder());

const KindRow& RowOf(StoredKind kind) noexcept { return kRows[static_cast<std::size_t>(kind)]; }

}  // namespace

KindWords STORED_Words(StoredKind kind) noexcept { return RowOf(kind).words; }

std::vector<StoredKind> STORED_KindsNamed(std::string_view name) {
  if (STR_EqualNoCase(name, "calendar")) return {StoredKind::kEvent, StoredKind::kTodo};
  for (const KindRow& row : kRows) {
    if (STR_EqualNoCase(name, row.words.one) || STR_EqualNoCase(name, row.words.many)) {
      return {row.kind};
    }
  }
  return {};
}

std::vector<StoredKind> STORED_KindsNamed(const std::vector<std::string>& names) {
  std::array<bool, std::size(kStoredKinds)> named{};
  named.fill(names.empty());
  for (const std::string& name : names) {
    const std::vector<StoredKind> kinds = STORED_KindsNamed(std::string_view(name));
    if (kinds.empty()) return {};
    for (const StoredKind kind : kinds) named[static_cast<std::size_t>(kind)] = true;
  }
  std::vector<StoredKind> all;
  for (const StoredKind kind : kStoredKinds) {
    if (named[static_cast<std::size_t>(kind)]) all.push_back(kind);
  }
  return all;
}

std::string_view STORED_KindNames() noexcept {
  return "contact, event, todo, calendar, note, message";
}

StoredKind STORED_KindOf(ObjectKind kind, const ObjectRecord& record) noexcept {
  switch (kind) {
    case KIND_CONTACT:
      return StoredKind::kContact;
    case KIND_CALENDAR:
      return record.event.component == COMPONENT_EVENT ? StoredKind::kEvent : StoredKind::kTodo;
    case KIND_NOTE:
      return StoredKind::kNote;
    default:
      return StoredKind::kMessage;
  }
}

ObjectKind STORED_ObjectKind(StoredKind kind) noexcept { return RowOf(kind).object_kind; }

}  // namespace tamu::tool
