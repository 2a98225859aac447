// A registry file of any bytes: it can be looked up and edited, and an edit keeps what was there.
#include <optional>
#include <vector>

#include "fuzz_check.h"
#include "platform/linux/registry_file.h"
#include "platform/linux/registry_names.h"

namespace tamu::fuzz {
namespace {

using platform::RegistryData;
using platform::RegistryFile;
using platform::RegistryKeyPath;

constexpr const char16_t* kProbedPaths[] = {u"Software\\Velmora\\BTConfig\\General",
                                            u"software\\velmora\\btconfig\\debug", u"Software",
                                            u"K"};
constexpr const char16_t* kProbedNames[] = {u"DefaultInputCharset", u"LogIPAddr", u"A", u""};
constexpr std::size_t kLocalMachine = 2;  // the root's place in the order of their numbers

RegistryKeyPath PathOf(std::u16string_view text) {
  const auto segments = platform::SplitKeyPath(text);
  FUZZ_CHECK(segments.has_value());
  return {kLocalMachine, *segments};
}

std::optional<RegistryData> Look(const RegistryFile& file, std::u16string_view path,
                                 std::u16string_view name) {
  const RegistryData* data = file.FindValue(PathOf(path), name);
  return data ? std::optional<RegistryData>(*data) : std::nullopt;
}

bool Same(const std::optional<RegistryData>& a, const std::optional<RegistryData>& b) {
  if (!a || !b) return a.has_value() == b.has_value();
  return a->type == b->type && a->bytes == b->bytes;
}

// Every probed value but the one named is the same in both.
void ExpectOthersKept(const RegistryFile& before, const RegistryFile& after,
                      std::u16string_view changed_path, std::u16string_view changed_name) {
  for (const char16_t* path : kProbedPaths) {
    FUZZ_CHECK(!before.HasKey(PathOf(path)) || after.HasKey(PathOf(path)));
    for (const char16_t* name : kProbedNames) {
      if (path == changed_path && name == changed_name) continue;
      FUZZ_CHECK(Same(Look(before, path, name), Look(after, path, name)));
    }
  }
}

void CheckEdits(const std::string& bytes, const RegistryData& data) {
  const RegistryFile file(bytes);
  for (const auto& problem : file.problems()) {
    FUZZ_CHECK(problem.line >= 1 && !problem.reason.empty());
  }
  FUZZ_CHECK(file.problems().size() <= platform::kMaxRegistryProblems + 1);

  const std::u16string_view path = kProbedPaths[0];
  const std::u16string_view name = kProbedNames[0];
  const std::string with_value = file.WithValue(PathOf(path), name, data);
  const RegistryFile changed(with_value);
  FUZZ_CHECK(Same(Look(changed, path, name), data));
  ExpectOthersKept(file, changed, path, name);
  // The same edit once more changes nothing that can be looked up.
  const RegistryFile twice(changed.WithValue(PathOf(path), name, data));
  FUZZ_CHECK(Same(Look(twice, path, name), data));
  ExpectOthersKept(file, twice, path, name);

  const std::u16string_view new_path = u"New\\Key\\Here";
  const RegistryFile grown(file.WithKey(PathOf(new_path)));
  FUZZ_CHECK(grown.HasKey(PathOf(new_path)));
  ExpectOthersKept(file, grown, u"", u"");
}

}  // namespace
}  // namespace tamu::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tamu::fuzz;
  Input input(data, size);
  // The value that is stored: a number, a string, or any bytes of any type.
  const std::uint8_t choice = input.Byte();
  const std::string stored = input.Bytes(input.Byte() % 16);
  RegistryData value{choice, {stored.begin(), stored.end()}};
  if (choice == tamu::platform::kRegDword) value.bytes.resize(4);
  if (choice == tamu::platform::kRegSz) {
    value.bytes.resize(value.bytes.size() / 2 * 2);
    value.bytes.insert(value.bytes.end(), 2, 0);
  }
  CheckEdits(input.Rest(), value);
  return 0;
}
