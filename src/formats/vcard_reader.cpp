#include "formats/vcard_reader.h"

#include <array>

#include "core/log.h"
#include "core/records.h"
#include "formats/line_reader.h"
#include "formats/object_loop.h"
#include "formats/shared_record.h"
#include "formats/vcard_properties.h"
#include "text/property.h"
#include "text/version.h"

namespace tamu {
namespace {

constexpr const char* kFormat = "vCard";

// The lines of one card, from behind its BEGIN.
class CardReader {
 public:
  CardReader(LineReader* line, ContactShape* contact) noexcept : line_(line), contact_(contact) {}

  TamuResult Read() noexcept {
    while (!ended_ && !line_->file()->AtEnd()) ReadLine();
    if (version_seen_ && n_seen_ && ended_) return result_;
    LOG_Error(
        "TAMU:  Error - vCard missing END tago or does not contain required VERSION or N "
        "properties");
    return TAMU_PARSE_ERROR;
  }

 private:
  void ReadLine() noexcept {
    if (!line_->Next(kFormat, &result_)) return;
    LINE_TrimLeadingBlanks(line_->name());
    LINE_TrimLeadingBlanks(line_->params());
    TakeProperty(VCARD_FindName(line_->name()), line_->value());
  }

  void TakeProperty(VcardName name, const char* value) noexcept {
    switch (name.line) {
      case VcardLine::kUnknown:
        LOG_Info("TAMU:  Warning - Parser encountered unknown property: '%s'", line_->name());
        RESULT_Warn(&result_);
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

  void TakeChainProperty(std::uint32_t row_index, const char* value) noexcept {
    const VcardRow& row = VCARD_Rows()[row_index];
    if (row.field == &ContactShape::prop_n) n_seen_ = true;
    if (depth_ != 1) return;
    Property* const property = chain_ends_[row_index].Append(&(contact_->*row.field));
    PROP_SetFromText(value, line_->params(), row.components, property);
  }

  LineReader* line_;
  ContactShape* contact_;
  std::array<PropertyChainEnd, 17> chain_ends_{};  // one a row
  std::uint64_t depth_ = 1;
  TamuResult result_ = TAMU_PARSE_OK;
  bool version_seen_ = false;
  bool n_seen_ = false;
  bool ended_ = false;
};

TamuResult ReadBody(File* file, ReadCallback, void*) noexcept { return VCARD_ReadOne(file); }

ObjectKind KindOf(const ObjectRecord&) noexcept { return KIND_CONTACT; }

}  // namespace

TamuResult VCARD_ReadOne(File* file) noexcept {
  return VCARD_ReadOne(file, &SHARED_Record()->contact);
}

TamuResult VCARD_ReadOne(File* file, ContactShape* contact) noexcept {
  LineReader line(file);
  if (!line.ok()) return RESULT_NoBuffers();
  return CardReader(&line, contact).Read();
}

TamuResult VCARD_ReadObjects(File* file, ReadCallback callback, void* user) noexcept {
  // The value behind BEGIN is not looked at: the first one chose this reader.
  constexpr ObjectLoop kLoop = {kFormat, nullptr, &ReadBody, &KindOf};
  return OBJECTS_ReadAll(kLoop, file, callback, user);
}

}  // namespace tamu
