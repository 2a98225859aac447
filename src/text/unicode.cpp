#include "text/unicode.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>

namespace tamu {
namespace {

struct FoldRun {
  char32_t first;
  char32_t last;
  std::uint8_t step;
  std::int32_t delta;
};

struct CodeRange {
  char32_t first;
  char32_t last;
};

#include "text/unicode_tables.inc"

template <typename Row, std::size_t kCount>
consteval bool IsSorted(const Row (&rows)[kCount]) {
  for (std::size_t i = 0; i < kCount; ++i) {
    if (rows[i].first > rows[i].last) return false;
    if (i > 0 && rows[i].first <= rows[i - 1].last) return false;
  }
  return true;
}
static_assert(IsSorted(kFoldRuns) && IsSorted(kPrintable));

// The row that `code_point` lies in, or null.
template <typename Row, std::size_t kCount>
const Row* FindRow(const Row (&rows)[kCount], char32_t code_point) noexcept {
  const Row* const row =
      std::lower_bound(std::begin(rows), std::end(rows), code_point,
                       [](const Row& candidate, char32_t code) { return candidate.last < code; });
  return row != std::end(rows) && code_point >= row->first ? row : nullptr;
}

constexpr bool IsHigh(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
constexpr bool IsLow(char16_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

}  // namespace

char32_t UNICODE_Fold(char32_t code_point) noexcept {
  if (code_point < 0x80) {
    return code_point >= U'A' && code_point <= U'Z' ? code_point + 0x20 : code_point;
  }
  const FoldRun* const run = FindRow(kFoldRuns, code_point);
  if (run == nullptr || (code_point - run->first) % run->step != 0) return code_point;
  return static_cast<char32_t>(static_cast<std::int32_t>(code_point) + run->delta);
}

std::u16string UNICODE_FoldText(std::u16string_view text) {
  std::u16string folded(text);
  for (std::size_t i = 0; i < folded.size(); ++i) {
    if (!IsHigh(folded[i]) || i + 1 == folded.size() || !IsLow(folded[i + 1])) {
      folded[i] = static_cast<char16_t>(UNICODE_Fold(folded[i]));
      continue;
    }
    const char32_t code_point =
        UNICODE_Fold(0x10000 + (static_cast<char32_t>(folded[i] - 0xD800) << 10) +
                     static_cast<char32_t>(folded[i + 1] - 0xDC00)) -
        0x10000;
    folded[i] = static_cast<char16_t>(0xD800 + (code_point >> 10));
    folded[++i] = static_cast<char16_t>(0xDC00 + (code_point & 0x3FF));
  }
  return folded;
}

bool UNICODE_IsPrintable(char32_t code_point) noexcept {
  if (code_point < 0x7F) return code_point >= 0x20;
  return FindRow(kPrintable, code_point) != nullptr;
}

}  // namespace tamu
