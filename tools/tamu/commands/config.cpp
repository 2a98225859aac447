// The command "config".
#include <nlohmann/json.hpp>

#include "commands.h"
#include "display_text.h"
#include "settings.h"

namespace tamu::tool {
namespace {

constexpr std::size_t kNameColumn = 26;
constexpr std::size_t kValueColumn = 18;

std::string Padded(std::string text, std::size_t width) {
  if (text.size() < width) text.append(width - text.size(), ' ');
  return text;
}

void ListAsText(Console* console) {
  for (const Setting& setting : SETTING_All()) {
    const std::optional<std::string> value = SETTING_Read(setting);
    std::string shown = value ? DISPLAY_Bytes(*value) : std::string(setting.default_text);
    if (!value && shown.empty()) shown = "(none)";
    console->Print(Padded(std::string(setting.name), kNameColumn) + Padded(shown, kValueColumn) +
                   (value ? "  set      " : "  default  ") + std::string(setting.meaning) + "\n");
  }
}

void ListAsJson(Console* console) {
  for (const Setting& setting : SETTING_All()) {
    const std::optional<std::string> value = SETTING_Read(setting);
    nlohmann::ordered_json line;
    line["name"] = setting.name;
    line["value"] = value ? nlohmann::ordered_json(*value) : nlohmann::ordered_json(nullptr);
    line["default"] = setting.default_text;
    line["meaning"] = setting.meaning;
    console->Print(
        DISPLAY_Json(line.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace)) + "\n");
  }
}

// Told when there is no such setting.
const Setting* FindOrTell(const std::string& name, Console* console) {
  const Setting* const setting = SETTING_Find(name);
  if (setting == nullptr) {
    console->TellError("'" + DISPLAY_Bytes(name) +
                       "' is no setting. 'tamu config list' shows all of them");
  }
  return setting;
}

}  // namespace

int COMMAND_ConfigList(bool json, Console* console) {
  json ? ListAsJson(console) : ListAsText(console);
  return kExitSuccess;
}

int COMMAND_ConfigGet(const std::string& name, Console* console) {
  const Setting* const setting = FindOrTell(name, console);
  if (setting == nullptr) return kExitUsage;
  const std::optional<std::string> value = SETTING_Read(*setting);
  console->Print((value ? DISPLAY_Bytes(*value) : std::string(setting->default_text)) + "\n");
  return kExitSuccess;
}

int COMMAND_ConfigSet(const std::string& name, const std::string& value, Console* console) {
  const Setting* const setting = FindOrTell(name, console);
  if (setting == nullptr) return kExitUsage;
  std::string problem;
  if (SETTING_Write(*setting, value, &problem)) return kExitSuccess;
  console->TellError(std::string(setting->name) + ": '" + DISPLAY_Bytes(value) + "': " + problem);
  return kExitFailure;
}

}  // namespace tamu::tool
