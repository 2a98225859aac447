// "tamu check": every kind of finding has its golden case and its place in the manual, and where
// the library warns or fails, the program has something to say.
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

#include "check/finding.h"
#include "core/file.h"
#include "core/log.h"
#include "formats/object_file.h"
#include "platform/paths.h"
#include "tool/program.h"

namespace tamu::tool {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

std::vector<Json> ParseLines(const std::string& text) {
  std::vector<Json> findings;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) findings.push_back(Json::parse(line));
  return findings;
}

// Bytes without a pattern, the same in every run and on every machine.
std::string Garbage(std::size_t size) {
  std::string bytes;
  std::uint32_t state = 54321;
  while (bytes.size() < size) {
    state = state * 1664525U + 1013904223U;
    bytes.push_back(static_cast<char>(state >> 24));
  }
  return bytes;
}

// --- Against the library ---

// What the library makes of a file.
struct LibraryView {
  TamuResult result = TAMU_OK;
  std::map<std::uint32_t, std::string> lines;  // that it warns or fails at, with its words
};

void NoteLine(const LogLine& line, void* user) {
  auto* const view = static_cast<LibraryView*>(user);
  const bool counts =
      line.severity == LogSeverity::kError || line.text.find("Warning") != std::string_view::npos;
  if (counts) view->lines.emplace(line.source_line, line.text);
}

LibraryView ReadByLibrary(const std::string& path) {
  LibraryView view;
  File file;
  EXPECT_TRUE(file.Open(platform::PathFromNative(path).c_str(), u"rb")) << path;
  LOG_SetObserver(&NoteLine, &view);
  view.result = OBJECTFILE_Read(&file, nullptr, nullptr);
  LOG_SetObserver(nullptr, nullptr);
  return view;
}

struct CrossCheck {
  std::size_t files = 0, files_with_findings = 0, library_lines = 0, findings = 0;
};

// Errors that stand behind the end of the library's reading, or before it ever begins.
bool IsAboutTheRest(const Json& finding) {
  static const std::set<std::string> kRest = {"text-between", "unread-objects", "other-format"};
  return kRest.contains(finding["id"].get<std::string>());
}

void Compare(const Program& program, const std::string& path, CrossCheck* sum) {
  const LibraryView library = ReadByLibrary(path);
  const ProgramResult result = program.Run({"check", "--json", path});
  ASSERT_LE(result.exit_code, 1) << path << "\n" << result.err;
  const std::vector<Json> findings = ParseLines(result.out);
  EXPECT_EQ(result.exit_code, findings.empty() ? 0 : 1) << path;

  std::set<std::uint32_t> lines;
  std::uint32_t last = 0;
  bool has_error = false, ends_early = false;
  for (const Json& finding : findings) {
    const std::uint32_t line = finding["line"];
    EXPECT_GE(line, last) << path << ": findings are not in the order of the file";
    last = line;
    lines.insert(line);
    if (finding["severity"] == "error") (IsAboutTheRest(finding) ? ends_early : has_error) = true;
  }
  for (const auto& [line, text] : library.lines) {
    EXPECT_TRUE(lines.contains(line)) << path << ":" << line << ": the library says " << text;
  }
  const bool good = library.result == TAMU_PARSE_OK || library.result == TAMU_PARSE_WARNING;
  EXPECT_TRUE(library.result == TAMU_PARSE_OK || !findings.empty()) << path;
  EXPECT_TRUE(good || has_error) << path << ": the library fails with " << library.result;
  EXPECT_TRUE(!good || ends_early || !has_error) << path << "\n" << result.out;
  ++sum->files;
  sum->files_with_findings += findings.empty() ? 0U : 1U;
  sum->library_lines += library.lines.size();
  sum->findings += findings.size();
}

bool IsObjectFile(const fs::path& path) {
  static const std::set<std::string> kExtensions = {".vcf",  ".vcs",   ".vnt", ".vmg",
                                                    ".vmsg", ".vnote", ".ics"};
  return kExtensions.contains(path.extension().string());
}

std::vector<std::string> ObjectFiles(const std::string& folder) {
  std::vector<std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    const bool counts = IsObjectFile(entry.path()) || entry.path().filename() == "stdin";
    if (entry.is_regular_file() && counts) files.push_back(fs::absolute(entry.path()).string());
  }
  std::sort(files.begin(), files.end());
  return files;
}

void CompareFolder(const std::string& folder) {
  const Program program;
  CrossCheck sum;
  for (const std::string& path : ObjectFiles(folder)) Compare(program, path, &sum);
  EXPECT_NE(sum.files, 0U);
  std::cout << sum.files << " files, " << sum.files_with_findings << " with " << sum.findings
            << " findings; the library speaks of " << sum.library_lines << " lines\n";
}

TEST(CheckAgainstLibrary, ExamplesHaveAFindingWhereverItWarns) { CompareFolder(TAMU_EXAMPLES); }

TEST(CheckAgainstLibrary, GoldenInputsHaveAFindingWhereverItWarns) {
  CompareFolder(TAMU_TEST_DATA "/tool");
}

TEST(CheckAgainstLibrary, SamplesHaveAFindingWhereverItWarns) {
  const char* const folder = std::getenv("TAMU_SAMPLES");
  if (folder == nullptr) GTEST_SKIP() << "TAMU_SAMPLES names no folder with object files";
  CompareFolder(folder);
}

// Files that are cut off anywhere, of every format.
TEST(CheckAgainstLibrary, TruncatedFilesHaveAFindingWhereverItWarns) {
  const Program program;
  CrossCheck sum;
  for (const char* const name :
       {"check_clean/card.vcf", "check_clean/calendar.vcs", "check_clean/note.vnt",
        "check_clean/message.vmg", "check_part_skipped/a.vmg"}) {
    const std::string whole = ReadFileBytes(std::string(TAMU_TEST_DATA "/tool/") + name);
    ASSERT_FALSE(whole.empty()) << name;
    for (std::size_t size = 1; size < whole.size(); size += 11) {
      program.Write("cut", whole.substr(0, size));
      Compare(program, program.Path("cut"), &sum);
    }
  }
}

// --- The table of findings ---

TEST(CheckFindings, EveryKindHasAGoldenCaseAndAPlaceInTheManual) {
  const std::string manual = ReadFileBytes(TAMU_DOCS "/check.md");
  for (const FindingRow& row : FINDING_Rows()) {
    const std::string id(row.id);
    std::string folder = "check_" + id;
    std::replace(folder.begin(), folder.end(), '-', '_');
    const std::string shown =
        ReadFileBytes(std::string(TAMU_TEST_DATA "/tool/") + folder + "/stdout");
    const std::string line = std::string(SEVERITY_Word(row.severity)) + ": ";
    EXPECT_NE(shown.find("[" + id + "]\n"), std::string::npos) << id << " has no golden case";
    EXPECT_NE(shown.find(line), std::string::npos) << id;
    EXPECT_NE(manual.find("### `" + id + "` (" + std::string(SEVERITY_Word(row.severity)) + ")"),
              std::string::npos)
        << id << " is not in the manual";
  }
}

TEST(CheckFindings, TextsAreFilledAndAdviceIsASentence) {
  for (const FindingRow& row : FINDING_Rows()) {
    const std::string text = FINDING_Text({row.kind, 1, 0, {"a", "b", "c", "d"}});
    EXPECT_EQ(text.find('%'), std::string::npos) << text;
    EXPECT_TRUE(row.advice.empty() || row.advice.ends_with('.')) << row.id;
    EXPECT_FALSE(row.text.ends_with('.')) << row.id;
  }
}

// --- Files of all kinds ---

TEST(Check, GarbageIsCheckedAndSafeToShow) {
  const Program program;
  for (const char* const begin : {"", "BEGIN:VCARD\r\n", "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\n",
                                  "BEGIN:VNOTE\r\n", "BEGIN:VMSG\r\nBEGIN:VENV\r\nBEGIN:VBODY\r\n",
                                  "BEGIN:VMSG\r\nBEGIN:VENV\r\nBEGIN:VBODY\r\n\r\n"}) {
    for (const std::size_t size : {1U, 100U, 5000U, 200000U}) {
      program.Write("a", begin + Garbage(size));
      const ProgramResult text = program.Run({"check", "a"});
      const ProgramResult json = program.Run({"check", "--json", "a"});
      EXPECT_EQ(text.exit_code, 1);
      EXPECT_NE(text.out.find(": error: "), std::string::npos);
      for (const char byte : text.out) {
        EXPECT_TRUE(byte == '\n' || static_cast<unsigned char>(byte) >= 0x20);
      }
      EXPECT_EQ(ParseLines(json.out).size(),
                static_cast<std::size_t>(std::count(text.out.begin(), text.out.end(), '\n')));
      CrossCheck sum;
      Compare(program, program.Path("a"), &sum);
    }
  }
}

TEST(Check, HeaderOfAMailInUtf8IsToldWhereTheDeviceIsNot) {
  Program program;
  program.Set("LC_ALL", "C");
  program.Write("a.vmg",
                "BEGIN:VMSG\r\nVERSION:1.1\r\nBEGIN:VENV\r\nBEGIN:VBODY\r\nSubject: J\xC3\xB6rg\r\n"
                "Content-Type: text/plain; charset=UTF-8\r\n\r\nJ\xC3\xB6rg\r\nEND:VBODY\r\n"
                "END:VENV\r\nEND:VMSG\r\n");
  EXPECT_EQ(program.Run({"check", "a.vmg"}).out,
            "a.vmg:5: warning: the value of 'Subject' looks like UTF-8, but names no character set "
            "and is read in code page 1252. Write it in that code page [unannounced-utf8]\n");
  program.Set("LC_ALL", "C.UTF-8");
  EXPECT_EQ(program.Run({"check", "a.vmg"}).exit_code, 0);
}

TEST(Check, LineOfAMegabyteIsChecked) {
  const Program program;
  program.Write("a.vcf", Card("A\r\nNOTE:" + std::string(1000000, 'x') + ";y"));
  const ProgramResult result = program.Run({"check", "a.vcf"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 1) << result.out;
  EXPECT_NE(result.out.find("[components-dropped]"), std::string::npos) << result.out;
}

TEST(Check, ManyObjectsAndDeepNestingAreChecked) {
  const Program program;
  std::string bytes = "BEGIN:VCARD\r\nVERSION:2.1\r\nN:Deep\r\n";
  for (int i = 0; i < 20000; ++i) bytes += "BEGIN:X\r\n";
  for (int i = 0; i < 20000; ++i) bytes += "END:X\r\n";
  bytes += "END:VCARD\r\n";
  for (int i = 0; i < 5000; ++i) bytes += Card("A");
  program.Write("a.vcf", bytes + "junk\r\n" + Card("B"));
  const ProgramResult result = program.Run({"check", "a.vcf"});
  EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 3) << result.out;
  EXPECT_NE(result.out.find("1 object behind this line"), std::string::npos) << result.out;
}

TEST(Check, ReadErrorIsTold) {
  const ProgramResult result = Program().Run({"check", "/proc/self/mem"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_NE(result.err.find("reading failed here: Input or output error"), std::string::npos)
      << result.err;
  EXPECT_NE(result.err.find("1 file, no findings; 1 not read"), std::string::npos) << result.err;
}

TEST(Check, JsonHasTheDocumentedMembers) {
  const Program program;
  program.Write("a.vcf", "BEGIN:VCARD\r\nVERSION:2.1\r\nN:A\r\nX-PET:cat\r\nEND:VCARD\r\njunk\r\n");
  const std::vector<Json> findings = ParseLines(program.Run({"check", "--json", "a.vcf"}).out);
  ASSERT_EQ(findings.size(), 2U);
  EXPECT_EQ(findings[0], Json::parse(R"({"file": "a.vcf", "line": 4, "severity": "warning",
      "id": "unknown-property", "text": "the property 'X-PET' is not known and was left out",
      "objectLine": 1})"));
  EXPECT_EQ(findings[1]["objectLine"], nullptr);
}

TEST(Check, OutputWithoutReaderEndsItWithoutAWord) {
  Program program;
  std::string bytes = "BEGIN:VCARD\r\nVERSION:2.1\r\nN:A\r\n";
  for (int i = 0; i < 20000; ++i) bytes += "X-PET:cat\r\n";
  program.Write("a.vcf", bytes + "END:VCARD\r\n");
  program.SetOutputWithoutReader();
  const ProgramResult result = program.Run({"check", "a.vcf"});
  EXPECT_EQ(result.exit_code, 1);
}

TEST(Check, WrongUseEndsWithTwo) {
  const Program program;
  EXPECT_EQ(program.Run({"check"}).exit_code, 2);
  EXPECT_EQ(program.Run({"check", "--jsn", "a"}).exit_code, 2);
}

}  // namespace
}  // namespace tamu::tool
