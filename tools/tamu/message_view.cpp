#include "message_view.h"

#include "core/file.h"
#include "core/wide.h"
#include "mail_text.h"
#include "text/charset.h"
#include "text/string_tools.h"
#include "text/tokens.h"

namespace tamu::tool {
namespace {

struct FieldRow {
  std::string_view name;
  std::string_view (*text)(const MessageShape& message);
};

template <auto field>
std::string_view TextOf(const MessageShape& message) {
  return STR_FieldText(message.*field);
}

using M = MessageShape;
constexpr FieldRow kFields[] = {
    {"X-IRMC-STATUS", &TextOf<&M::status>},
    {"X-IRMC-TYPE", &TextOf<&M::type>},
    {"X-BT-FOLDER", &TextOf<&M::folder>},
    {"Return-Path", &TextOf<&M::return_path>},
    {"Date", &TextOf<&M::date>},
    {"From", &TextOf<&M::from>},
    {"To", &TextOf<&M::to>},
    {"Cc", &TextOf<&M::cc>},
    {"Reply-To", &TextOf<&M::reply_to>},
    {"Subject", &TextOf<&M::subject>},
    {"Mime-Version", &TextOf<&M::mime_version>},
};

std::string_view Trim(std::string_view text) noexcept {
  const std::size_t begin = text.find_first_not_of(" \t");
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(" \t") + 1 - begin);
}

// None when the file cannot be read any more.
std::optional<std::uint64_t> FileSize(const TamuWchar* path) noexcept {
  File file;
  if (!file.Open(AsUtf16(path), u"rb")) return std::nullopt;
  while (file.ExtendWindow() == File::Extension::kMore)
    file.Advance(file.Window().size(), 0, false);
  if (file.error() != 0) return std::nullopt;
  return file.Tell().offset + file.Window().size();
}

PartView ViewOfPart(const BodyPart& part) {
  PartView view;
  view.content_type = STR_FieldText(part.content_type);
  view.transfer_encoding = STR_FieldText(part.transfer_encoding);
  view.file_name =
      MAIL_DecodeHeader(MAIL_Parameter(view.content_type, "name"), CHARSET_GetInputCodePage());
  if (part.temp_file[0] != 0) view.stored_size = FileSize(part.temp_file);
  if (part.text == nullptr) return view;
  view.raw = part.text.get();
  const std::string content = MAIL_DecodeTransfer(*view.raw, view.transfer_encoding);
  view.size = content.size();
  if (!view.IsText()) return view;
  view.code_page = MAIL_CodePage(view.content_type);
  view.text = MAIL_ToWide(content, view.code_page);
  return view;
}

}  // namespace

std::string_view PartView::MediaType() const noexcept {
  return Trim(content_type.substr(0, content_type.find(';')));
}

bool PartView::IsText() const noexcept {
  const std::string_view type = MediaType();
  return type.empty() || STR_BeginsNoCase(type, "TEXT/") || STR_EqualNoCase(type, "TEXT");
}

std::u16string_view MessageView::Text(std::string_view name) const noexcept {
  for (const MessageField& field : fields) {
    if (field.name == name) return field.text;
  }
  return {};
}

std::string_view MessageView::Raw(std::string_view name) const noexcept {
  for (const MessageField& field : fields) {
    if (field.name == name) return field.raw;
  }
  return {};
}

MessageView MESSAGE_View(const MessageShape& message) {
  MessageView view;
  const std::uint32_t code_page = MAIL_CodePage(STR_FieldText(message.body.content_type));
  for (const FieldRow& row : kFields) {
    const std::string_view raw = row.text(message);
    if (!raw.empty()) view.fields.push_back({row.name, raw, MAIL_DecodeHeader(raw, code_page)});
  }
  for (const BodyPart* part = &message.body; part != nullptr; part = part->next) {
    view.parts.push_back(ViewOfPart(*part));
  }
  return view;
}

}  // namespace tamu::tool
