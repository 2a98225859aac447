#include "formats/vnote_reader.h"

#include <array>
#include <cstddef>

#include "core/log.h"
#include "core/records.h"
#include "formats/line_reader.h"
#include "formats/object_loop.h"
#include "formats/shared_record.h"
#include "formats/vnote_properties.h"
#include "text/property.h"
#include "text/version.h"

namespace tamu {
namespace {

constexpr const char* kFormat = "vNote";

// The lines of one note, from behind its BEGIN.
class NoteReader {
 public:
  NoteReader(LineReader* line, NoteShape* note) noexcept : line_(line), note_(note) {}

  TamuResult Read() noexcept {
    while (!ended_ && !line_->file()->AtEnd()) ReadLine();
    if (version_seen_ && ended_) return result_;
    LOG_Error("TAMU:  Error - vNote missing END tag or does not contain required VERSION property");
    return TAMU_PARSE_ERROR;
  }

 private:
  void ReadLine() noexcept {
    if (!line_->Next(kFormat, &result_)) return;
    LINE_StripBlanks(line_->name());
    LINE_StripBlanks(line_->params());
    const VnoteCode code = VNOTE_PropertyCode(line_->name());
    switch (code) {
      case VnoteCode::kUnknown:
        LOG_Info("TAMU:  Warning - Parser encountered unknown property: '%s'", line_->name());
        RESULT_Warn(&result_);
        break;
      case VnoteCode::kBegin:
        ++depth_;
        break;
      case VnoteCode::kEnd:
        if (depth_ == 1) ended_ = true;
        --depth_;
        break;
      case VnoteCode::kLuid:
        if (depth_ == 1) STR_CopyBounded(note_->luid, line_->value(), sizeof note_->luid - 1);
        break;
      case VnoteCode::kVersion:
        TakeVersion();
        break;
      default:
        if (depth_ == 1) TakeChainProperty(code);
    }
  }

  void TakeVersion() noexcept {
    version_seen_ = true;
    if (depth_ != 1) return;
    STR_CopyField(note_->version, line_->value());
    char kept[TAMU_VERSION_WIDTH + 1];
    STR_CopyBounded(kept, line_->value(), TAMU_VERSION_WIDTH);
    if (VERSION_IsSupported(kept, kVnoteVersion)) return;
    LOG_Error("TAMU:  Error - vNote version '%s' is not supported", kept);
    result_ = TAMU_PARSE_ERROR;
    ended_ = true;
  }

  void TakeChainProperty(VnoteCode code) noexcept {
    for (std::size_t i = 0; i < VNOTE_Rows().size(); ++i) {
      const VnoteRow& row = VNOTE_Rows()[i];
      if (row.code != code) continue;
      PROP_SetFromText(line_->value(), line_->params(), kAnyComponents,
                       chain_ends_[i].Append(&(note_->*row.field)));
    }
  }

  LineReader* line_;
  NoteShape* note_;
  std::array<PropertyChainEnd, 6> chain_ends_{};  // one a row
  std::uint64_t depth_ = 1;
  TamuResult result_ = TAMU_PARSE_OK;
  bool version_seen_ = false;
  bool ended_ = false;
};

TamuResult ReadBody(File* file, ReadCallback, void*) noexcept { return VNOTE_ReadBody(file); }

ObjectKind KindOf(const ObjectRecord&) noexcept { return KIND_NOTE; }

}  // namespace

TamuResult VNOTE_Read(File* file, ReadCallback callback, void* user) noexcept {
  constexpr ObjectLoop kLoop = {kFormat, "VNOTE", &ReadBody, &KindOf};
  return OBJECTS_ReadAll(kLoop, file, callback, user);
}

TamuResult VNOTE_ReadBody(File* file) noexcept {
  LineReader line(file);
  if (!line.ok()) return RESULT_NoBuffers();
  return NoteReader(&line, &SHARED_Record()->note).Read();
}

}  // namespace tamu
