// The command "export".
#include <filesystem>
#include <system_error>

#include "commands.h"
#include "display_text.h"
#include "store/exporter.h"

namespace tamu::tool {
namespace {

// Kinds that one file can hold together.
enum class FileFormat : std::uint8_t { kCard, kCalendar, kNote, kMessage };

FileFormat FormatOf(StoredKind kind) noexcept {
  switch (kind) {
    case StoredKind::kContact:
      return FileFormat::kCard;
    case StoredKind::kEvent:
    case StoredKind::kTodo:
      return FileFormat::kCalendar;
    case StoredKind::kNote:
      return FileFormat::kNote;
    case StoredKind::kMessage:
      break;
  }
  return FileFormat::kMessage;
}

bool ShareAFormat(const std::vector<StoredKind>& kinds) noexcept {
  for (const StoredKind kind : kinds) {
    if (FormatOf(kind) != FormatOf(kinds.front())) return false;
  }
  return true;
}

bool IsFolder(const std::string& name) {
  std::error_code ignored;
  return name.ends_with('/') || std::filesystem::is_directory(name, ignored);
}

std::string NamesOf(const std::vector<StoredKind>& kinds) {
  std::string names;
  for (const StoredKind kind : kinds) {
    names += (names.empty() ? "" : ", ") + std::string(STORED_Words(kind).many);
  }
  return names;
}

int TellManyKinds(const std::vector<StoredKind>& kinds, Console* console) {
  console->TellError("a file holds objects of one kind, and these are several: " + NamesOf(kinds) +
                     ". Name one with --kind (calendar is events and todos), or a folder with "
                     "-o FOLDER/");
  return kExitUsage;
}

// Leaves the kinds of which the device has objects. False after a message.
bool KeepFilled(const DeviceSession& device, std::vector<StoredKind>* kinds, Console* console) {
  std::vector<StoredKind> filled;
  std::string problem;
  for (const StoredKind kind : *kinds) {
    std::uint64_t count = 0;
    if (!CATALOGUE_Count(device, kind, &count, &problem)) {
      console->TellError(problem);
      return false;
    }
    if (count != 0) filled.push_back(kind);
  }
  if (filled.empty()) {
    console->TellError("nothing was written: the device in " +
                       DISPLAY_FileName(DeviceSession::Folder()) + " has no " + NamesOf(*kinds));
    return false;
  }
  *kinds = std::move(filled);
  return true;
}

}  // namespace

int COMMAND_Export(const ExportOptions& options, Console* console) {
  std::vector<StoredKind> kinds = STORED_KindsNamed(options.kinds);
  const bool to_folder = IsFolder(options.out);
  if (!to_folder && !options.kinds.empty() && !ShareAFormat(kinds)) {
    return TellManyKinds(kinds, console);
  }
  DeviceSession device;
  std::string problem;
  if (!device.Open(&problem)) {
    console->TellError(problem);
    return kExitFailure;
  }
  if (!KeepFilled(device, &kinds, console)) return kExitFailure;
  if (!to_folder && !ShareAFormat(kinds)) return TellManyKinds(kinds, console);
  Exporter exporter(device, console);
  const bool good =
      to_folder ? exporter.WriteFolder(kinds, options.out) : exporter.WriteFile(kinds, options.out);
  return good ? kExitSuccess : kExitFailure;
}

}  // namespace tamu::tool
