// store/import_counts.h - what became of the objects of an import, by kind.
//   Errors     std::bad_alloc.
#ifndef TAMU_TOOLS_STORE_IMPORT_COUNTS_H_
#define TAMU_TOOLS_STORE_IMPORT_COUNTS_H_

#include <array>
#include <cstdint>
#include <iterator>
#include <string>
#include <vector>

#include "store/stored_kind.h"

namespace tamu::tool {

enum class Fate : std::uint8_t { kAdded, kUpdated, kSkipped, kFailed };
inline constexpr std::size_t kFates = 4;

class ImportCounts {
 public:
  void Add(StoredKind kind, Fate fate) noexcept { ++counts_[Index(kind)][Index(fate)]; }

  [[nodiscard]] std::uint64_t Of(Fate fate) const noexcept;

  // A line for each kind that came: "contacts: 12 added, 4 skipped (already there), 1 failed"; of
  // what would be done, "12 would be added".
  [[nodiscard]] std::vector<std::string> Texts(bool dry_run) const;

 private:
  template <typename Enumeration>
  static constexpr std::size_t Index(Enumeration value) noexcept {
    return static_cast<std::size_t>(value);
  }

  std::array<std::array<std::uint64_t, kFates>, std::size(kStoredKinds)> counts_{};
};

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_STORE_IMPORT_COUNTS_H_
