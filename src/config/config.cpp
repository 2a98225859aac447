#include "config/config.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>
#include <string_view>

#include "platform/code_pages.h"
#include "platform/registry.h"

namespace tamu {
namespace {

constexpr std::u16string_view kKeyPath = u"Software\\Velmora\\BTConfig";
constexpr std::u16string_view kSubkey = u"General";
constexpr std::u16string_view kSeparator = u"\\";
constexpr char kUnnamed[] = "<No Name>";

constexpr std::uint32_t kNumberBytes = 4;
constexpr std::uint32_t kDeviceNameBytes = 496;
constexpr std::uint32_t kPathBytes = 520;
constexpr std::uint32_t kUnnamedDeviceNameBytes = 100;
constexpr std::uint32_t kLargestQuery = kPathBytes;

// What a query brought, with a terminator behind it whatever the registry holds.
struct QueriedValue {
  alignas(char16_t) std::array<std::uint8_t, kLargestQuery + sizeof(char16_t)> bytes = {};
  std::uint32_t size = 0;
};

void Store(std::uint32_t& field, const QueriedValue& value) noexcept {
  if (value.size == kNumberBytes) std::memcpy(&field, value.bytes.data(), kNumberBytes);
}

// The units up to the first terminator.
std::array<char16_t, kLargestQuery / 2 + 1> TextOf(const QueriedValue& value) noexcept {
  std::array<char16_t, kLargestQuery / 2 + 1> text = {};
  std::memcpy(text.data(), value.bytes.data(), value.size);
  return text;
}

template <std::size_t kSize>
void Store(char16_t (&field)[kSize], const QueriedValue& value) noexcept {
  const auto text = TextOf(value);
  const std::size_t size = std::u16string_view(text.data()).size() + 1;
  if (size <= kSize) std::copy_n(text.data(), size, field);
}

// Converts on the side: a text that does not fit converted must not leave its first half in the
// field.
template <std::size_t kSize>
void Store(char (&field)[kSize], const QueriedValue& value) noexcept {
  const auto text = TextOf(value);
  char bytes[kSize] = {};
  const std::int32_t count =
      platform::WideCharToMultiByte(platform::kCpAcp, 0, text.data(), -1, bytes,
                                    static_cast<std::int32_t>(kSize), nullptr, nullptr);
  if (count > 0) std::copy_n(bytes, count, field);
}

template <auto kField>
void StoreField(ConfigBlock& block, const QueriedValue& value) noexcept {
  Store(block.*kField, value);
}

struct ValueRow {
  const char16_t* name;
  std::uint32_t type;
  void (*store)(ConfigBlock& block, const QueriedValue& value) noexcept;
  std::uint32_t query_bytes;
};

template <auto kField>
constexpr ValueRow Number(const char16_t* name) {
  return {name, platform::kRegDword, &StoreField<kField>, kNumberBytes};
}

template <auto kField>
constexpr ValueRow Text(const char16_t* name, std::uint32_t query_bytes) {
  return {name, platform::kRegSz, &StoreField<kField>, query_bytes};
}

// In the order of reading.
constexpr ValueRow kRows[] = {
    Text<&ConfigBlock::device_name>(u"DeviceName", kDeviceNameBytes),
    Number<&ConfigBlock::minor_class>(u"MinorClass"),
    Number<&ConfigBlock::security_type>(u"SecurityType"),
    Number<&ConfigBlock::country_code>(u"CountryCode"),
    Number<&ConfigBlock::force_dev_class_major>(u"ForceDevClassMajor"),
    Number<&ConfigBlock::force_dev_class_minor>(u"ForceDevClassMinor"),
    Number<&ConfigBlock::max_simult_connections>(u"MaxSimultConnections"),
    Number<&ConfigBlock::no_sleeping_while_connected>(u"NoSleepingWhileConnected"),
    Number<&ConfigBlock::dont_show_advanced>(u"DontShowAdvanced"),
    Text<&ConfigBlock::default_status_dll>(u"DefaultStatusDll", kPathBytes),
    Text<&ConfigBlock::default_properties_dll>(u"DefaultPropertiesDll", kPathBytes),
    Text<&ConfigBlock::unnamed_device_name>(u"UnnamedDeviceName", kUnnamedDeviceNameBytes),
    Text<&ConfigBlock::default_input_charset>(u"DefaultInputCharset", kPathBytes),
    Text<&ConfigBlock::default_output_charset>(u"DefaultOutputCharset", kPathBytes),
};
static_assert(std::size(kRows) == 14);
static_assert(std::all_of(std::begin(kRows), std::end(kRows),
                          [](const ValueRow& row) { return row.query_bytes <= kLargestQuery; }));

// A key that closes when it goes.
class OpenKey {
 public:
  OpenKey(const char16_t* path, std::int32_t& status) noexcept {
    status =
        platform::RegOpenKeyExW(platform::kHkeyLocalMachine, path, 0, platform::kKeyRead, &key_);
    open_ = status == 0;
  }
  ~OpenKey() {
    if (open_) static_cast<void>(platform::RegCloseKey(key_));
  }
  OpenKey(const OpenKey&) = delete;
  OpenKey& operator=(const OpenKey&) = delete;

  // False when the value cannot be had, or has another type.
  [[nodiscard]] bool Query(const ValueRow& row, QueriedValue& value) const noexcept {
    std::uint32_t type = 0;
    value.size = row.query_bytes;
    const std::int32_t status =
        platform::RegQueryValueExW(key_, row.name, nullptr, &type, value.bytes.data(), &value.size);
    return status == 0 && type == row.type && value.size <= row.query_bytes;
  }

 private:
  platform::RegistryKey key_ = 0;
  bool open_ = false;
};

// Joins "<key path>\<subkey>"; false when that is too long to be a key.
bool JoinPath(const ConfigBlock& block, std::array<char16_t, kConfigPathSize>& path) noexcept {
  const std::u16string_view parts[] = {block.key_path, kSeparator, block.subkey};
  path = {};
  std::size_t size = 0;
  for (const std::u16string_view part : parts) {
    if (part.size() >= path.size() - size) return false;
    std::copy(part.begin(), part.end(), path.begin() + static_cast<std::ptrdiff_t>(size));
    size += part.size();
  }
  return true;
}

}  // namespace

void CONFIG_Init(ConfigBlock& block) noexcept {
  block = ConfigBlock{};
  block.key_path = kKeyPath.data();
  block.subkey = kSubkey.data();
  block.minor_class = 4;
  block.security_type = 2;
  block.max_simult_connections = 1;
  static_assert(sizeof kUnnamed <= kConfigUnnamedDeviceNameSize);
  std::copy(std::begin(kUnnamed), std::end(kUnnamed), block.unnamed_device_name);
}

std::int32_t CONFIG_Read(ConfigBlock& block) noexcept {
  std::array<char16_t, kConfigPathSize> path;
  if (!JoinPath(block, path)) return platform::kErrorInvalidParameter;
  std::int32_t status = 0;
  const OpenKey key(path.data(), status);
  if (status != 0) return status;
  for (const ValueRow& row : kRows) {
    QueriedValue value;
    if (key.Query(row, value)) row.store(block, value);
  }
  return status;
}

}  // namespace tamu
