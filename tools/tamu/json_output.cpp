#include "json_output.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "date_words.h"
#include "display_text.h"
#include "platform/paths.h"
#include "rule_json.h"

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

Json OptionalDate(const std::optional<DateReading>& date) {
  if (!date) return nullptr;
  Json json;
  json["local"] = DATE_Iso(date->local, date->has_time, "");
  json["utc"] = date->utc ? Json(DATE_Iso(*date->utc, date->has_time, "Z")) : Json(nullptr);
  return json;
}

// Properties whose components are dates; of an alarm the first is one.
constexpr std::string_view kDates[] = {"DTSTART", "DTEND",        "DUE",      "COMPLETED",
                                       "EXDATE",  "DALARM",       "DCREATED", "LAST-MODIFIED",
                                       "BDAY",    "X-ANNIVERSARY"};

bool HoldsDates(std::string_view name) noexcept {
  return std::find(std::begin(kDates), std::end(kDates), name) != std::end(kDates);
}

Json DatesOf(const PropertyView& property) {
  Json dates = Json::array();
  for (const auto& component : property.components) {
    dates.push_back(component ? OptionalDate(DATE_ReadIso(component->raw)) : Json(nullptr));
    if (property.name == "DALARM") break;
  }
  return dates;
}

Json RuleOf(const PropertyView& property) {
  if (property.components.empty() || !property.components[0]) return nullptr;
  const RuleReading reading{std::string(property.components[0]->raw)};
  return reading.problem().empty() ? RULE_Json(reading) : Json(nullptr);
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
  if (HoldsDates(property.name)) json["dates"] = DatesOf(property);
  if (property.name == "RRULE") json["rule"] = RuleOf(property);
  return json;
}

Json FieldOf(const MessageField& field) {
  Json json;
  json["name"] = field.name;
  json["value"] = DISPLAY_BytesToUtf8(field.raw);
  json["text"] = DISPLAY_ToUtf8(field.text);
  if (field.name == "Date") json["date"] = OptionalDate(DATE_ReadMail(field.raw));
  return json;
}

Json PartOf(const PartView& part) {
  Json json;
  json["contentType"] = DISPLAY_BytesToUtf8(part.content_type);
  json["transferEncoding"] = DISPLAY_BytesToUtf8(part.transfer_encoding);
  json["fileName"] = DISPLAY_ToUtf8(part.file_name);
  json["value"] = part.raw ? Json(DISPLAY_BytesToUtf8(*part.raw)) : Json(nullptr);
  const bool is_text = part.raw && part.IsText();
  json["text"] = is_text ? Json(DISPLAY_ToUtf8(part.text)) : Json(nullptr);
  json["codePage"] = is_text ? Json(part.code_page) : Json(nullptr);
  json["fileSize"] = part.stored_size ? Json(*part.stored_size) : Json(nullptr);
  return json;
}

void AddMessage(const MessageView& message, std::string_view box, Json* json) {
  (*json)["box"] = box;
  (*json)["fields"] = Json::array();
  for (const MessageField& field : message.fields) (*json)["fields"].push_back(FieldOf(field));
  (*json)["parts"] = Json::array();
  for (const PartView& part : message.parts) (*json)["parts"].push_back(PartOf(part));
}

std::string_view KindOf(const ObjectView& object) noexcept {
  switch (object.kind) {
    case KIND_CONTACT:
      return "contact";
    case KIND_CALENDAR:
      return object.component == COMPONENT_TODO ? "todo" : "event";
    case KIND_NOTE:
      return "note";
    default:
      return "message";
  }
}

std::string_view BoxOf(ObjectKind kind) noexcept {
  return kind == KIND_MSG_SENT ? "sent" : kind == KIND_MSG_OUTBOX ? "outbox" : "inbox";
}

// What an object has wherever it comes from.
void AddObject(const ObjectView& object, Json* json) {
  (*json)["name"] = DISPLAY_ToUtf8(object.name);
  (*json)["luid"] = DISPLAY_BytesToUtf8(object.luid);
  (*json)["version"] = DISPLAY_BytesToUtf8(object.version);
  if (object.kind == KIND_CALENDAR && object.component == COMPONENT_EVENT) {
    (*json)["allDay"] = object.all_day;
  }
  (*json)["properties"] = Json::array();
  for (const PropertyView& property : object.properties) {
    (*json)["properties"].push_back(PropertyOf(property));
  }
  if (object.message) AddMessage(*object.message, BoxOf(object.kind), json);
}

}  // namespace

std::string JSON_Object(const ObjectView& object, std::string_view file) {
  Json json;
  json["kind"] = KindOf(object);
  json["status"] = object.status == TAMU_PARSE_WARNING ? "warning" : "ok";
  // Bytes of the name that are not UTF-8 become U+FFFD.
  json["file"] = DISPLAY_ToUtf8(platform::PathFromNative(file));
  json["line"] = object.line;
  AddObject(object, &json);
  return DISPLAY_Json(json.dump()) + "\n";
}

std::string JSON_StoredObject(const ObjectView& object, std::string_view id,
                              const std::vector<std::string>& losses) {
  Json json;
  json["kind"] = KindOf(object);
  json["id"] = id;
  AddObject(object, &json);
  json["losses"] = losses;
  return DISPLAY_Json(json.dump(-1, ' ', false, Json::error_handler_t::replace)) + "\n";
}

}  // namespace tamu::tool
