#include "mailstore/mail_find.h"

#include <algorithm>

#include "core/log.h"
#include "mailstore/mail_folder.h"
#include "mailstore/mail_operations.h"
#include "platform/com_ptr.h"
#include "text/date.h"

namespace tamu {
namespace {

using namespace platform;

enum Column : std::uint32_t { kSubject, kDeliveryTime, kEntryId, kColumnCount };

constexpr std::int32_t kRowsAtOnce = 50;
constexpr std::uint64_t kFileTimesOfDay = std::uint64_t{86400} * kFileTimesOfSecond;

std::uint64_t Number(const FILETIME& time) noexcept {
  return std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
}

FILETIME FromNumber(std::uint64_t number) noexcept {
  return {static_cast<std::uint32_t>(number), static_cast<std::uint32_t>(number >> 32)};
}

// The local second of a message's delivery; none where the time cannot be told.
std::optional<DateFields> LocalFields(const FILETIME& utc) noexcept {
  DateFields fields;
  const DateValue date = DATE_FromFileTime(utc);
  if (!date.valid || !DATE_ToFields(date, &fields)) return std::nullopt;
  return fields;
}

// The fields as a file time that still is local.
std::optional<std::uint64_t> LocalNumber(const DateFields& fields) noexcept {
  SYSTEMTIME system_time{};
  FILETIME local{};
  if (!DATE_ToSystemTime(DATE_FromFields(fields), &system_time) ||
      SystemTimeToFileTime(&system_time, &local) == 0) {
    return std::nullopt;
  }
  return Number(local);
}

// The UTC time that `local` has by the offset in force at `probe`, both local.
std::optional<std::uint64_t> UtcByOffsetAt(std::uint64_t local, std::uint64_t probe) noexcept {
  const FILETIME probe_time = FromNumber(probe);
  FILETIME utc{};
  if (LocalFileTimeToFileTime(&probe_time, &utc) == 0) return std::nullopt;
  return local - (probe - Number(utc));
}

enum class IndexAnswer : std::uint8_t { kFound, kNotFound, kNoAnswer };

// Asks a folder that has an index; kNoAnswer where only the rows can tell.
IndexAnswer FindByIndex(IMAPIFolder* folder, const MailKey& key, std::uint8_t* id) noexcept {
  ComPtr<IExactMailFind> index;
  if (Failed(folder->QueryInterface(IID_IExactMailFind, index.put_void())) || !index) {
    return IndexAnswer::kNoAnswer;
  }
  if (!key.delivered) return IndexAnswer::kNotFound;
  const FileTimeSeconds seconds = MAIL_DeliverySeconds(*key.delivered);
  std::uint32_t found_seconds = 0;
  for (std::size_t i = 0; i < seconds.count; ++i) {
    std::array<std::uint8_t, 16> found_id{};
    std::uint32_t found = 0;
    if (Failed(index->FindMessage(seconds.first[i], kFileTimesOfSecond, key.subject.data(),
                                  static_cast<std::uint32_t>(key.subject.size()), found_id.data(),
                                  &found))) {
      return IndexAnswer::kNoAnswer;
    }
    if (found == 0) continue;
    std::copy(found_id.begin(), found_id.end(), id);
    ++found_seconds;
  }
  // Which of two hours that read the same came in first is for the table to say.
  if (found_seconds == seconds.first.size()) return IndexAnswer::kNoAnswer;
  return found_seconds == 0 ? IndexAnswer::kNotFound : IndexAnswer::kFound;
}

// One batch of rows, freed on every path.
class Rows {
 public:
  Rows() noexcept = default;
  ~Rows() {
    if (rows_ != nullptr) FreeProws(rows_);
  }
  Rows(const Rows&) = delete;
  Rows& operator=(const Rows&) = delete;

  [[nodiscard]] SRowSet** put() noexcept { return &rows_; }
  [[nodiscard]] std::uint32_t size() const noexcept { return rows_ == nullptr ? 0 : rows_->cRows; }
  [[nodiscard]] const SRow& operator[](std::uint32_t index) const noexcept {
    return rows_->aRow[index];
  }

 private:
  SRowSet* rows_ = nullptr;
};

void WriteRowId(const SRow& row, char* id_out) noexcept {
  if (id_out == nullptr) return;
  if (row.cValues <= kEntryId || row.lpProps[kEntryId].ulPropTag != PR_ENTRYID) {
    *id_out = '\0';
    return;
  }
  const SBinary& id = row.lpProps[kEntryId].Value.bin;
  MAPI_EntryIdToHex(id.lpb, id.cb, id_out);
}

void LogEnd(std::uint32_t total) noexcept {
  LOG_Info("MAPI:  MAPI_FindMail - No more rows found (total=%d)", total);
}

// Reads the table to its end, or to the first row that matches.
std::uint32_t FindInRows(IMAPITable* table, const MailKey& key, char* id_out) noexcept {
  std::uint32_t total = 0;
  for (;;) {
    Rows rows;
    const HRESULT result = table->QueryRows(kRowsAtOnce, 0, rows.put());
    if (Failed(result)) {
      LOG_Error("MAPI:  lpMessageTable->QueryRows failed with code: 0x%08x", result);
      return 0;
    }
    if (rows.size() == 0) break;
    for (std::uint32_t i = 0; i < rows.size(); ++i) {
      ++total;
      if (!MAIL_RowMatches(rows[i], key)) continue;
      WriteRowId(rows[i], id_out);
      return 1;
    }
  }
  LogEnd(total);
  return 0;
}

// The table with its columns at its beginning; null, logged, when it cannot be had.
ComPtr<IMAPITable> OpenTable(IMAPIFolder* folder) noexcept {
  ComPtr<IMAPITable> table;
  HRESULT result = folder->GetContentsTable(0, table.put());
  if (Failed(result)) {
    LOG_Error("MAPI:  lpFolder->GetContentsTable failed with code: 0x%08x", result);
    table.reset();
    return table;
  }
  SizedPropTagArray<kColumnCount> columns{kColumnCount,
                                          {PR_SUBJECT, PR_MESSAGE_DELIVERY_TIME, PR_ENTRYID}};
  result = table->SetColumns(columns.get(), 0);
  if (Failed(result)) {
    LOG_Error("MAPI:  lpMessageTable->SetColumns failed with code: 0x%08x", result);
  }
  result = table->SeekRow(kBookmarkBeginning, 0, nullptr);
  if (Failed(result)) {
    LOG_Error("MAPI:  lpMessageTable->SeekRow failed with code: 0x%08x", result);
    table.reset();
  }
  return table;
}

}  // namespace

bool MAIL_RowMatches(const SRow& row, const MailKey& key) noexcept {
  if (!key.delivered || row.cValues <= kDeliveryTime) return false;
  const SPropValue& delivered = row.lpProps[kDeliveryTime];
  if (delivered.ulPropTag != PR_MESSAGE_DELIVERY_TIME) return false;
  const SPropValue& subject = row.lpProps[kSubject];
  const bool has_subject = subject.ulPropTag == PR_SUBJECT && subject.Value.lpszW != nullptr;
  const std::u16string_view text =
      has_subject ? std::u16string_view(subject.Value.lpszW) : std::u16string_view();
  return text == key.subject && LocalFields(delivered.Value.ft) == key.delivered;
}

FileTimeSeconds MAIL_DeliverySeconds(const DateFields& local) noexcept {
  FileTimeSeconds seconds;
  const std::optional<std::uint64_t> number = LocalNumber(local);
  if (!number) return seconds;
  // The offsets of a day before and a day after are all that can be in force; where the clocks are
  // put back, both give a time that reads the same.
  for (const std::uint64_t probe : {*number - kFileTimesOfDay, *number + kFileTimesOfDay}) {
    const std::optional<std::uint64_t> utc = UtcByOffsetAt(*number, probe);
    if (!utc || LocalFields(FromNumber(*utc)) != local) continue;
    if (seconds.count == 1 && seconds.first[0] == *utc) continue;
    seconds.first[seconds.count++] = *utc;
  }
  return seconds;
}

std::uint32_t MAPI_FindMail(const MessageShape* record, char* id_out) noexcept {
  DateValue wanted;  // the zero date
  if (record->date[0] != '\0') wanted = DATE_FromMailText(record->date);
  BStr subject;
  MAIL_HeaderToWide(record->subject, &subject);
  IMAPIFolder* const folder = MAIL_FolderOf(*record);
  BStr date_text;
  VarBstrFromDate(wanted.days, kLocaleUserDefault, 0, date_text.put());
  LOG_Info("MAPI:  MAPI_FindMail() Folder:%s Date:%S Subj:'%s'", record->folder, date_text.c_str(),
           record->subject);
  if (folder == nullptr) {
    LOG_Error("MAPI:  MAPI_FindMail error - lpFolder is NULL");
    return 0;
  }
  const ComPtr<IMAPITable> table = OpenTable(folder);
  if (!table) return 0;
  MailKey key{std::nullopt, subject.c_str()};
  DateFields fields;
  if (wanted.valid && DATE_ToFields(wanted, &fields)) key.delivered = fields;
  std::array<std::uint8_t, 16> id{};
  switch (FindByIndex(folder, key, id.data())) {
    case IndexAnswer::kFound:
      if (id_out != nullptr) MAPI_EntryIdToHex(id.data(), id.size(), id_out);
      return 1;
    case IndexAnswer::kNotFound: {
      std::uint32_t total = 0;
      if (Failed(table->GetRowCount(0, &total))) break;
      LogEnd(total);
      return 0;
    }
    case IndexAnswer::kNoAnswer:
      break;
  }
  return FindInRows(table.get(), key, id_out);
}

}  // namespace tamu
