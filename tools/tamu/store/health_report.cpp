#include "store/health_report.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "device/health.h"
#include "device/ink/documents.h"
#include "display_text.h"
#include "platform/code_pages.h"
#include "platform/files.h"
#include "platform/paths.h"
#include "platform/registry.h"
#include "platform/rich_ink.h"
#include "settings.h"
#include "store/catalogue.h"
#include "store/device_session.h"
#include "store/error_lines.h"
#include "system/folder.h"
#include "text/date_value.h"

namespace tamu::tool {
namespace {

namespace fs = std::filesystem;
using Lines = std::vector<HealthLine>;

constexpr std::string_view kElsewhere = "or set TAMU_HOME to another folder";
constexpr std::size_t kMostDamages = 3;

std::string Advice(std::string_view first) {
  return std::string(first) + ", " + std::string(kElsewhere);
}

// "1 KB" to "12 MB"; a part counts as a whole.
std::string SizeText(std::uint64_t bytes) {
  constexpr std::uint64_t kKilo = 1024;
  const bool mega = bytes >= kKilo * kKilo;
  const std::uint64_t unit = mega ? kKilo * kKilo : kKilo;
  return std::to_string((bytes + unit - 1) / unit) + (mega ? " MB" : " KB");
}

// Whether files can be made in the device's folder: one is made.
void ReportFolder(const std::string& folder, bool existed, Lines* lines) {
  const std::string shown = DISPLAY_FileName(folder);
  std::string reason = "there is no home folder";
  if (!folder.empty() && FOLDER_TakesFiles(folder, &reason)) {
    lines->push_back({"folder", false, shown + (existed ? "" : " (new)") + ", writable", {}});
    return;
  }
  lines->push_back({"folder", true, shown + " cannot be written to: " + reason,
                    Advice("Give yourself the right to write there")});
}

void ReportSettings(const std::string& folder, Lines* lines) {
  std::size_t set = 0;
  for (const Setting& setting : SETTING_All()) set += SETTING_Read(setting) ? 1U : 0U;
  for (const platform::RegistryProblem& problem : platform::RegistryProblems()) {
    std::string text = DISPLAY_FileName(problem.file);
    if (problem.line != 0) text += ":" + std::to_string(problem.line);
    lines->push_back({"settings", true, text + ": passed over: " + DISPLAY_Bytes(problem.reason),
                      "Repair the line, or delete it and use 'tamu config set'"});
  }
  if (!lines->empty() && lines->back().subject == "settings") return;
  std::error_code ignored;
  const bool there = fs::exists(folder + "/registry.reg", ignored);
  lines->push_back({"settings",
                    false,
                    there ? "registry.reg, " + std::to_string(set) + " of " +
                                std::to_string(SETTING_All().size()) + " settings are set"
                          : "no registry.reg: every setting has its default",
                    {}});
}

void ReportDatabase(const std::string& folder, Lines* lines) {
  device::DatabaseHealth health;
  const ErrorLines errors;
  const platform::HRESULT result = device::HEALTH_Examine(&health);
  if (result == platform::hr::kNotImplemented) {
    lines->push_back({"database", true, "this program was built without the device's stores",
                      "Use a 64-bit build with SOCI and SQLite"});
    return;
  }
  if (platform::Failed(result)) {
    lines->push_back({"database", true, errors.empty() ? "it cannot be opened" : errors.Text(),
                      Advice("Do what the text says")});
    return;
  }
  for (std::size_t i = 0; i < health.damages.size() && i < kMostDamages; ++i) {
    lines->push_back({"database", true, "damaged: " + DISPLAY_Bytes(health.damages[i]),
                      "Export what can be read ('tamu export -o FOLDER/'), move " +
                          DISPLAY_FileName(folder + "/device.db") + " away, and import it again"});
  }
  if (!health.damages.empty()) return;
  lines->push_back({"database",
                    false,
                    "device.db, version " + std::to_string(health.version) + ", " +
                        SizeText(health.size) + ", whole (" + DISPLAY_Bytes(health.engine) + ")",
                    {}});
}

void ReportStores(Lines* lines) {
  DeviceSession device;
  std::string problem;
  if (!device.Open(&problem)) {
    lines->push_back({"stores", true, problem, "See the lines above"});
    return;
  }
  std::string counts;
  for (const StoredKind kind : kStoredKinds) {
    std::uint64_t count = 0;
    if (!CATALOGUE_Count(device, kind, &count, &problem)) {
      lines->push_back({"stores", true, problem, "See the lines above"});
      continue;
    }
    counts += (counts.empty() ? "" : ", ") + KIND_Count(count, STORED_Words(kind));
  }
  lines->push_back({"stores", false, counts, {}});
}

void ReportNotes(Lines* lines) {
  std::array<char16_t, platform::kMaxPath> path{};
  if (!platform::SHGetSpecialFolderPathW(0, path.data(), platform::kCsidlPersonal, 0)) {
    lines->push_back(
        {"notes", true, "there is no folder for notes", Advice("Repair the device's folder")});
    return;
  }
  const std::string folder = platform::PathToNative(path.data());
  const std::string shown = DISPLAY_FileName(folder);
  std::error_code failure;
  if (!fs::exists(folder, failure) && !failure) {
    lines->push_back({"notes", false, shown + " comes with the first note", {}});
    return;
  }
  std::vector<device::Document> documents;
  std::string reason = "its files cannot be listed";
  if (device::DOCUMENTS_List(&documents) != 0 || !FOLDER_TakesFiles(folder, &reason)) {
    lines->push_back({"notes", true, shown + " cannot be read and written to: " + reason,
                      "Give yourself the right to read and write there"});
    return;
  }
  std::size_t damaged = 0;
  for (const device::Document& document : documents) {
    device::InkText text;
    if (device::DOCUMENTS_Read(document.title, &text) == 0 && !text.damaged) continue;
    ++damaged;
    lines->push_back({"notes", true,
                      "the document of the note \"" + DISPLAY_Line(document.title) +
                          "\" is damaged or cannot be read",
                      "'tamu show note TITLE' shows what is left; put a good copy in its place"});
  }
  if (damaged == 0) lines->push_back({"notes", false, shown + ", all documents can be read", {}});
}

void ReportLog(Lines* lines) {
  const Setting* const setting = SETTING_Find("LogIPAddr");
  const std::optional<std::string> value = SETTING_Read(*setting);
  const bool off = !value || *value == "off";
  lines->push_back({"log",
                    false,
                    off ? "off ('tamu config set LogIPAddr 127.0.0.1' turns it on)"
                        : "diagnostic lines go to " + DISPLAY_Bytes(*value) +
                              ", UDP port 38182 ('tamu log' receives them)",
                    {}});
}

void ReportCodePage(Lines* lines) {
  std::array<char16_t, 16> text{};
  static_cast<void>(platform::GetLocaleInfoW(platform::kLocaleSystemDefault,
                                             platform::kLocaleIDefaultAnsiCodePage, text.data(),
                                             static_cast<std::int32_t>(text.size())));
  const std::string number = DISPLAY_Line(text.data());
  const auto page = static_cast<std::uint32_t>(std::strtoul(number.c_str(), nullptr, 10));
  if (!platform::IsValidCodePage(page)) {
    lines->push_back({"code page", true, "the ANSI code page " + number + " is not known",
                      "'tamu config set AnsiCodePage 65001' (UTF-8) knows every character"});
    return;
  }
  lines->push_back({"code page",
                    false,
                    page == platform::kCpUtf8
                        ? "ANSI code page 65001 (UTF-8)"
                        : "ANSI code page " + number +
                              "; other characters of mail headers and note ids are lost",
                    {}});
}

// "UTC+01:00", now.
std::string OffsetText() {
  platform::SYSTEMTIME utc_time{};
  platform::FILETIME utc{};
  platform::FILETIME local{};
  platform::GetSystemTime(&utc_time);
  if (!platform::SystemTimeToFileTime(&utc_time, &utc) ||
      !platform::FileTimeToLocalFileTime(&utc, &local)) {
    return "UTC";
  }
  const auto ticks = [](const platform::FILETIME& time) {
    return static_cast<std::int64_t>(std::uint64_t{time.dwHighDateTime} << 32U |
                                     time.dwLowDateTime);
  };
  constexpr std::int64_t kTicksOfMinute = 600000000;
  const std::int64_t minutes = (ticks(local) - ticks(utc)) / kTicksOfMinute;
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "UTC%c%02d:%02d", minutes < 0 ? '-' : '+',
                static_cast<int>(std::abs(minutes) / 60), static_cast<int>(std::abs(minutes) % 60));
  return text.data();
}

// A zone that the system does not know counts as UTC, without a word. One that is spelled out has
// digits, and so have few that are not ("Etc/GMT+1").
bool IsKnownZone(std::string zone) {
  if (zone.starts_with(':')) zone.erase(0, 1);
  if (zone.empty() || zone.find_first_of("0123456789") != std::string::npos) return true;
  const char* const folder = std::getenv("TZDIR");
  const std::string base = folder != nullptr ? folder : "/usr/share/zoneinfo";
  std::error_code ignored;
  return zone == "UTC" || fs::exists(zone.front() == '/' ? zone : base + "/" + zone, ignored);
}

void ReportZone(Lines* lines) {
  const char* const zone = std::getenv("TZ");
  const std::string shown = zone == nullptr ? "the system's" : "TZ=" + DISPLAY_Bytes(zone);
  if (zone != nullptr && !IsKnownZone(zone)) {
    lines->push_back({"time zone", true, shown + " is unknown here: times count as UTC",
                      "Set TZ to a zone of the system (TZ=Europe/Berlin), or install tzdata"});
    return;
  }
  lines->push_back({"time zone", false, shown + ", now " + OffsetText(), {}});
}

}  // namespace

std::vector<HealthLine> HEALTH_Report() {
  Lines lines;
  const std::string folder = DeviceSession::Folder();
  std::error_code ignored;
  const bool existed = fs::exists(folder, ignored);
  ReportDatabase(folder, &lines);
  ReportStores(&lines);
  // What opening makes is there now.
  Lines first;
  ReportFolder(folder, existed, &first);
  ReportSettings(folder, &first);
  lines.insert(lines.begin(), first.begin(), first.end());
  ReportNotes(&lines);
  ReportLog(&lines);
  ReportCodePage(&lines);
  ReportZone(&lines);
  return lines;
}

}  // namespace tamu::tool
