#include "platform/registry.h"

#include <algorithm>
#include <exception>
#include <new>
#include <optional>

#include "platform/linux/errors.h"
#include "platform/linux/registry_names.h"
#include "platform/linux/registry_store.h"

namespace tamu::platform {
namespace {

constexpr std::uint32_t kMayQuery = 0x1;
constexpr std::uint32_t kMaySet = 0x2;
constexpr std::uint32_t kMayCreate = 0x4;
constexpr std::uint32_t kCreatedNewKey = 1;
constexpr std::uint32_t kOpenedExistingKey = 2;

struct OpenKey {
  RegistryKeyPath path;
  std::uint32_t access = 0;  // 0 asks for nothing and is denied nothing

  [[nodiscard]] bool Allows(std::uint32_t right) const noexcept {
    return access == 0 || (access & right) != 0;
  }
};

// Keys that are open. A handle is a place in the table and the number of times that the place was
// given away, so that a handle that was closed is not taken for its successor.
class KeyTable {
 public:
  [[nodiscard]] RegistryKey Add(OpenKey key) {
    if (free_.empty()) {
      if (slots_.size() >= kMaxSlots) return 0;
      free_.reserve(slots_.size() + 1);  // so that closing never needs memory
      slots_.emplace_back();
      free_.push_back(slots_.size() - 1);
    }
    const std::size_t index = free_.back();
    Slot& slot = slots_[index];
    slot.key = std::move(key);
    free_.pop_back();
    return static_cast<RegistryKey>(slot.generation) << kIndexBits |
           static_cast<RegistryKey>(index + 1);
  }

  [[nodiscard]] const OpenKey* Find(RegistryKey handle) const noexcept {
    const std::size_t index = IndexOf(handle);
    return index < slots_.size() ? &*slots_[index].key : nullptr;
  }

  [[nodiscard]] bool Remove(RegistryKey handle) noexcept {
    const std::size_t index = IndexOf(handle);
    if (index >= slots_.size()) return false;
    slots_[index].key.reset();
    slots_[index].generation = (slots_[index].generation + 1) & kGenerationMask;
    free_.push_back(index);
    return true;
  }

 private:
  static constexpr int kIndexBits = 20;
  static constexpr std::size_t kMaxSlots = (std::size_t{1} << kIndexBits) - 1;
  static constexpr std::uint32_t kGenerationMask = 0x3FF;  // handles stay below the roots' numbers

  struct Slot {
    std::optional<OpenKey> key;
    std::uint32_t generation = 0;
  };

  // The slot of a live handle, or one behind the last.
  [[nodiscard]] std::size_t IndexOf(RegistryKey handle) const noexcept {
    const auto index = static_cast<std::size_t>(handle & kMaxSlots) - 1;
    const bool live = index < slots_.size() && slots_[index].key &&
                      handle >> kIndexBits == slots_[index].generation;
    return live ? index : slots_.size();
  }

  std::vector<Slot> slots_;
  std::vector<std::size_t> free_;
};

struct Registry {
  RegistryStore store;
  KeyTable keys;
};

Registry& TheRegistry() {
  static Registry registry;
  return registry;
}

// Runs the body of a service; what the containers throw becomes its status.
template <typename Body>
std::int32_t Guarded(Body&& body) noexcept {
  try {
    return static_cast<std::int32_t>(body(TheRegistry()));
  } catch (const std::exception&) {
    return static_cast<std::int32_t>(kErrorNotEnoughMemory);
  }
}

// The key behind a handle or a root's number.
std::optional<OpenKey> KeyOf(const Registry& registry, RegistryKey handle) {
  if (const auto root = RootFromKey(handle)) return OpenKey{{*root, {}}, 0};
  const OpenKey* key = registry.keys.Find(handle);
  return key ? std::optional<OpenKey>(*key) : std::nullopt;
}

// The key at `path` below `parent`; an error for a parent that is not open and for a malformed
// path.
std::uint32_t Below(const Registry& registry, RegistryKey parent, const char16_t* path,
                    std::uint32_t access, OpenKey& key) {
  std::optional<OpenKey> above = KeyOf(registry, parent);
  if (!above) return kErrorInvalidHandle;
  auto segments = SplitKeyPath(path ? path : u"");
  if (!segments || above->path.segments.size() + segments->size() > kMaxKeyDepth)
    return kErrorInvalidParameter;
  key = std::move(*above);
  key.access = access;
  key.path.segments.insert(key.path.segments.end(), segments->begin(), segments->end());
  return kErrorSuccess;
}

std::uint32_t HandOut(Registry& registry, OpenKey key, RegistryKey* handle) {
  *handle = registry.keys.Add(std::move(key));
  return *handle != 0 ? kErrorSuccess : kErrorNotEnoughMemory;
}

std::int32_t Open(RegistryKey root, const char16_t* path, std::uint32_t /*options*/,
                  std::uint32_t access, RegistryKey* handle) {
  return Guarded([&](Registry& registry) -> std::uint32_t {
    if (handle == nullptr) return kErrorInvalidParameter;
    *handle = 0;
    OpenKey key;
    if (const std::uint32_t error = Below(registry, root, path, access, key)) return error;
    if (const std::uint32_t error = registry.store.Refresh()) return error;
    if (!registry.store.file().HasKey(key.path)) return kErrorFileNotFound;
    return HandOut(registry, std::move(key), handle);
  });
}

std::int32_t Query(RegistryKey handle, const char16_t* name, std::uint32_t* /*reserved*/,
                   std::uint32_t* type, std::uint8_t* data, std::uint32_t* size) {
  return Guarded([&](Registry& registry) -> std::uint32_t {
    if (data != nullptr && size == nullptr) return kErrorInvalidParameter;
    const std::optional<OpenKey> key = KeyOf(registry, handle);
    if (!key) return kErrorInvalidHandle;
    if (!key->Allows(kMayQuery)) return kErrorAccessDenied;
    if (const std::uint32_t error = registry.store.Refresh()) return error;
    if (!registry.store.file().HasKey(key->path)) return kErrorKeyDeleted;
    const RegistryData* value = registry.store.file().FindValue(key->path, name ? name : u"");
    if (value == nullptr) return kErrorFileNotFound;
    if (type) *type = value->type;
    if (size == nullptr) return kErrorSuccess;
    const auto needed = static_cast<std::uint32_t>(value->bytes.size());
    const bool fits = needed <= *size;
    *size = needed;
    if (data == nullptr) return kErrorSuccess;
    if (!fits) return kErrorMoreData;
    std::copy(value->bytes.begin(), value->bytes.end(), data);
    return kErrorSuccess;
  });
}

// A value to be stored; strings get the terminator that they came without.
std::optional<RegistryData> DataOf(std::uint32_t type, const std::uint8_t* bytes,
                                   std::uint32_t size) {
  if (bytes == nullptr && size != 0) return std::nullopt;
  RegistryData data{type, {}};
  if (size != 0) data.bytes.assign(bytes, bytes + size);
  if (type != kRegSz) return data;
  if (size % 2 != 0) return std::nullopt;
  const bool terminated = size != 0 && data.bytes[size - 1] == 0 && data.bytes[size - 2] == 0;
  if (!terminated) data.bytes.insert(data.bytes.end(), 2, 0);
  return data;
}

// The edits. Nothing is written without being read back: a name that the form cannot hold must not
// cost what is there.
RegistryStore::Edit StoredValue(const RegistryFile& current, const RegistryKeyPath& path,
                                std::u16string_view name, const RegistryData& data) {
  if (!current.HasKey(path)) return {kErrorKeyDeleted, {}};
  std::string bytes = current.WithValue(path, name, data);
  const RegistryFile changed(bytes);
  const RegistryData* stored = changed.FindValue(path, name);
  const bool same = stored != nullptr && stored->type == data.type && stored->bytes == data.bytes;
  return same ? RegistryStore::Edit{kErrorSuccess, std::move(bytes)}
              : RegistryStore::Edit{kErrorInvalidParameter, {}};
}

RegistryStore::Edit MadeKey(const RegistryFile& current, const RegistryKeyPath& path) {
  if (current.HasKey(path)) return {kErrorAlreadyExists, {}};  // another process was faster
  std::string bytes = current.WithKey(path);
  return RegistryFile(bytes).HasKey(path) ? RegistryStore::Edit{kErrorSuccess, std::move(bytes)}
                                          : RegistryStore::Edit{kErrorInvalidParameter, {}};
}

std::int32_t Set(RegistryKey handle, const char16_t* name, std::uint32_t /*reserved*/,
                 std::uint32_t type, const std::uint8_t* bytes, std::uint32_t size) {
  return Guarded([&](Registry& registry) -> std::uint32_t {
    const std::optional<OpenKey> key = KeyOf(registry, handle);
    if (!key) return kErrorInvalidHandle;
    if (!key->Allows(kMaySet)) return kErrorAccessDenied;
    const std::u16string_view value_name = name ? name : u"";
    const std::optional<RegistryData> data = DataOf(type, bytes, size);
    if (!data || value_name.size() > kMaxValueName || !IsWritableName(value_name))
      return kErrorInvalidParameter;
    return registry.store.Change([&](const RegistryFile& current) {
      return StoredValue(current, key->path, value_name, *data);
    });
  });
}

std::int32_t Create(RegistryKey root, const char16_t* path, std::uint32_t /*reserved*/,
                    char16_t* /*class_name*/, std::uint32_t /*options*/, std::uint32_t access,
                    void* /*security*/, RegistryKey* handle, std::uint32_t* disposition) {
  return Guarded([&](Registry& registry) -> std::uint32_t {
    if (handle == nullptr) return kErrorInvalidParameter;
    *handle = 0;
    OpenKey key;
    if (const std::uint32_t error = Below(registry, root, path, access, key)) return error;
    if (const std::uint32_t error = registry.store.Refresh()) return error;
    std::uint32_t found = kOpenedExistingKey;
    if (!registry.store.file().HasKey(key.path)) {
      if (path == nullptr || *path == 0) return kErrorKeyDeleted;
      if (!IsWritableName(path)) return kErrorInvalidParameter;
      if (!KeyOf(registry, root)->Allows(kMayCreate)) return kErrorAccessDenied;
      const std::uint32_t error = registry.store.Change(
          [&](const RegistryFile& current) { return MadeKey(current, key.path); });
      if (error == kErrorSuccess) found = kCreatedNewKey;
      if (error != kErrorSuccess && error != kErrorAlreadyExists) return error;
    }
    if (disposition) *disposition = found;
    return HandOut(registry, std::move(key), handle);
  });
}

std::int32_t Close(RegistryKey handle) {
  return Guarded([&](Registry& registry) -> std::uint32_t {
    if (RootFromKey(handle) || registry.keys.Remove(handle)) return kErrorSuccess;
    return kErrorInvalidHandle;
  });
}

constexpr auto kFailure = static_cast<std::int32_t>(kErrorAccessDenied);

}  // namespace

constinit Service<std::int32_t(RegistryKey, const char16_t*, std::uint32_t, std::uint32_t,
                               RegistryKey*)>
    RegOpenKeyExW{"RegOpenKeyExW", &Open, kFailure};
constinit Service<std::int32_t(RegistryKey, const char16_t*, std::uint32_t*, std::uint32_t*,
                               std::uint8_t*, std::uint32_t*)>
    RegQueryValueExW{"RegQueryValueExW", &Query, kFailure};
constinit Service<std::int32_t(RegistryKey, const char16_t*, std::uint32_t, std::uint32_t,
                               const std::uint8_t*, std::uint32_t)>
    RegSetValueExW{"RegSetValueExW", &Set, kFailure};
constinit Service<std::int32_t(RegistryKey, const char16_t*, std::uint32_t, char16_t*,
                               std::uint32_t, std::uint32_t, void*, RegistryKey*, std::uint32_t*)>
    RegCreateKeyExW{"RegCreateKeyExW", &Create, kFailure};
constinit Service<std::int32_t(RegistryKey)> RegCloseKey{"RegCloseKey", &Close, kFailure};

std::vector<RegistryProblem> RegistryProblems() {
  try {
    return TheRegistry().store.Problems();
  } catch (const std::exception&) {
    return {};
  }
}

}  // namespace tamu::platform
