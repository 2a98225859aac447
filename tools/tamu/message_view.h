// message_view.h - a message's record as data that is ready to be shown.
//   Ownership  raw texts are borrowed from the record; a view is used while the record lives.
//   Errors     functions throw std::bad_alloc when memory runs out.
#ifndef TAMU_TOOLS_MESSAGE_VIEW_H_
#define TAMU_TOOLS_MESSAGE_VIEW_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tamu/tamu.h"

namespace tamu::tool {

// One text of the record that is not empty: a line of the message or a header of its mail.
struct MessageField {
  std::string_view name;  // as in the file
  std::string_view raw;
  std::u16string text;
};

struct PartView {
  std::string_view content_type;
  std::string_view transfer_encoding;
  std::u16string file_name;                  // that the content type gives, "" when none
  std::optional<std::string_view> raw;       // the content; none when it is in a file or not kept
  std::u16string text;                       // the same decoded, when it is text
  std::uint32_t code_page = 0;               // that the text was converted with, 0 when none was
  std::uint64_t size = 0;                    // of the content in bytes, its encoding undone
  std::optional<std::uint64_t> stored_size;  // of the temporary file, as it stands there

  // True when the content type says that it is text, or says nothing.
  [[nodiscard]] bool IsText() const noexcept;
  // "image/jpeg", the content type without its parameters.
  [[nodiscard]] std::string_view MediaType() const noexcept;
};

struct MessageView {
  std::vector<MessageField> fields;  // in the order in which they are written
  std::vector<PartView> parts;       // the first is always there

  // The decoded text of a field, "" when it is not there.
  [[nodiscard]] std::u16string_view Text(std::string_view name) const noexcept;
  [[nodiscard]] std::string_view Raw(std::string_view name) const noexcept;
};

[[nodiscard]] MessageView MESSAGE_View(const MessageShape& message);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_MESSAGE_VIEW_H_
