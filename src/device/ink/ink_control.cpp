#include "device/ink/ink_control.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <new>
#include <span>
#include <stdexcept>
#include <utility>
#include <vector>

#include "device/ink/ink_decoder.h"
#include "device/ink/ink_encoder.h"
#include "device/ink/ink_text.h"
#include "platform/code_pages.h"
#include "platform/last_error.h"

namespace tamu::device {
namespace {

using Bytes = std::vector<std::uint8_t>;

std::atomic<int> live_controls = 0;

// Everything that the callback gives; the stream's error otherwise.
std::uint32_t ReadStream(const platform::EditStream& stream, Bytes* bytes) {
  std::uint8_t piece[kInkPiece];
  for (std::int32_t done = kInkPiece; done == kInkPiece;) {
    done = 0;
    const std::uint32_t error = stream.callback(stream.cookie, piece, kInkPiece, &done);
    if (error != 0) return error;
    if (done < 0 || done > kInkPiece) return platform::kErrorInvalidParameter;
    bytes->insert(bytes->end(), piece, piece + done);
  }
  return platform::kErrorSuccess;
}

std::uint32_t WriteStream(const platform::EditStream& stream, Bytes bytes) {
  for (std::size_t at = 0; at < bytes.size();) {
    const auto size =
        static_cast<std::int32_t>(std::min<std::size_t>(bytes.size() - at, kInkPiece));
    std::int32_t done = 0;
    const std::uint32_t error = stream.callback(stream.cookie, bytes.data() + at, size, &done);
    if (error != 0) return error;
    if (done != size) break;  // the callback wants no more
    at += static_cast<std::size_t>(size);
  }
  return platform::kErrorSuccess;
}

std::uint32_t Parse(std::uintptr_t format, std::span<const std::uint8_t> bytes,
                    std::u16string* text) {
  switch (format) {
    case platform::kSfUnicodeText:
      *text = INK_FromUtf16(bytes);
      break;
    case platform::kSfText:
      if (!INK_FromCodePage(platform::kCpAcp, bytes, text))
        return platform::kErrorNoUnicodeTranslation;
      break;
    default:
      *text = INK_Decode(bytes).text;
      return platform::kErrorSuccess;
  }
  // Callers give text with its terminator.
  if (text->ends_with(u'\0')) text->pop_back();
  return platform::kErrorSuccess;
}

std::uint32_t Render(std::uintptr_t format, const std::u16string& text, Bytes* bytes) {
  switch (format) {
    case platform::kSfUnicodeText:
      *bytes = INK_ToUtf16(text);
      bytes->insert(bytes->end(), 2, 0);
      return platform::kErrorSuccess;
    case platform::kSfText:
      return INK_ToCodePage(platform::kCpAcp, text, bytes) ? platform::kErrorSuccess
                                                           : platform::kErrorNoUnicodeTranslation;
    default:
      *bytes = INK_Encode(text);
      return platform::kErrorSuccess;
  }
}

bool IsKnown(std::uintptr_t format, const platform::EditStream* stream) {
  return stream != nullptr && stream->callback != nullptr &&
         (format == platform::kSfText || format == platform::kSfUnicodeText ||
          format == platform::kSfPwi);
}

// Runs one stream; what it throws and answers becomes the stream's error.
template <typename Work>
std::uint32_t Run(std::uintptr_t format, platform::EditStream* stream, Work&& work) noexcept {
  std::uint32_t error = platform::kErrorInvalidParameter;
  if (IsKnown(format, stream)) {
    try {
      error = work();
    } catch (const std::bad_alloc&) {
      error = platform::kErrorNotEnoughMemory;
    } catch (const std::length_error&) {
      error = platform::kErrorNotEnoughMemory;
    }
  }
  if (stream != nullptr) stream->error = error;
  return error;
}

}  // namespace

InkControl::InkControl() noexcept { ++live_controls; }
InkControl::~InkControl() { --live_controls; }

std::uint32_t InkControl::StreamIn(std::uintptr_t format, platform::EditStream* stream) noexcept {
  return Run(format, stream, [&] {
    Bytes bytes;
    std::uint32_t error = ReadStream(*stream, &bytes);
    if (error != 0) return error;
    std::u16string text;
    error = Parse(format, bytes, &text);
    if (error == 0) text_ = INK_CanonicalText(text);
    return error;
  });
}

std::uint32_t InkControl::StreamOut(std::uintptr_t format,
                                    platform::EditStream* stream) const noexcept {
  return Run(format, stream, [&] {
    Bytes bytes;
    const std::uint32_t error = Render(format, text_, &bytes);
    return error != 0 ? error : WriteStream(*stream, std::move(bytes));
  });
}

int INK_LiveControls() noexcept { return live_controls; }

}  // namespace tamu::device
