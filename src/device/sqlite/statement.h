// device/sqlite/statement.h - one SQL statement: prepared at its first use and kept, every value a
// bound parameter, always run to its end.
//   The one place that drives SOCI: a kept statement that is not run to its end holds its
//   transaction open, and one whose values were not bound would run with old ones or not at all.
//   Ownership  belongs to a database and must die before it.
//   Errors     throws Failure (failure.h), SOCI's exceptions and std::bad_alloc: statements are used
//              under Database::Read and Write, which turn them into results.
//   Threads    none.
#ifndef TAMU_DEVICE_SQLITE_STATEMENT_H_
#define TAMU_DEVICE_SQLITE_STATEMENT_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tamu::device {

class Database;

class Statement {
 public:
  // `parameters` and `columns` are the types of the SQL text's parameters (":name", each once) and
  // of its result columns, a letter each: 'i' a 64-bit integer, 'r' a real number, 't' text.
  Statement(Database& database, std::string sql, std::string_view parameters,
            std::string_view columns = {});
  ~Statement();
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  // Parameters by their position from 0; they stay until they are set again. A text parameter takes
  // UTF-16 text (kept as stored_text.h says), UTF-8 text as it is, or bytes. Every parameter must be
  // set before the first run.
  void SetInteger(std::size_t parameter, std::int64_t value);
  void SetReal(std::size_t parameter, double value);  // a NaN becomes NULL
  void SetText(std::size_t parameter, std::u16string_view value);
  void SetUtf8(std::size_t parameter, std::string_view value);
  void SetBytes(std::size_t parameter, const std::vector<std::uint8_t>& value);
  void SetNull(std::size_t parameter);

  // Runs the statement to its end.
  void Run();

  // The same for a statement that gives at most one row; false when there was none. The columns
  // keep the row until the next run.
  [[nodiscard]] bool RunForRow();

  // Calls `row` for each row, until it gives false.
  template <typename Row>
  void RunForRows(Row&& row) {
    Run([](void* context) { return (*static_cast<std::remove_reference_t<Row>*>(context))(); },
        &row);
  }

  // Columns of the current row by their position from 0. NULL is 0 and "".
  [[nodiscard]] std::int64_t Integer(std::size_t column) const;
  [[nodiscard]] double Real(std::size_t column) const;
  [[nodiscard]] std::u16string Text(std::size_t column) const;
  [[nodiscard]] const std::string& Utf8(std::size_t column) const;
  [[nodiscard]] std::vector<std::uint8_t> GetBytes(std::size_t column) const;

  // The rows that the last run inserted, updated or deleted.
  [[nodiscard]] std::int64_t ChangedRows() const noexcept { return changed_rows_; }

 private:
  struct Impl;
  void Run(bool (*row)(void*), void* context);

  std::unique_ptr<Impl> impl_;
  std::int64_t changed_rows_ = 0;
};

}  // namespace tamu::device

#endif  // TAMU_DEVICE_SQLITE_STATEMENT_H_
