#include "platform/linux/registry_names.h"

#include <algorithm>
#include <array>

namespace tamu::platform {
namespace {

// Small letters `first` to `last`, every `step`-th, whose capital lies `distance` units away.
struct CaseRow {
  char16_t first;
  char16_t last;
  int step;
  int distance;
};

constexpr CaseRow kCaseRows[] = {
    {0x0061, 0x007A, 1, -32},  // a to z
    {0x00E0, 0x00F6, 1, -32},  // Latin-1
    {0x00F8, 0x00FE, 1, -32},  //
    {0x00FF, 0x00FF, 1, 121},  // y with diaeresis
    {0x0101, 0x012F, 2, -1},   // Latin Extended-A
    {0x0133, 0x0137, 2, -1},   //
    {0x013A, 0x0148, 2, -1},   //
    {0x014B, 0x0177, 2, -1},   //
    {0x017A, 0x017E, 2, -1},   //
    {0x01CE, 0x01DC, 2, -1},   // Latin Extended-B
    {0x01DF, 0x01EF, 2, -1},   //
    {0x01F9, 0x021F, 2, -1},   //
    {0x0223, 0x0233, 2, -1},   //
    {0x03AC, 0x03AC, 1, -38},  // Greek
    {0x03AD, 0x03AF, 1, -37},  //
    {0x03B1, 0x03C1, 1, -32},  //
    {0x03C2, 0x03C2, 1, -31},  // final sigma
    {0x03C3, 0x03CB, 1, -32},  //
    {0x03CC, 0x03CC, 1, -64},  //
    {0x03CD, 0x03CE, 1, -63},  //
    {0x03D9, 0x03EF, 2, -1},   // Coptic
    {0x0430, 0x044F, 1, -32},  // Cyrillic
    {0x0450, 0x045F, 1, -80},  //
    {0x0461, 0x0481, 2, -1},   //
    {0x048B, 0x04BF, 2, -1},   //
    {0x04C2, 0x04CE, 2, -1},   //
    {0x04CF, 0x04CF, 1, -15},  //
    {0x04D1, 0x052F, 2, -1},   //
    {0x0561, 0x0586, 1, -48},  // Armenian
    {0x1E01, 0x1E95, 2, -1},   // Latin Extended Additional
    {0x1EA1, 0x1EFF, 2, -1},   //
    {0x2170, 0x217F, 1, -16},  // Roman numerals
    {0x24D0, 0x24E9, 1, -26},  // circled letters
    {0xFF41, 0xFF5A, 1, -32},  // full width
};

constexpr bool RowsAscend() {
  for (std::size_t i = 1; i < std::size(kCaseRows); ++i) {
    if (kCaseRows[i].first <= kCaseRows[i - 1].last) return false;
  }
  return true;
}
static_assert(RowsAscend());

char16_t Capital(char16_t unit) noexcept {
  const auto* row =
      std::partition_point(std::begin(kCaseRows), std::end(kCaseRows),
                           [unit](const CaseRow& candidate) { return candidate.last < unit; });
  if (row == std::end(kCaseRows) || unit < row->first || (unit - row->first) % row->step != 0)
    return unit;
  return static_cast<char16_t>(unit + row->distance);
}

constexpr std::array<std::u16string_view, kRegistryRoots> kRootNames = {
    u"HKEY_CLASSES_ROOT", u"HKEY_CURRENT_USER", u"HKEY_LOCAL_MACHINE", u"HKEY_USERS"};
static_assert(kHkeyCurrentUser == kHkeyClassesRoot + 1 &&
              kHkeyLocalMachine == kHkeyClassesRoot + 2 && kHkeyUsers == kHkeyClassesRoot + 3);

}  // namespace

std::u16string FoldName(std::u16string_view name) {
  std::u16string folded(name);
  for (char16_t& unit : folded) unit = Capital(unit);
  return folded;
}

std::optional<std::vector<std::u16string>> SplitKeyPath(std::u16string_view path) {
  std::vector<std::u16string> segments;
  if (path.empty()) return segments;
  for (std::size_t at = 0; at <= path.size();) {
    const std::size_t end = std::min(path.find(u'\\', at), path.size());
    if (end == at || end - at > kMaxKeyName || segments.size() == kMaxKeyDepth) return std::nullopt;
    segments.emplace_back(path.substr(at, end - at));
    at = end + 1;
  }
  return segments;
}

bool IsLoneSurrogate(std::u16string_view text, std::size_t at) noexcept {
  const auto is_high = [&](std::size_t i) { return (text[i] & 0xFC00) == 0xD800; };
  const auto is_low = [&](std::size_t i) { return (text[i] & 0xFC00) == 0xDC00; };
  if (is_high(at)) return at + 1 == text.size() || !is_low(at + 1);
  return is_low(at) && (at == 0 || !is_high(at - 1));
}

bool IsWritableName(std::u16string_view name) noexcept {
  for (std::size_t at = 0; at < name.size(); ++at) {
    if (name[at] < 0x20 || name[at] == 0x7F || IsLoneSurrogate(name, at)) return false;
  }
  return true;
}

std::u16string_view RootName(std::size_t index) noexcept { return kRootNames[index]; }

std::optional<std::size_t> RootFromName(std::u16string_view name) {
  const std::u16string folded = FoldName(name);
  for (std::size_t index = 0; index < kRegistryRoots; ++index) {
    if (folded == kRootNames[index]) return index;
  }
  return std::nullopt;
}

std::optional<std::size_t> RootFromKey(RegistryKey key) noexcept {
  if (key < kHkeyClassesRoot || key - kHkeyClassesRoot >= kRegistryRoots) return std::nullopt;
  return static_cast<std::size_t>(key - kHkeyClassesRoot);
}

}  // namespace tamu::platform
