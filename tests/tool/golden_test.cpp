// Every folder below tests/data/tool is a case: `command` holds the program's arguments, a line
// each, and the program runs among copies of the other files. Its standard output, standard error
// and exit code have to equal `stdout`, `stderr` (missing: nothing) and `exit` (missing: 0), and
// every file NAME that it writes `NAME.expected`. With TAMU_ACCEPT=1 in the environment the
// expected files are written instead, to be looked at.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "tool/program.h"

namespace tamu::tool {
namespace {

namespace fs = std::filesystem;

constexpr const char* kCases = TAMU_TEST_DATA "/tool";
constexpr std::string_view kExpected = ".expected";

std::vector<std::string> CaseNames() {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(kCases)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

void Accept(const fs::path& path, const std::string& bytes) {
  if (bytes.empty()) {
    fs::remove(path);
  } else {
    std::ofstream(path, std::ios::binary) << bytes;
  }
}

// Compares, or accepts.
void Expect(const fs::path& path, const std::string& bytes) {
  if (std::getenv("TAMU_ACCEPT") != nullptr) return Accept(path, bytes);
  EXPECT_EQ(bytes, ReadFileBytes(path.string())) << "differs from " << path;
}

class Golden : public testing::TestWithParam<std::string> {};

TEST_P(Golden, ProgramSaysWhatIsExpected) {
  const fs::path folder = fs::path(kCases) / GetParam();
  Program program;
  for (const auto& entry : fs::directory_iterator(folder)) {
    fs::copy(entry.path(), program.Path(entry.path().filename().string()));
  }
  if (fs::exists(folder / "stdin")) program.SetInput(ReadFileBytes(folder / "stdin"));

  const ProgramResult result = program.Run(Lines(ReadFileBytes(folder / "command")));

  Expect(folder / "stdout", result.out);
  Expect(folder / "stderr", result.err);
  Expect(folder / "exit", result.exit_code == 0 ? "" : std::to_string(result.exit_code) + "\n");
  for (const std::string& name : program.Names()) {
    if (name.ends_with(kExpected)) {
      const std::string written = name.substr(0, name.size() - kExpected.size());
      Expect(folder / name, program.Read(written));
    } else if (name != "stdout" && name != "stderr" && name != "exit") {
      EXPECT_TRUE(fs::exists(folder / name) || fs::exists(folder / (name + ".expected")))
          << "the program left " << name << " behind";
    }
  }
}

std::string TestName(const testing::TestParamInfo<std::string>& info) {
  std::string name = info.param;
  std::replace_if(
      name.begin(), name.end(),
      [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; }, '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Cases, Golden, testing::ValuesIn(CaseNames()), TestName);

}  // namespace
}  // namespace tamu::tool
