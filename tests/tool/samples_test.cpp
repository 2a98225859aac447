// Runs the program over files that others wrote, in the folder that TAMU_SAMPLES names.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "tool/program.h"

namespace tamu::tool {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

// Everything but what describes the samples.
std::vector<std::string> FindFiles(const fs::path& folder) {
  std::vector<std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    const fs::path extension = entry.path().extension();
    if (!entry.is_regular_file() || extension == ".md" || extension == ".tsv") continue;
    files.push_back(fs::absolute(entry.path()).string());
  }
  std::sort(files.begin(), files.end());
  return files;
}

// The records behind the program's JSON: what says where and how an object was read is left out.
std::vector<Json> Records(const std::string& text) {
  std::vector<Json> records;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    Json record = Json::parse(line);
    for (const char* const place : {"file", "line", "status"}) record.erase(place);
    records.push_back(std::move(record));
  }
  return records;
}

// What the writer of a kind writes, in its order.
struct Writing {
  const char* kind;
  const char* version;              // that an object without one gets
  std::vector<std::string> order;   // of the properties up to the last that is always written
  std::vector<std::string> always;  // those that are written also when there is none
  std::vector<std::string> never;   // those that are read and not written
};
const Writing& WritingOf(const std::string& kind) {
  static const std::vector<Writing> kWritings = {
      {"contact", "2.1", {"N"}, {"N"}, {}},
      {"event",
       "1.0",
       {"SUMMARY", "DESCRIPTION", "DTSTART", "DTEND", "CLASS", "PRIORITY"},
       {"SUMMARY", "DESCRIPTION", "DTSTART", "DTEND", "PRIORITY"},
       {"COMPLETED", "DUE"}},
      {"todo",
       "1.0",
       {"CATEGORIES", "CLASS", "COMPLETED", "DESCRIPTION", "DTSTART", "DUE", "PRIORITY", "STATUS",
        "SUMMARY"},
       {"CATEGORIES", "COMPLETED", "DESCRIPTION", "DUE", "PRIORITY", "STATUS", "SUMMARY"},
       {"DTEND"}},
      {"note",
       "1.1",
       {"SUMMARY", "BODY", "DCREATED", "LAST-MODIFIED", "CATEGORIES", "CLASS"},
       {},
       {}},
      {"message", "1.1", {}, {}, {}},
  };
  for (const Writing& writing : kWritings) {
    if (kind == writing.kind) return writing;
  }
  return kWritings.front();
}

Json EmptyProperty(const std::string& name) {
  Json property = Json::parse(R"({"params": [], "encoding": null, "charset": null,
      "codePage": 1252, "values": [""], "text": [""]})");
  property["name"] = name;
  if (name.starts_with("DT") || name == "COMPLETED" || name == "DUE") {
    property["dates"] = Json::array({nullptr});
  }
  return property;
}

bool Contains(const std::vector<std::string>& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

// The properties of an object once it was written: some are always there, some never.
Json PropertiesAsWritten(const Json& properties, const Writing& writing) {
  std::vector<Json> rest;
  for (const Json& property : properties) {
    if (!Contains(writing.never, property["name"])) rest.push_back(property);
  }
  Json written = Json::array();
  std::size_t next = 0;
  for (const std::string& name : writing.order) {
    const std::size_t before = written.size();
    while (next < rest.size() && rest[next]["name"] == name) written.push_back(rest[next++]);
    if (written.size() == before && Contains(writing.always, name)) {
      written.push_back(EmptyProperty(name));
    }
  }
  for (; next < rest.size(); ++next) written.push_back(rest[next]);
  return written;
}

bool IsMultipart(const std::string& content_type) {
  const std::size_t place = content_type.find("multipart");
  return place != std::string::npos && content_type.find("boundary", place) != std::string::npos;
}

// The first part alone is written, with a line end behind its text; a temporary file is not, and
// comes back empty.
void MakeMessageAsWritten(Json* record) {
  for (const char* const list : {"fields", "parts"}) {
    Json kept = Json::array();
    for (const Json& item : (*record)[list]) {
      if (item.contains("name") && item["name"] == "Mime-Version") continue;
      if (list[0] == 'f' || kept.empty()) kept.push_back(item);
    }
    (*record)[list] = kept;
  }
  Json& part = (*record)["parts"][0];
  if (IsMultipart(part["contentType"])) part["contentType"] = "";
  if (!part["fileSize"].is_null()) part["fileSize"] = 0;
  if (!part["value"].is_null()) part["value"] = part["value"].get<std::string>() + "\n";
  if (!part["text"].is_null()) part["text"] = part["text"].get<std::string>() + "\n";
}

Json AsWritten(Json record) {
  const Writing& writing = WritingOf(record["kind"]);
  if (record["version"] == "") record["version"] = writing.version;
  record["properties"] = PropertiesAsWritten(record["properties"], writing);
  if (record["kind"] == "message") MakeMessageAsWritten(&record);
  return record;
}

// What kinds of errors there are, by a piece of their text.
constexpr const char* kErrorKinds[] = {
    "no END line",      "no VERSION line", "no N line",        "has version",
    "begins no object", "blank line",      "byte-order mark",  "not an object file",
    "no known kind",    "UTF-16",          "neither VEVENT",   "the file is empty",
    "not in capitals",  "begins here",     "neither event nor"};

std::string KindOf(const std::string& messages) {
  const std::size_t error = messages.find("tamu: ");
  if (error == std::string::npos) return "";
  for (const char* const kind : kErrorKinds) {
    if (messages.find(kind, error) != std::string::npos) return kind;
  }
  return messages.substr(error);
}

void PrintCounts(const char* what, const std::map<std::string, int>& counts) {
  for (const auto& [name, count] : counts) std::cout << what << count << " x " << name << "\n";
}

TEST(Samples, EveryFileIsReadAndEveryObjectSurvivesARewrite) {
  const char* const folder = std::getenv("TAMU_SAMPLES");
  if (folder == nullptr) GTEST_SKIP() << "TAMU_SAMPLES names no folder with object files";
  const Program program;
  std::size_t files = 0, with_warnings = 0;
  std::map<std::string, int> errors, objects;
  for (const std::string& file : FindFiles(folder)) {
    ++files;
    const ProgramResult text = program.Run({"read", file});
    const ProgramResult read = program.Run({"read", "--json", file});
    ASSERT_LE(text.exit_code, 1) << file << "\n" << text.err;
    EXPECT_EQ(read.exit_code, text.exit_code) << file;
    EXPECT_EQ(read.err, text.err) << file;
    const std::vector<Json> records = Records(read.out);
    for (const Json& record : records) ++objects[record["kind"]];
    if (read.out.find("\"status\":\"warning\"") != std::string::npos) ++with_warnings;
    if (read.exit_code != 0) ++errors[KindOf(read.err)];
    if (records.empty()) continue;

    const ProgramResult rewritten = program.Run({"rewrite", "--keep-going", file, "out"});
    EXPECT_EQ(rewritten.exit_code, read.exit_code) << file << "\n" << rewritten.err;
    const ProgramResult again = program.Run({"read", "--json", "out"});
    EXPECT_EQ(again.exit_code, 0) << file << "\n" << again.err;
    EXPECT_EQ(again.err, "") << file;
    std::vector<Json> expected;
    for (const Json& record : records) expected.push_back(AsWritten(record));
    EXPECT_EQ(Records(again.out), expected) << file;
  }
  EXPECT_NE(files, 0U);
  std::cout << files << " files, " << with_warnings << " with warnings\n";
  PrintCounts("delivered: ", objects);
  PrintCounts("ended by: ", errors);
}

}  // namespace
}  // namespace tamu::tool
