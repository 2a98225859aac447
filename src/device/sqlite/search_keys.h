// device/sqlite/search_keys.h - numbers that stand for texts in the database's indexes: equal texts
// have equal keys, different ones nearly always different keys.
//   They are kept in databases, so that neither they nor the case folding under them may change
//   without a schema step.
#ifndef TAMU_DEVICE_SQLITE_SEARCH_KEYS_H_
#define TAMU_DEVICE_SQLITE_SEARCH_KEYS_H_

#include <cstdint>
#include <string_view>

namespace tamu::device {

// The key of a text without regard to case. Throws std::bad_alloc when memory runs out.
[[nodiscard]] std::int64_t FoldedKey(std::u16string_view text);

// The key of several texts as they are, in their order.
class ExactKey {
 public:
  void Add(std::u16string_view text) noexcept;
  [[nodiscard]] std::int64_t value() const noexcept { return static_cast<std::int64_t>(hash_); }

 private:
  std::uint64_t hash_ = 0xCBF29CE484222325U;
};

}  // namespace tamu::device

#endif  // TAMU_DEVICE_SQLITE_SEARCH_KEYS_H_
