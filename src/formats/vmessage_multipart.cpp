#include "formats/vmessage_multipart.h"

#include <cstring>
#include <string_view>
#include <utility>

#include "core/log.h"
#include "core/memory.h"
#include "core/records.h"
#include "formats/line_reader.h"
#include "formats/vmessage_content.h"
#include "formats/vmessage_headers.h"

namespace tamu {
namespace {

// Skips raw lines behind the one that is `wanted`, to the end of the file without one. Returns
// false when memory runs out.
bool SkipPast(File* file, std::string_view wanted) noexcept {
  while (!file->AtEnd()) {
    std::string_view line;
    if (!VMSG_ReadRawLine(file, &line)) return false;
    if (line == wanted) break;
  }
  return true;
}

// The parts behind the first, of a mail that an earlier envelope of the message brought.
void FreeFurtherParts(BodyPart* first) noexcept {
  // Nothing but the chain is handed over: the first part stays as it is.
  ObjectRecord rest{};
  rest.message.body.next = std::exchange(first->next, nullptr);
  BODY_FreeParts(&rest);
}

class MultipartReader {
 public:
  MultipartReader(LineReader* line, MessageShape* message, const VmsgBoundary& boundary) noexcept
      : line_(line), message_(message), part_(&message->body) {
    marker_[0] = marker_[1] = '-';
    std::memcpy(marker_.data() + 2, boundary.data(), boundary.size());
  }

  TamuResult Read() noexcept {
    while (state_ != State::kDone && !file()->AtEnd()) {
      switch (state_) {
        case State::kPreamble:
          Skip(marker_.data(), State::kPartHeaders);
          break;
        case State::kPartHeaders:
          ReadHeader();
          break;
        case State::kEpilogue:
          Skip("END:VBODY", State::kDone);
          break;
        case State::kDone:
          break;
      }
    }
    return result_;
  }

 private:
  enum class State : std::uint8_t { kPreamble, kPartHeaders, kEpilogue, kDone };

  [[nodiscard]] File* file() const noexcept { return line_->file(); }

  void End(TamuResult result) noexcept {
    result_ = result;
    state_ = State::kDone;
  }

  void Skip(std::string_view wanted, State next) noexcept {
    if (!SkipPast(file(), wanted)) return End(TAMU_OUT_OF_MEMORY);
    state_ = next;
  }

  void ReadHeader() noexcept {
    const std::uint64_t begin = file()->Tell().offset;
    if (!line_->Read()) return End(TAMU_PARSE_WARNING);
    if (line_->blank()) {
      // The end of the file reads as an empty line too, but takes up no room.
      if (file()->Tell().offset != begin) ReadContent();
      return;
    }
    const VmsgRow* const row = VMSG_FindRow(LINE_StripBlanks(line_->name()));
    if (row == nullptr || !VMSG_IsPartHeader(row->code)) {
      LOG_Info("TAMU:  Warning - Parser encountered unexpected property: '%s'", line_->name());
      return End(TAMU_PARSE_WARNING);
    }
    if (!VMSG_KeepValue(*row, line_->value(), message_, part_)) End(TAMU_PARSE_WARNING);
  }

  void ReadContent() noexcept {
    bool last = false;
    const bool first = part_ == &message_->body;
    const TamuResult result = VMSG_ReadContent(file(), part_, marker_.data(), &last, first);
    if (result != TAMU_PARSE_OK) return End(result);
    if (last) {
      state_ = State::kEpilogue;
    } else if (!AppendPart()) {
      End(TAMU_OUT_OF_MEMORY);
    }
  }

  [[nodiscard]] bool AppendPart() noexcept {
    MemPtr<BodyPart> part = MEM_New<BodyPart>();
    if (!part) return false;
    if (part_->next != nullptr) FreeFurtherParts(part_);
    part_->next = part.release();
    part_ = part_->next;
    return true;
  }

  LineReader* line_;
  MessageShape* message_;
  BodyPart* part_;  // the current one
  std::array<char, std::tuple_size_v<VmsgBoundary> + 2> marker_;
  State state_ = State::kPreamble;
  TamuResult result_ = TAMU_PARSE_OK;
};

}  // namespace

bool VMSG_FindBoundary(const char* content_type, VmsgBoundary* boundary) noexcept {
  const char* text = std::strstr(content_type, "multipart");
  if (text != nullptr) text = std::strstr(text, "boundary");
  if (text == nullptr) return false;
  text += std::strcspn(text, "=");
  if (*text == '=') ++text;
  const bool quoted = *text == '"';
  if (quoted) ++text;
  const std::size_t length = std::strcspn(text, quoted ? "\"" : "; \t");
  boundary->fill('\0');
  std::memcpy(boundary->data(), text, length);
  return true;
}

TamuResult VMSG_ReadMultipart(File* file, MessageShape* message,
                              const VmsgBoundary& boundary) noexcept {
  LineReader line(file);
  if (!line.ok()) return RESULT_NoBuffers();
  LOG_Info("TAMU:  Parsing Multipart Content (boundary='%s')", boundary.data());
  return MultipartReader(&line, message, boundary).Read();
}

}  // namespace tamu
