#include "device/sqlite/statement.h"

#include <cassert>
#include <optional>

#include "device/sqlite/database.h"
#include "device/sqlite/failure.h"
#include "device/sqlite/session.h"
#include "device/sqlite/stored_text.h"

namespace tamu::device {
namespace {

// A parameter or a column: SOCI reads and writes it where it is.
struct Cell {
  char type = 'i';
  soci::indicator indicator = soci::i_null;
  bool set = false;
  long long integer = 0;
  double real = 0;
  std::string text;
};

std::vector<Cell> CellsOf(std::string_view types) {
  std::vector<Cell> cells(types.size());
  for (std::size_t i = 0; i < types.size(); ++i) cells[i].type = types[i];
  return cells;
}

Cell& SetCell(Cell& cell, char type) {
  assert(cell.type == type);
  static_cast<void>(type);
  cell.indicator = soci::i_ok;
  cell.set = true;
  return cell;
}

}  // namespace

struct Statement::Impl {
  Impl(Database& owner, std::string text, std::string_view parameter_types,
       std::string_view column_types)
      : database(owner),
        sql(std::move(text)),
        parameters(CellsOf(parameter_types)),
        columns(CellsOf(column_types)) {}

  void Prepare();
  void CheckParameters() const;
  void ClearColumns() noexcept;
  void Reset() noexcept;

  Database& database;
  std::string sql;
  std::vector<Cell> parameters;  // neither grows: SOCI holds addresses in them
  std::vector<Cell> columns;
  std::optional<soci::statement> statement;
};

void Statement::Impl::Prepare() {
  if (statement) return;
  statement.emplace(database.session());
  try {
    statement->alloc();
    statement->prepare(sql);
    for (Cell& cell : parameters) {
      if (cell.type == 'i') statement->exchange(soci::use(cell.integer, cell.indicator));
      if (cell.type == 'r') statement->exchange(soci::use(cell.real, cell.indicator));
      if (cell.type == 't') statement->exchange(soci::use(cell.text, cell.indicator));
    }
    for (Cell& cell : columns) {
      if (cell.type == 'i') statement->exchange(soci::into(cell.integer, cell.indicator));
      if (cell.type == 'r') statement->exchange(soci::into(cell.real, cell.indicator));
      if (cell.type == 't') statement->exchange(soci::into(cell.text, cell.indicator));
    }
    statement->define_and_bind();
  } catch (...) {
    database.NoteError();  // the error number is the connection's only until the next call
    statement.reset();
    throw;
  }
}

// SOCI takes a value that the database refuses to bind for "no rows", and runs nothing.
void Statement::Impl::CheckParameters() const {
  const std::size_t longest = database.LongestText();
  for (const Cell& cell : parameters) {
    if (!cell.set) throw Failure{platform::hr::kUnexpected, "a parameter was not set", {}};
    if (cell.text.size() > longest) throw FailureFromCode(SQLITE_TOOBIG, 0, nullptr);
  }
}

void Statement::Impl::ClearColumns() noexcept {
  for (Cell& cell : columns) cell.indicator = soci::i_null;
}

void Statement::Impl::Reset() noexcept {
  if (!statement) return;
  auto* const backend = static_cast<soci::sqlite3_statement_backend*>(statement->get_backend());
  if (backend->stmt_ != nullptr) sqlite_api::sqlite3_reset(backend->stmt_);
  backend->databaseReady_ = false;
}

Statement::Statement(Database& database, std::string sql, std::string_view parameters,
                     std::string_view columns)
    : impl_(std::make_unique<Impl>(database, std::move(sql), parameters, columns)) {}

Statement::~Statement() = default;

void Statement::SetInteger(std::size_t parameter, std::int64_t value) {
  SetCell(impl_->parameters[parameter], 'i').integer = value;
}

void Statement::SetReal(std::size_t parameter, double value) {
  SetCell(impl_->parameters[parameter], 'r').real = value;
}

void Statement::SetText(std::size_t parameter, std::u16string_view value) {
  ToStoredText(value, &SetCell(impl_->parameters[parameter], 't').text);
}

void Statement::SetUtf8(std::size_t parameter, std::string_view value) {
  SetCell(impl_->parameters[parameter], 't').text = value;
}

void Statement::SetBytes(std::size_t parameter, const std::vector<std::uint8_t>& value) {
  ToStoredBytes(value, &SetCell(impl_->parameters[parameter], 't').text);
}

void Statement::SetNull(std::size_t parameter) {
  Cell& cell = impl_->parameters[parameter];
  cell.indicator = soci::i_null;
  cell.set = true;
  cell.text.clear();
}

void Statement::Run() {
  Run([](void*) { return true; }, nullptr);
}

bool Statement::RunForRow() {
  bool found = false;
  Run(
      [](void* context) {
        *static_cast<bool*>(context) = true;
        return true;
      },
      &found);
  return found;
}

void Statement::Run(bool (*row)(void*), void* context) {
  impl_->Prepare();
  impl_->CheckParameters();
  impl_->ClearColumns();
  sqlite_api::sqlite3* const connection = ConnectionOf(impl_->database.session());
  const auto changes_before = sqlite_api::sqlite3_total_changes64(connection);
  struct AtTheEnd {
    Impl& impl;
    ~AtTheEnd() { impl.Reset(); }
  } const at_the_end{*impl_};
  try {
    for (bool got = impl_->statement->execute(true); got; got = impl_->statement->fetch()) {
      if (!row(context)) break;
    }
  } catch (...) {
    impl_->database.NoteError();
    throw;
  }
  changed_rows_ = sqlite_api::sqlite3_total_changes64(connection) - changes_before;
}

std::int64_t Statement::Integer(std::size_t column) const {
  const Cell& cell = impl_->columns[column];
  return cell.indicator == soci::i_ok ? cell.integer : 0;
}

double Statement::Real(std::size_t column) const {
  const Cell& cell = impl_->columns[column];
  return cell.indicator == soci::i_ok ? cell.real : 0;
}

std::u16string Statement::Text(std::size_t column) const { return FromStoredText(Utf8(column)); }

const std::string& Statement::Utf8(std::size_t column) const {
  static const std::string kEmpty;
  const Cell& cell = impl_->columns[column];
  return cell.indicator == soci::i_ok ? cell.text : kEmpty;
}

std::vector<std::uint8_t> Statement::GetBytes(std::size_t column) const {
  return FromStoredBytes(Utf8(column));
}

}  // namespace tamu::device
