#include "formats/property_emitter.h"

#include <array>
#include <cstring>

#include "core/log.h"
#include "core/memory.h"

namespace tamu {
namespace {

// Joins pieces in a buffer, or only counts them when there is none.
class TextJoiner {
 public:
  TextJoiner(char* out, std::size_t size) noexcept
      : out_(out), room_(out != nullptr && size != 0 ? size - 1 : 0) {}

  void Add(std::string_view piece) noexcept {
    if (length_ < room_) {
      const std::size_t left = room_ - length_;
      std::memcpy(out_ + length_, piece.data(), piece.size() < left ? piece.size() : left);
    }
    length_ += piece.size();
  }
  std::size_t Finish(std::size_t size) noexcept {
    if (out_ != nullptr && size != 0) out_[length_ < room_ ? length_ : room_] = '\0';
    return length_;
  }

 private:
  char* out_;
  std::size_t room_;
  std::size_t length_ = 0;
};

}  // namespace

std::uint32_t VOBJ_PutLine(File* file, std::string_view name, std::string_view params,
                           std::string_view value, const char* format) noexcept {
  const std::size_t size = name.size() + 1 + params.size() + 1 + value.size() + 1;
  const MemPtr<char> line(static_cast<char*>(MEM_Alloc(size)));
  if (!line) {
    LOG_Error("TAMU:  Insufficient memory to generate %s string", format);
    return 1;
  }
  TextJoiner text(line.get(), size);
  text.Add(name);
  if (!params.empty()) {
    text.Add(";");
    text.Add(params);
  }
  text.Add(":");
  text.Add(value);
  const std::size_t length = text.Finish(size);
  // A failed write is not this function's to report: the file remembers it.
  static_cast<void>(FILE_PutLine(file, {line.get(), length}));
  return 0;
}

std::size_t VOBJ_FormatProperty(std::string_view name, const Property& node, char* out,
                                std::size_t size) noexcept {
  TextJoiner text(out, size);
  text.Add(name);
  for (const StringItem* param = node.params; param != nullptr; param = param->next) {
    if (param->text == nullptr) continue;
    text.Add(";");
    text.Add(param->text.get());
  }
  text.Add(":");
  for (const StringItem* value = node.values; value != nullptr; value = value->next) {
    if (value->text != nullptr) text.Add(value->text.get());
    if (value->next != nullptr) text.Add(";");
  }
  return text.Finish(size) + 1;
}

std::uint32_t VOBJ_PutProperty(File* file, std::string_view name, const Property* first_node,
                               bool emit_empty) noexcept {
  if (name.empty()) return 0;
  if (first_node == nullptr && emit_empty) {
    static_cast<void>(VOBJ_PutLine(file, name, "", ""));
  }
  for (const Property* node = first_node; node != nullptr; node = node->next) {
    // Most lines fit here, so that they are neither measured nor allocated.
    std::array<char, 512> small;
    const std::size_t size = VOBJ_FormatProperty(name, *node, small.data(), small.size());
    const bool qp = (node->flags & PROP_QP) != 0;
    if (size <= small.size()) {
      VOBJ_PutQpText(file, {small.data(), size - 1}, qp);
      continue;
    }
    const MemPtr<char> text(static_cast<char*>(MEM_Alloc(size)));
    if (!text) continue;
    VOBJ_FormatProperty(name, *node, text.get(), size);
    VOBJ_PutQpText(file, {text.get(), size - 1}, qp);
  }
  return 0;
}

std::uint32_t VOBJ_PutQpText(File* file, std::string_view text, [[maybe_unused]] bool qp) noexcept {
  constexpr std::string_view kEncodedLineFeed = "=0A";
  if (text.empty()) return 0;
  for (;;) {
    const std::size_t found = text.find(kEncodedLineFeed);
    const std::size_t cut = found + kEncodedLineFeed.size();
    if (found == std::string_view::npos || cut == text.size()) break;
    // Only the last line's failure is told; the file remembers any.
    if (file->Write(text.substr(0, cut))) static_cast<void>(file->Write("=\n"));
    text.remove_prefix(cut);
  }
  if (FILE_PutLine(file, text) == 0) return 0;
  LOG_Error("TAMU:  Unable to put string to file");
  return 1;
}

}  // namespace tamu
