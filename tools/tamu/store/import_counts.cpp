#include "store/import_counts.h"

#include <string_view>

namespace tamu::tool {
namespace {

// By fate.
constexpr std::array<std::string_view, kFates> kDone = {"added", "updated",
                                                        "skipped (already there)", "failed"};
constexpr std::array<std::string_view, kFates> kWouldBe = {
    "would be added", "would be updated", "would be skipped (already there)", "would fail"};

}  // namespace

std::uint64_t ImportCounts::Of(Fate fate) const noexcept {
  std::uint64_t sum = 0;
  for (const auto& of_kind : counts_) sum += of_kind[Index(fate)];
  return sum;
}

std::vector<std::string> ImportCounts::Texts(bool dry_run) const {
  std::vector<std::string> texts;
  for (const StoredKind kind : kStoredKinds) {
    std::string text;
    for (std::size_t fate = 0; fate < kFates; ++fate) {
      const std::uint64_t count = counts_[Index(kind)][fate];
      if (count == 0) continue;
      text += (text.empty() ? ": " : ", ") + std::to_string(count) + " ";
      text += (dry_run ? kWouldBe : kDone)[fate];
    }
    if (!text.empty()) texts.push_back(std::string(STORED_Words(kind).many) + text);
  }
  return texts;
}

}  // namespace tamu::tool
