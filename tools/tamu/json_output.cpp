#include "json_output.h"

#include <nlohmann/json.hpp>

#include "display_text.h"
#include "platform/paths.h"

namespace tamu::tool {
namespace {

// Members keep the order in which they are added.
using Json = nlohmann::ordered_json;

Json EncodingOf(const PropertyView& property) {
  switch (property.encoding) {
    case ValueEncoding::kQuotedPrintable:
      return "quoted-printable";
    case ValueEncoding::kBase64:
      return "base64";
    case ValueEncoding::k8Bit:
      return "8bit";
    case ValueEncoding::kNone:
      break;
  }
  return nullptr;
}

Json PropertyOf(const PropertyView& property) {
  Json params = Json::array();
  for (const std::string_view param : property.params) {
    params.push_back(DISPLAY_BytesToUtf8(param));
  }
  Json values = Json::array();
  Json text = Json::array();
  for (const auto& component : property.components) {
    values.push_back(component ? Json(DISPLAY_BytesToUtf8(component->raw)) : Json(nullptr));
    text.push_back(component ? Json(DISPLAY_ToUtf8(component->text)) : Json(nullptr));
  }
  Json json;
  json["name"] = property.name;
  json["params"] = std::move(params);
  json["encoding"] = EncodingOf(property);
  json["charset"] = property.charset ? Json(DISPLAY_BytesToUtf8(*property.charset)) : Json(nullptr);
  json["codePage"] = property.code_page != 0 ? Json(property.code_page) : Json(nullptr);
  json["values"] = std::move(values);
  json["text"] = std::move(text);
  return json;
}

std::string_view KindOf(ObjectKind kind) noexcept {
  return kind == KIND_CONTACT ? "contact" : "unknown";
}

}  // namespace

std::string JSON_Object(const ObjectView& object, std::string_view file) {
  Json json;
  json["kind"] = KindOf(object.kind);
  json["status"] = object.status == TAMU_PARSE_WARNING ? "warning" : "ok";
  // Bytes of the name that are not UTF-8 become U+FFFD.
  json["file"] = DISPLAY_ToUtf8(platform::PathFromNative(file));
  json["line"] = object.line;
  json["name"] = DISPLAY_ToUtf8(object.name);
  json["luid"] = DISPLAY_BytesToUtf8(object.luid);
  json["version"] = DISPLAY_BytesToUtf8(object.version);
  json["properties"] = Json::array();
  for (const PropertyView& property : object.properties) {
    json["properties"].push_back(PropertyOf(property));
  }
  return DISPLAY_Json(json.dump()) + "\n";
}

}  // namespace tamu::tool
