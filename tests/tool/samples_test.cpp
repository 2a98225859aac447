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

std::vector<std::string> FindCards(const fs::path& folder) {
  std::vector<std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.path().extension() == ".vcf") files.push_back(fs::absolute(entry.path()).string());
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

// What is read of a card once it was written: N is always written, and a card that was read on the
// strength of a nested card's VERSION or N gets its own.
Json AsWritten(Json record) {
  if (record["version"] == "") record["version"] = "2.1";
  Json& properties = record["properties"];
  if (properties.empty() || properties[0]["name"] != "N") {
    const Json empty_n = Json::parse(R"({"name": "N", "params": [], "encoding": null,
        "charset": null, "codePage": 1252, "values": [""], "text": [""]})");
    properties.insert(properties.begin(), empty_n);
  }
  return record;
}

// What kinds of errors there are, by a piece of their text.
constexpr const char* kErrorKinds[] = {"no END line",     "no VERSION line",    "no N line",
                                       "has version",     "begins no object",   "blank line",
                                       "byte-order mark", "not an object file", "no known kind",
                                       "UTF-16",          "does not read",      "the file is empty",
                                       "not in capitals", "no card begins here"};

std::string KindOf(const std::string& messages) {
  const std::size_t error = messages.find("tamu: ");
  if (error == std::string::npos) return "";
  for (const char* const kind : kErrorKinds) {
    if (messages.find(kind, error) != std::string::npos) return kind;
  }
  return messages.substr(error);
}

TEST(Samples, EveryFileIsReadAndEveryCardSurvivesARewrite) {
  const char* const folder = std::getenv("TAMU_SAMPLES");
  if (folder == nullptr) GTEST_SKIP() << "TAMU_SAMPLES names no folder with .vcf files";
  const Program program;
  std::size_t files = 0, cards = 0, with_warnings = 0;
  std::map<std::string, int> errors;
  for (const std::string& file : FindCards(folder)) {
    ++files;
    const ProgramResult text = program.Run({"read", file});
    const ProgramResult read = program.Run({"read", "--json", file});
    ASSERT_LE(text.exit_code, 1) << file << "\n" << text.err;
    EXPECT_EQ(read.exit_code, text.exit_code) << file;
    EXPECT_EQ(read.err, text.err) << file;
    const std::vector<Json> records = Records(read.out);
    cards += records.size();
    if (read.out.find("\"status\":\"warning\"") != std::string::npos) ++with_warnings;
    if (read.exit_code != 0) ++errors[KindOf(read.err)];
    if (records.empty()) continue;

    const ProgramResult rewritten = program.Run({"rewrite", "--keep-going", file, "out.vcf"});
    EXPECT_EQ(rewritten.exit_code, read.exit_code) << file << "\n" << rewritten.err;
    const ProgramResult again = program.Run({"read", "--json", "out.vcf"});
    EXPECT_EQ(again.exit_code, 0) << file << "\n" << again.err;
    EXPECT_EQ(again.err, "") << file;
    std::vector<Json> expected;
    for (const Json& record : records) expected.push_back(AsWritten(record));
    EXPECT_EQ(Records(again.out), expected) << file;
  }
  EXPECT_NE(files, 0U);
  std::cout << files << " files, " << cards << " cards delivered, " << with_warnings
            << " files with warnings\n";
  for (const auto& [kind, count] : errors) std::cout << count << " x " << kind << "\n";
}

}  // namespace
}  // namespace tamu::tool
