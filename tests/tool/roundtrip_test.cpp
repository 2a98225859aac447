// What a device gives out and another one takes comes out of that one the same.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tool/program.h"

namespace tamu::tool {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

constexpr const char* kKinds[] = {"contact", "calendar", "note", "message"};

// Everything but what describes the files.
std::vector<std::string> ObjectFiles(const fs::path& folder) {
  std::vector<std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    const fs::path ending = entry.path().extension();
    if (!entry.is_regular_file() || ending == ".md" || ending == ".tsv" || ending == ".c") {
      continue;
    }
    files.push_back(fs::absolute(entry.path()).string());
  }
  std::sort(files.begin(), files.end());
  return files;
}

// A blank before "<" belongs to an attendee's name, and one more is written behind the name.
std::string WithoutBlanksBeforeAddress(std::string text) {
  const std::size_t address = text.find('<');
  if (address == std::string::npos) return text;
  std::size_t end = address;
  while (end != 0 && text[end - 1] == ' ') --end;
  return text.erase(end, address - end);
}

// What a device does not take back as it gives it, on purpose.
void LeaveOutWhatIsNotTakenBack(Json* object) {
  Json kept = Json::array();
  for (Json& property : (*object)["properties"]) {
    const std::string name = property["name"];
    // A busy status that is written as no STATUS is read as the usual one.
    if (name == "STATUS" && (*object)["kind"] == "event") continue;
    // "for ever" wins over the end date that is written behind it.
    if (name == "RRULE" && property["rule"]["tree"]["duration"] == 0) {
      property.erase("values");
      property.erase("text");
      property["rule"].erase("generated");
      property["rule"].erase("words");
      property["rule"]["tree"].erase("endDate");
    }
    if (name == "ATTENDEE") {
      for (const char* const member : {"values", "text"}) {
        for (Json& text : property[member]) text = WithoutBlanksBeforeAddress(text);
      }
    }
    kept.push_back(property);
  }
  (*object)["properties"] = kept;
}

// An object of a file but for where it stands and the identifier that its device gave it.
std::string Substance(const std::string& line) {
  Json object = Json::parse(line);
  for (const char* const member : {"file", "line", "status", "luid"}) object.erase(member);
  LeaveOutWhatIsNotTakenBack(&object);
  return object.dump();
}

using Objects = std::multiset<std::string>;

Objects ReadObjects(const Program& device, const std::vector<std::string>& files) {
  std::vector<std::string> command = {"read", "--json"};
  command.insert(command.end(), files.begin(), files.end());
  const ProgramResult result = device.Run(command);
  EXPECT_EQ(result.exit_code, 0) << result.err;
  Objects objects;
  std::istringstream stream(result.out);
  for (std::string line; std::getline(stream, line);) objects.insert(Substance(line));
  return objects;
}

ProgramResult Import(const Program& device, const std::vector<std::string>& files) {
  std::vector<std::string> command = {"import", "--on-duplicate", "add"};
  command.insert(command.end(), files.begin(), files.end());
  return device.Run(command);
}

void ExpectEqual(const Objects& first, const Objects& second) {
  std::vector<std::string> lost, gained;
  std::set_difference(first.begin(), first.end(), second.begin(), second.end(),
                      std::back_inserter(lost));
  std::set_difference(second.begin(), second.end(), first.begin(), first.end(),
                      std::back_inserter(gained));
  for (const std::string& object : lost) ADD_FAILURE() << "only in the first export: " << object;
  for (const std::string& object : gained) ADD_FAILURE() << "only in the second: " << object;
}

TEST(RoundTrip, EveryExampleComesOutOfASecondDeviceAsOutOfTheFirst) {
  const Program first, second;
  Import(first, ObjectFiles(TAMU_EXAMPLES));
  for (const char* const kind : kKinds) {
    const std::string out = std::string(kind) + ".v";
    const ProgramResult exported = first.Run({"export", "--kind", kind, "-o", out});
    ASSERT_EQ(exported.exit_code, 0) << exported.err;
    const ProgramResult imported = Import(second, {first.Path(out)});
    EXPECT_EQ(imported.exit_code, 0) << imported.out << imported.err;
    const ProgramResult again = second.Run({"export", "--kind", kind, "-o", out});
    ASSERT_EQ(again.exit_code, 0) << again.err;
    const Objects objects = ReadObjects(first, {out});
    EXPECT_GE(objects.size(), 3U) << kind;
    ExpectEqual(objects, ReadObjects(second, {out}));
  }
}

// The names of exported files that the export says do not come back.
std::set<std::string> Reported(const std::string& messages, const std::string& folder) {
  std::set<std::string> names;
  std::istringstream stream(messages);
  for (std::string line; std::getline(stream, line);) {
    const std::size_t end = line.find(": ");
    if (!line.starts_with(folder) || end <= folder.size()) continue;
    names.insert(line.substr(folder.size(), end - folder.size()));
  }
  return names;
}

std::vector<std::string> FilesBut(const std::string& folder, const std::set<std::string>& names) {
  std::vector<std::string> files = ObjectFiles(folder);
  std::erase_if(files, [&](const std::string& file) {
    return names.count(fs::path(file).filename().string()) != 0;
  });
  return files;
}

// What the reports of an export are about, without the object.
void CountReports(const std::string& messages) {
  std::map<std::string, int> counts;
  std::istringstream stream(messages);
  for (std::string line; std::getline(stream, line);) {
    const std::size_t place = line.find("\": ");
    if (place == std::string::npos) continue;
    ++counts[line.substr(place + 3, line.find(' ', place + 3) - place - 3)];
  }
  for (const auto& [what, count] : counts) std::cout << count << " x " << what << "\n";
}

TEST(RoundTrip, EverySampleComesOutOfASecondDeviceAsOutOfTheFirst) {
  const char* const samples = std::getenv("TAMU_SAMPLES");
  if (samples == nullptr) GTEST_SKIP() << "TAMU_SAMPLES names no folder with object files";
  const Program first, second;
  std::cout << Import(first, ObjectFiles(samples)).out;
  const ProgramResult exported = first.Run({"export", "-o", "out/"});
  const std::set<std::string> reported = Reported(exported.err, "out/");
  CountReports(exported.err);
  const std::vector<std::string> files = FilesBut(first.Path("out"), reported);
  std::cout << files.size() << " objects come back, " << reported.size() << " are reported\n";
  ASSERT_GT(files.size(), 0U);
  EXPECT_EQ(Import(second, files).exit_code, 0);
  const ProgramResult again = second.Run({"export", "-o", "out/"});
  EXPECT_EQ(again.exit_code, 0) << again.err;
  ExpectEqual(ReadObjects(first, files), ReadObjects(second, ObjectFiles(second.Path("out"))));
}

}  // namespace
}  // namespace tamu::tool
