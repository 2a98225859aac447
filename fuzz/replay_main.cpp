// fuzz/replay_main.cpp - runs a fuzz target over files instead of under libFuzzer.
//   Every argument is a file or a folder, whose files are taken with those of its subfolders in the
//   order of their names. A run that breaks a promise ends the program; the last line that was
//   printed names its file.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz_check.h"

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> FilesOf(const fs::path& place) {
  if (!fs::is_directory(place)) return {place};
  std::vector<fs::path> files;
  for (const auto& entry : fs::recursive_directory_iterator(place)) {
    if (entry.is_regular_file()) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

bool Replay(const fs::path& file) {
  std::printf("%s\n", file.string().c_str());
  std::fflush(stdout);
  std::ifstream stream(file, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  if (!stream.is_open() || stream.bad()) {
    std::fprintf(stderr, "%s cannot be read\n", file.string().c_str());
    return false;
  }
  // A block of its own, so that a read past its end is seen.
  const std::vector<std::uint8_t> data(bytes.begin(), bytes.end());
  LLVMFuzzerTestOneInput(data.data(), data.size());
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  std::size_t count = 0;
  bool all_read = true;
  try {
    for (int i = 1; i < argc; ++i) {
      for (const fs::path& file : FilesOf(argv[i])) {
        all_read = Replay(file) && all_read;
        ++count;
      }
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
  std::printf("%zu files\n", count);
  return all_read && count != 0 ? 0 : 1;
}
