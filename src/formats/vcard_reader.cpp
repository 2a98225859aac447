#include "formats/vcard_reader.h"

#include <array>
#include <cstring>

#include "core/log.h"
#include "core/records.h"
#include "formats/line_buffers.h"
#include "formats/shared_record.h"
#include "formats/vcard_properties.h"
#include "text/logical_line.h"
#include "text/property.h"
#include "text/version.h"

namespace tamu {
namespace {

TamuResult ReportNoMemory() noexcept {
  LOG_Error("TAMU:  Error - Memory allocation error");
  return TAMU_OUT_OF_MEMORY;
}

// The lines of one card, from behind its BEGIN.
class CardReader {
 public:
  CardReader(File* file, LineBuffers* buffers, ContactShape* contact) noexcept
      : file_(file), buffers_(buffers), contact_(contact) {}

  TamuResult Read() noexcept {
    while (!ended_ && !file_->AtEnd()) ReadLine();
    if (version_seen_ && n_seen_ && ended_) return result_;
    LOG_Error(
        "TAMU:  Error - vCard missing END tago or does not contain required VERSION or N "
        "properties");
    return TAMU_PARSE_ERROR;
  }

 private:
  void Warn() noexcept {
    if (result_ == TAMU_PARSE_OK) result_ = TAMU_PARSE_WARNING;
  }

  void ReadLine() noexcept {
    const MemPtr<char> line = FileLine(file_);
    if (!line) return Warn();
    if (*line == '\0') {
      LOG_Error("TAMU:  Warning - Parser encounted a blank line in vCard");
      return Warn();
    }
    char* const value = LINE_Split(buffers_->name.get(), buffers_->params.get(), line.get());
    LINE_TrimLeadingBlanks(buffers_->name.get());
    LINE_TrimLeadingBlanks(buffers_->params.get());
    TakeProperty(VCARD_FindName(buffers_->name.get()), value);
  }

  void TakeProperty(VcardName name, char* value) noexcept {
    switch (name.line) {
      case VcardLine::kUnknown:
        LOG_Info("TAMU:  Warning - Parser encountered unknown property: '%s'",
                 buffers_->name.get());
        Warn();
        break;
      case VcardLine::kBegin:
        ++depth_;
        break;
      case VcardLine::kEnd:
        if (depth_ == 1) ended_ = true;
        --depth_;
        break;
      case VcardLine::kLuid:
        if (depth_ == 1) STR_CopyBounded(contact_->luid, value, sizeof contact_->luid - 1);
        break;
      case VcardLine::kVersion:
        TakeVersion(value);
        break;
      case VcardLine::kProperty:
        TakeChainProperty(name.row, value);
        break;
    }
  }

  void TakeVersion(const char* value) noexcept {
    version_seen_ = true;
    if (depth_ != 1) return;
    STR_CopyField(contact_->version, value);
    char kept[TAMU_VERSION_WIDTH + 1];
    STR_CopyBounded(kept, value, TAMU_VERSION_WIDTH);
    if (VERSION_IsSupported(kept, kVcardVersion)) return;
    LOG_Error("TAMU:  Error - vCard version '%s' is not supported", kept);
    result_ = TAMU_PARSE_ERROR;
    ended_ = true;
  }

  void TakeChainProperty(std::uint32_t row_index, char* value) noexcept {
    const VcardRow& row = VCARD_Rows()[row_index];
    if (row.field == &ContactShape::prop_n) n_seen_ = true;
    if (depth_ != 1) return;
    Property* const property = chain_ends_[row_index].Append(&(contact_->*row.field));
    PROP_SetFromText(value, buffers_->params.get(), row.components, property);
  }

  File* file_;
  LineBuffers* buffers_;
  ContactShape* contact_;
  std::array<PropertyChainEnd, 17> chain_ends_{};  // one a row
  std::uint64_t depth_ = 1;
  TamuResult result_ = TAMU_PARSE_OK;
  bool version_seen_ = false;
  bool n_seen_ = false;
  bool ended_ = false;
};

// Reads the line that has to begin the next card. Sets `*begins` when it does.
TamuResult ReadBegin(File* file, LineBuffers* buffers, bool* begins) noexcept {
  const std::uint32_t line_number = file->Tell().line;
  const MemPtr<char> line = FileLine(file);
  *begins = false;
  if (!line) return TAMU_PARSE_ERROR;
  static_cast<void>(LINE_Split(buffers->name.get(), buffers->params.get(), line.get()));
  const char* const name = LINE_TrimLeadingBlanks(buffers->name.get());
  *begins = VCARD_FindName(name).line == VcardLine::kBegin;
  if (*begins) SHARED_BeginObject(line_number);
  return TAMU_PARSE_OK;
}

}  // namespace

TamuResult VCARD_ReadOne(File* file) noexcept {
  LineBuffers buffers;
  if (!buffers.ok()) return ReportNoMemory();
  return CardReader(file, &buffers, &SHARED_Record()->contact).Read();
}

TamuResult VCARD_ReadObjects(File* file, ReadCallback callback, void* user) noexcept {
  if (file->AtEnd()) return TAMU_PARSE_ERROR;
  LineBuffers buffers;
  if (!buffers.ok()) return ReportNoMemory();
  TamuResult kept = TAMU_PARSE_OK;
  for (bool first = true;; first = false) {
    bool begins = false;
    if (const TamuResult result = ReadBegin(file, &buffers, &begins); result != TAMU_PARSE_OK)
      return result;
    if (!begins) {
      if (!first) return kept;
      LOG_Error("TAMU:  Error - vCard does not have a BEGIN tag");
      return TAMU_PARSE_ERROR;
    }
    const TamuResult result = VCARD_ReadOne(file);
    if (result == TAMU_PARSE_ERROR || result == TAMU_OUT_OF_MEMORY) {
      RECORD_Free(KIND_CONTACT, SHARED_Record());
      return result;
    }
    if (result == TAMU_PARSE_WARNING) kept = TAMU_PARSE_WARNING;
    if (callback != nullptr) callback(KIND_CONTACT, SHARED_Record(), kept, user);
    RECORD_Free(KIND_CONTACT, SHARED_Record());
  }
}

}  // namespace tamu
