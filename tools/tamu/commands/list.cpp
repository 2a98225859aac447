// The command "list".
#include <array>
#include <nlohmann/json.hpp>

#include "commands.h"
#include "display_text.h"
#include "store/catalogue.h"
#include "store/list_table.h"

namespace tamu::tool {
namespace {

using Json = nlohmann::ordered_json;
using Counts = std::array<std::uint64_t, std::size(kStoredKinds)>;

Json OrNull(std::string_view text) { return text.empty() ? Json(nullptr) : Json(text); }

std::string JsonLine(const CatalogueEntry& entry) {
  Json line;
  line["kind"] = STORED_Words(entry.id.kind).one;
  line["id"] = entry.id.Text();
  line["date"] = OrNull(LIST_Date(entry));
  line["title"] = DISPLAY_ToUtf8(LIST_Title(entry));
  line["detail"] = DISPLAY_ToUtf8(LIST_Detail(entry));
  line["state"] = OrNull(entry.state);
  line["folder"] = OrNull(entry.folder);
  return DISPLAY_Json(line.dump()) + "\n";
}

// "2 contacts, 1 note"; what was asked for and is not there counts too.
std::string CountText(const std::vector<StoredKind>& kinds, const Counts& counts) {
  std::string text;
  std::uint64_t sum = 0;
  for (const StoredKind kind : kinds) sum += counts[static_cast<std::size_t>(kind)];
  for (const StoredKind kind : kinds) {
    const std::uint64_t count = counts[static_cast<std::size_t>(kind)];
    if (count == 0 && sum != 0) continue;
    text += (text.empty() ? "" : ", ") + KIND_Count(count, STORED_Words(kind));
  }
  return text;
}

void TellEmpty(const std::vector<StoredKind>& kinds, Console* console) {
  if (kinds.size() < std::size(kStoredKinds)) {
    console->Tell("The device has " + CountText(kinds, {}) + ".");
    return;
  }
  console->Tell("The device in " + DISPLAY_FileName(DeviceSession::Folder()) +
                " is empty. 'tamu import FILE' brings objects to it.");
}

}  // namespace

int COMMAND_List(const ListOptions& options, Console* console) {
  const std::vector<StoredKind> kinds = STORED_KindsNamed(options.kinds);
  DeviceSession device;
  std::string problem;
  if (!device.Open(&problem)) {
    console->TellError(problem);
    return kExitFailure;
  }
  ListTable table(console);
  Counts counts{};
  std::uint64_t sum = 0;
  const auto take = [&](const CatalogueEntry& entry) {
    if (options.json) {
      console->Print(JsonLine(entry));
      console->ExitIfBroken();
    } else {
      table.Add(entry);
    }
    ++counts[static_cast<std::size_t>(entry.id.kind)];
    ++sum;
    return true;
  };
  const bool listed = CATALOGUE_List(device, kinds, take, &problem);
  table.Finish();
  if (!listed) {
    console->TellError(problem);
    return kExitFailure;
  }
  if (sum == 0) {
    TellEmpty(kinds, console);
  } else if (!options.json) {
    console->Tell(CountText(kinds, counts));
  }
  return kExitSuccess;
}

}  // namespace tamu::tool
