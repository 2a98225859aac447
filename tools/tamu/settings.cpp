#include "settings.h"

#include <array>
#include <charconv>
#include <cstring>
#include <vector>

#include "display_text.h"
#include "platform/code_pages.h"
#include "platform/last_error.h"
#include "platform/paths.h"
#include "platform/registry.h"
#include "text/charset.h"
#include "text/string_tools.h"

namespace tamu::tool {
namespace {

constexpr const char16_t* kGeneral = u"Software\\Velmora\\BTConfig\\General";
constexpr const char16_t* kDebug = u"Software\\Velmora\\BTConfig\\Debug";
constexpr std::uint32_t kPathCharacters = 259;

constexpr Setting kSettings[] = {
    {"DefaultInputCharset", kGeneral, u"DefaultInputCharset", SettingType::kCharset,
     kPathCharacters, "windows-1252", "character set of values that name none"},
    {"DefaultOutputCharset", kGeneral, u"DefaultOutputCharset", SettingType::kCharset,
     kPathCharacters, "UTF-8", "character set that text beyond ASCII is written in"},
    {"AnsiCodePage", kGeneral, u"AnsiCodePage", SettingType::kCodePage, 0, "the locale's",
     "the device's own 8-bit code page"},
    {"LogIPAddr", kDebug, u"LogIPAddr", SettingType::kAddress, 0, "off",
     "where diagnostic lines are sent (UDP port 38182)"},
    {"DeviceName", kGeneral, u"DeviceName", SettingType::kText, 248, "", "name of the device"},
    {"UnnamedDeviceName", kGeneral, u"UnnamedDeviceName", SettingType::kText, 49, "<No Name>",
     "name shown for devices without one"},
    {"MinorClass", kGeneral, u"MinorClass", SettingType::kNumber, 0, "4", "minor device class"},
    {"SecurityType", kGeneral, u"SecurityType", SettingType::kNumber, 0, "2", "security type"},
    {"CountryCode", kGeneral, u"CountryCode", SettingType::kNumber, 0, "0", "country code"},
    {"ForceDevClassMajor", kGeneral, u"ForceDevClassMajor", SettingType::kNumber, 0, "0",
     "forced major device class"},
    {"ForceDevClassMinor", kGeneral, u"ForceDevClassMinor", SettingType::kNumber, 0, "0",
     "forced minor device class"},
    {"MaxSimultConnections", kGeneral, u"MaxSimultConnections", SettingType::kNumber, 0, "1",
     "connections at a time"},
    {"NoSleepingWhileConnected", kGeneral, u"NoSleepingWhileConnected", SettingType::kNumber, 0,
     "0", "1 keeps the device awake while connected"},
    {"DontShowAdvanced", kGeneral, u"DontShowAdvanced", SettingType::kNumber, 0, "0",
     "1 hides advanced settings"},
    {"DefaultStatusDll", kGeneral, u"DefaultStatusDll", SettingType::kText, kPathCharacters, "",
     "library of the status page"},
    {"DefaultPropertiesDll", kGeneral, u"DefaultPropertiesDll", SettingType::kText, kPathCharacters,
     "", "library of the properties page"},
};

constexpr std::string_view kOff = "off";

// A key that closes when it goes.
class Key {
 public:
  ~Key() {
    if (open_) static_cast<void>(platform::RegCloseKey(key_));
  }
  Key() = default;
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;

  [[nodiscard]] std::int32_t Open(const char16_t* path) noexcept {
    const std::int32_t status =
        platform::RegOpenKeyExW(platform::kHkeyLocalMachine, path, 0, platform::kKeyRead, &key_);
    open_ = status == 0;
    return status;
  }
  [[nodiscard]] std::int32_t Create(const char16_t* path) noexcept {
    const std::int32_t status =
        platform::RegCreateKeyExW(platform::kHkeyLocalMachine, path, 0, nullptr, 0,
                                  platform::kKeyWrite, nullptr, &key_, nullptr);
    open_ = status == 0;
    return status;
  }
  [[nodiscard]] platform::RegistryKey get() const noexcept { return key_; }

 private:
  platform::RegistryKey key_ = 0;
  bool open_ = false;
};

bool IsNumber(SettingType type) noexcept {
  return type == SettingType::kNumber || type == SettingType::kCodePage ||
         type == SettingType::kAddress;
}

std::string AddressText(std::uint32_t address) {
  if (address == 0) return std::string(kOff);
  std::string text;
  for (int shift = 24; shift >= 0; shift -= 8) {
    text += (text.empty() ? "" : ".") + std::to_string(address >> shift & 0xFF);
  }
  return text;
}

// Reads a whole text as a number below 2^32.
std::optional<std::uint32_t> ParseNumber(std::string_view text) {
  const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
  if (hexadecimal) text.remove_prefix(2);
  std::uint32_t number = 0;
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, number, hexadecimal ? 16 : 10);
  if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
  return number;
}

std::optional<std::uint32_t> ParseAddress(std::string_view text) {
  if (STR_EqualNoCase(text, kOff)) return 0;
  std::uint32_t address = 0;
  for (int part = 0; part < 4; ++part) {
    const std::size_t dot = part == 3 ? text.size() : text.find('.');
    if (dot == std::string_view::npos || dot == 0 || dot > 3) return std::nullopt;
    const std::optional<std::uint32_t> number = ParseNumber(text.substr(0, dot));
    if (!number || *number > 255) return std::nullopt;
    address = address << 8 | *number;
    text.remove_prefix(part == 3 ? dot : dot + 1);
  }
  return address;
}

// The number that a text stands for; none, with what would do, for any other text.
std::optional<std::uint32_t> NumberFor(const Setting& setting, const std::string& text,
                                       std::string* problem) {
  if (setting.type == SettingType::kAddress) {
    const std::optional<std::uint32_t> address = ParseAddress(text);
    if (!address) *problem = "give an IPv4 address (127.0.0.1) or off";
    return address;
  }
  const std::optional<std::uint32_t> number = ParseNumber(text);
  if (!number) {
    *problem = "give a number from 0 to 4294967295";
  } else if (setting.type == SettingType::kCodePage && platform::IsValidCodePage(*number) == 0) {
    *problem = "there is no such code page; Western European is 1252, UTF-8 is 65001";
    return std::nullopt;
  }
  return number;
}

bool IsUsableText(const Setting& setting, const std::string& text, std::u16string_view wide,
                  std::string* problem) {
  if (setting.type == SettingType::kCharset) {
    if (text.empty() || text == "NATIVE" || CHARSET_FromName(text) != 0) return true;
    *problem =
        "there is no such character set. Give a name like ISO-8859-1, WINDOWS-1251, SHIFT_JIS or "
        "UTF-8, NATIVE for the device's own, or \"\" for the default";
    return false;
  }
  if (wide.size() <= setting.most_characters) return true;
  *problem =
      "it is too long: at most " + std::to_string(setting.most_characters) + " characters are kept";
  return false;
}

std::string FailureText(std::int32_t status) {
  return std::string("the registry cannot be written: ") +
         platform::ErrorText(static_cast<std::uint32_t>(status));
}

}  // namespace

std::span<const Setting> SETTING_All() noexcept { return kSettings; }

const Setting* SETTING_Find(std::string_view name) noexcept {
  for (const Setting& setting : kSettings) {
    if (STR_EqualNoCase(setting.name, name)) return &setting;
  }
  return nullptr;
}

std::optional<std::string> SETTING_Read(const Setting& setting) {
  Key key;
  if (key.Open(setting.key) != 0) return std::nullopt;
  std::uint32_t type = 0;
  std::uint32_t size = 0;
  if (platform::RegQueryValueExW(key.get(), setting.value, nullptr, &type, nullptr, &size) != 0) {
    return std::nullopt;
  }
  std::vector<std::uint8_t> data(size + sizeof(char16_t));
  if (platform::RegQueryValueExW(key.get(), setting.value, nullptr, &type, data.data(), &size) !=
      0) {
    return std::nullopt;
  }
  if (type == platform::kRegSz) {
    std::u16string text(size / sizeof(char16_t), u'\0');
    std::memcpy(text.data(), data.data(), text.size() * sizeof(char16_t));
    text.resize(std::u16string_view(text.c_str()).size());
    if (IsNumber(setting.type) && setting.type != SettingType::kCodePage) return std::nullopt;
    return DISPLAY_ToUtf8(text);
  }
  if (type != platform::kRegDword || size != 4 || !IsNumber(setting.type)) return std::nullopt;
  std::uint32_t number = 0;
  std::memcpy(&number, data.data(), sizeof number);
  return setting.type == SettingType::kAddress ? AddressText(number) : std::to_string(number);
}

bool SETTING_Write(const Setting& setting, const std::string& text, std::string* problem) {
  std::vector<std::uint8_t> data;
  if (IsNumber(setting.type)) {
    const std::optional<std::uint32_t> number = NumberFor(setting, text, problem);
    if (!number) return false;
    data.resize(sizeof *number);
    std::memcpy(data.data(), &*number, sizeof *number);
  } else {
    const std::u16string wide = platform::PathFromNative(text);
    if (!IsUsableText(setting, text, wide, problem)) return false;
    data.resize((wide.size() + 1) * sizeof(char16_t));
    std::memcpy(data.data(), wide.c_str(), data.size());
  }
  Key key;
  std::int32_t status = key.Create(setting.key);
  if (status == 0) {
    status =
        platform::RegSetValueExW(key.get(), setting.value, 0,
                                 IsNumber(setting.type) ? platform::kRegDword : platform::kRegSz,
                                 data.data(), static_cast<std::uint32_t>(data.size()));
  }
  if (status != 0) *problem = FailureText(status);
  return status == 0;
}

}  // namespace tamu::tool
