// store/list_table.h - the objects of a list in columns.
//   The columns are as wide as the first objects need; later ones that need more push their line
//   apart. All text is UTF-8 and safe to show.
//   Errors     functions throw std::bad_alloc when memory runs out.
#ifndef TAMU_TOOLS_STORE_LIST_TABLE_H_
#define TAMU_TOOLS_STORE_LIST_TABLE_H_

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "console.h"
#include "store/catalogue.h"

namespace tamu::tool {

// "2003-12-31T23:59:59", or the day alone where no time belongs to it; "" when there is none.
[[nodiscard]] std::string LIST_Date(const CatalogueEntry& entry);

// The title and the detail, of a message with its encoded words (RFC 2047) decoded.
[[nodiscard]] std::u16string LIST_Title(const CatalogueEntry& entry);
[[nodiscard]] std::u16string LIST_Detail(const CatalogueEntry& entry);

// How many columns of a terminal a text takes: none for marks that stand on the character before
// them, two for the wide characters of East Asia and for emoji.
[[nodiscard]] std::size_t LIST_Width(std::string_view utf8) noexcept;

class ListTable {
 public:
  explicit ListTable(Console* console) : console_(console) {}
  ListTable(const ListTable&) = delete;
  ListTable& operator=(const ListTable&) = delete;

  void Add(const CatalogueEntry& entry);
  // Prints what still waits.
  void Finish();

 private:
  static constexpr std::size_t kColumns = 7;
  using Row = std::array<std::string, kColumns>;

  void Print(const Row& row);

  Console* console_;
  std::vector<Row> waiting_;
  std::array<std::size_t, kColumns> widths_{};
  bool settled_ = false;
};

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_STORE_LIST_TABLE_H_
