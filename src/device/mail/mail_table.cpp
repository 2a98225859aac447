#include <algorithm>
#include <utility>

#include "device/mail/mail_objects.h"
#include "device/mail/no_memory.h"
#include "device/mail/prop_object.h"
#include "device/mail/property_values.h"

namespace tamu::device {
namespace {

using platform::HRESULT;
using platform::SPropTagArray;
using platform::SRowSet;

// Rows that one call reads: memory stays flat however large a folder is.
constexpr std::int32_t kPageRows = 50;

// A cursor: its position is the last row that was passed, so that rows which come or go in the
// meantime neither repeat nor hide others.
class Table final : public ComObject<Table, platform::IMAPITable> {
 public:
  Table(std::unique_ptr<RowSource> rows, std::vector<std::uint32_t> columns,
        TableColumns settable) noexcept
      : rows_(std::move(rows)), columns_(std::move(columns)), settable_(settable) {}

  [[nodiscard]] bool Implements(const platform::GUID& iid) const noexcept {
    return iid == platform::IID_IMAPITable;
  }

  HRESULT TAMU_COM_CALL GetLastError(HRESULT, std::uint32_t, platform::MAPIERROR** error) override {
    return NoLastError("IMAPITable::GetLastError", error);
  }
  HRESULT TAMU_COM_CALL SetColumns(SPropTagArray* tags, std::uint32_t flags) override;
  HRESULT TAMU_COM_CALL GetRowCount(std::uint32_t flags, std::uint32_t* count) override;
  HRESULT TAMU_COM_CALL SeekRow(std::uint32_t bookmark, std::int32_t rows,
                                std::int32_t* sought) override;
  HRESULT TAMU_COM_CALL QueryPosition(std::uint32_t* row, std::uint32_t* numerator,
                                      std::uint32_t* denominator) override;
  HRESULT TAMU_COM_CALL QueryRows(std::int32_t rows, std::uint32_t flags, SRowSet** out) override;

  HRESULT TAMU_COM_CALL Advise(std::uint32_t, void*, std::uint32_t* connection) override {
    return Unsupported("IMAPITable::Advise", connection);
  }
  HRESULT TAMU_COM_CALL Unadvise(std::uint32_t) override {
    return Unsupported("IMAPITable::Unadvise");
  }
  HRESULT TAMU_COM_CALL GetStatus(std::uint32_t* status, std::uint32_t* type) override {
    return Unsupported("IMAPITable::GetStatus", status, type);
  }
  HRESULT TAMU_COM_CALL QueryColumns(std::uint32_t, SPropTagArray** tags) override {
    return Unsupported("IMAPITable::QueryColumns", tags);
  }
  HRESULT TAMU_COM_CALL SeekRowApprox(std::uint32_t, std::uint32_t) override {
    return Unsupported("IMAPITable::SeekRowApprox");
  }
  HRESULT TAMU_COM_CALL FindRow(platform::SRestriction*, std::uint32_t, std::uint32_t) override {
    return Unsupported("IMAPITable::FindRow");
  }
  HRESULT TAMU_COM_CALL Restrict(platform::SRestriction*, std::uint32_t) override {
    return Unsupported("IMAPITable::Restrict");
  }
  HRESULT TAMU_COM_CALL CreateBookmark(std::uint32_t* bookmark) override {
    return Unsupported("IMAPITable::CreateBookmark", bookmark);
  }
  HRESULT TAMU_COM_CALL FreeBookmark(std::uint32_t) override {
    return Unsupported("IMAPITable::FreeBookmark");
  }
  HRESULT TAMU_COM_CALL SortTable(platform::SSortOrderSet*, std::uint32_t) override {
    return Unsupported("IMAPITable::SortTable");
  }
  HRESULT TAMU_COM_CALL QuerySortOrder(platform::SSortOrderSet** order) override {
    return Unsupported("IMAPITable::QuerySortOrder", order);
  }
  HRESULT TAMU_COM_CALL Abort() override { return Unsupported("IMAPITable::Abort"); }
  HRESULT TAMU_COM_CALL ExpandRow(std::uint32_t, std::uint8_t*, std::uint32_t, std::uint32_t,
                                  SRowSet** out, std::uint32_t* more) override {
    return Unsupported("IMAPITable::ExpandRow", out, more);
  }
  HRESULT TAMU_COM_CALL CollapseRow(std::uint32_t, std::uint8_t*, std::uint32_t,
                                    std::uint32_t* count) override {
    return Unsupported("IMAPITable::CollapseRow", count);
  }
  HRESULT TAMU_COM_CALL WaitForCompletion(std::uint32_t, std::uint32_t,
                                          std::uint32_t* status) override {
    return Unsupported("IMAPITable::WaitForCompletion", status);
  }
  HRESULT TAMU_COM_CALL GetCollapseState(std::uint32_t, std::uint32_t, std::uint8_t*,
                                         std::uint32_t* size, std::uint8_t** state) override {
    return Unsupported("IMAPITable::GetCollapseState", size, state);
  }
  HRESULT TAMU_COM_CALL SetCollapseState(std::uint32_t, std::uint32_t, std::uint8_t*,
                                         std::uint32_t* bookmark) override {
    return Unsupported("IMAPITable::SetCollapseState", bookmark);
  }

 private:
  const std::unique_ptr<RowSource> rows_;
  std::vector<std::uint32_t> columns_;
  const TableColumns settable_;
  std::uint32_t after_ = 0;
};

HRESULT Table::SetColumns(SPropTagArray* tags, std::uint32_t flags) {
  TAMU_DEVICE_CALL("IMAPITable::SetColumns");
  if (settable_ == TableColumns::kFixed) return platform::hr::kNoSupport;
  std::span<const std::uint32_t> wanted;
  if (const HRESULT result = TagsOf(tags, &wanted); platform::Failed(result)) return result;
  if (flags != 0) return platform::hr::kInvalidArgument;
  return CatchNoMemory([&] {
    columns_.assign(wanted.begin(), wanted.end());
    return platform::hr::kOk;
  });
}

HRESULT Table::GetRowCount(std::uint32_t, std::uint32_t* count) {
  if (count == nullptr) return platform::hr::kInvalidArgument;
  *count = 0;
  TAMU_DEVICE_CALL("IMAPITable::GetRowCount");
  return rows_->Count(kLastMail, count);
}

// Rows before the first are the first, rows behind the last its end. The third argument is passed
// over, as on the platform.
HRESULT Table::SeekRow(std::uint32_t bookmark, std::int32_t rows, std::int32_t*) {
  TAMU_DEVICE_CALL("IMAPITable::SeekRow");
  if (bookmark != platform::kBookmarkBeginning) return platform::hr::kInvalidArgument;
  std::uint32_t after = 0;
  std::vector<MailRow> page;
  for (std::int32_t left = rows; left > 0;) {
    const auto limit = static_cast<std::size_t>(std::min(left, kPageRows));
    const HRESULT result = rows_->Read(after, limit, {}, &page);
    if (platform::Failed(result)) return result;
    if (page.empty()) break;
    after = page.back().id;
    left -= static_cast<std::int32_t>(page.size());
  }
  after_ = after;
  return platform::hr::kOk;
}

HRESULT Table::QueryPosition(std::uint32_t* row, std::uint32_t* numerator,
                             std::uint32_t* denominator) {
  if (row == nullptr || numerator == nullptr || denominator == nullptr) {
    return platform::hr::kInvalidArgument;
  }
  *row = 0;
  *numerator = 0;
  *denominator = 1;
  TAMU_DEVICE_CALL("IMAPITable::QueryPosition");
  std::uint32_t passed = 0;
  std::uint32_t all = 0;
  if (const HRESULT result = rows_->Count(after_, &passed); platform::Failed(result)) {
    return result;
  }
  if (const HRESULT result = rows_->Count(kLastMail, &all); platform::Failed(result)) {
    return result;
  }
  *row = passed;
  *numerator = passed;
  *denominator = std::max(all, 1U);
  return platform::hr::kOk;
}

HRESULT Table::QueryRows(std::int32_t rows, std::uint32_t flags, SRowSet** out) {
  if (out == nullptr) return platform::hr::kInvalidArgument;
  *out = nullptr;
  TAMU_DEVICE_CALL("IMAPITable::QueryRows");
  if (rows <= 0 || flags != 0) return platform::hr::kInvalidArgument;
  std::vector<MailRow> page;
  HRESULT result =
      rows_->Read(after_, static_cast<std::size_t>(std::min(rows, kPageRows)), columns_, &page);
  if (platform::Failed(result)) return result;
  result = MakeRowSet(columns_, page, out);
  if (platform::Succeeded(result) && !page.empty()) after_ = page.back().id;
  return result;
}

// --- Sources ----------------------------------------------------------------

class ContentsRowSource final : public RowSource {
 public:
  ContentsRowSource(const MailStorePtr& store, MailFolder folder) noexcept
      : store_(store), folder_(folder) {}

  HRESULT Read(std::uint32_t after, std::size_t limit, std::span<const std::uint32_t> tags,
               std::vector<MailRow>* rows) noexcept override {
    return CatchNoMemory([&] {
      const HRESULT result = store_->ReadRows(folder_, after, limit, tags, rows);
      if (platform::Failed(result)) return result;
      for (MailRow& row : *rows) AddComputed(folder_, row.id, &row.properties);
      return result;
    });
  }
  HRESULT Count(std::uint32_t last, std::uint32_t* count) noexcept override {
    return store_->Count(folder_, last, count);
  }

 private:
  const MailStorePtr store_;
  const MailFolder folder_;
};

class FixedRowSource final : public RowSource {
 public:
  explicit FixedRowSource(std::vector<MailRow> rows) noexcept : rows_(std::move(rows)) {
    std::uint32_t id = 0;
    for (MailRow& row : rows_) row.id = ++id;
  }

  HRESULT Read(std::uint32_t after, std::size_t limit, std::span<const std::uint32_t>,
               std::vector<MailRow>* rows) noexcept override {
    return CatchNoMemory([&] {
      const std::size_t first = std::min<std::size_t>(after, rows_.size());
      const std::size_t count = std::min(limit, rows_.size() - first);
      const auto begin = rows_.begin() + static_cast<std::ptrdiff_t>(first);
      rows->assign(begin, begin + static_cast<std::ptrdiff_t>(count));
      return platform::hr::kOk;
    });
  }
  HRESULT Count(std::uint32_t last, std::uint32_t* count) noexcept override {
    *count = static_cast<std::uint32_t>(std::min<std::size_t>(last, rows_.size()));
    return platform::hr::kOk;
  }

 private:
  std::vector<MailRow> rows_;
};

}  // namespace

std::unique_ptr<RowSource> ContentsRows(const MailStorePtr& store, MailFolder folder) {
  return std::make_unique<ContentsRowSource>(store, folder);
}

std::unique_ptr<RowSource> FixedRows(std::vector<MailRow> rows) {
  return std::make_unique<FixedRowSource>(std::move(rows));
}

HRESULT CreateTable(std::unique_ptr<RowSource> rows, std::span<const std::uint32_t> columns,
                    TableColumns settable, platform::IMAPITable** out) noexcept {
  *out = nullptr;
  return CatchNoMemory([&] {
    *out = NewObject<Table>(std::move(rows),
                            std::vector<std::uint32_t>(columns.begin(), columns.end()), settable);
    return *out == nullptr ? platform::hr::kOutOfMemory : platform::hr::kOk;
  });
}

}  // namespace tamu::device
