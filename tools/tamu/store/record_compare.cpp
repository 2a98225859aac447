#include "store/record_compare.h"

#include <algorithm>
#include <string_view>

#include "display_text.h"
#include "object_view.h"
#include "platform/paths.h"

namespace tamu::tool {
namespace {

constexpr std::size_t kMostShown = 40;  // bytes of a text in a message, about
constexpr char kComponentEnd = '\x1f';
constexpr char kParamsEnd = '\x1e';

std::string ParamsOf(const PropertyView& property) {
  std::string params;
  for (const std::string_view param : property.params) {
    if (!params.empty()) params += ';';
    params += param;
  }
  return params;
}

// The parameters and the components, empty ones at the end left out.
std::string TextOf(const PropertyView& property) {
  std::size_t count = property.components.size();
  while (count != 0 && property.Text(count - 1).empty()) --count;
  std::string text = ParamsOf(property) + kParamsEnd;
  for (std::size_t i = 0; i < count; ++i) {
    if (i != 0) text += kComponentEnd;
    text += platform::PathToNative(property.Text(i));  // keeps lone surrogates apart
  }
  return text;
}

void Add(std::string_view name, std::string_view text, CanonicalForm* form) {
  if (!text.empty()) form->lines.push_back({std::string(name), std::string(text)});
}

void AddMessage(const MessageView& message, RecordState state, CanonicalForm* form) {
  for (const MessageField& field : message.fields) Add(field.name, field.raw, form);
  for (const PartView& part : message.parts) {
    Add("the content type", part.content_type, form);
    Add("the transfer encoding", part.transfer_encoding, form);
    if (!part.raw) continue;
    std::string_view text = *part.raw;
    if (state == RecordState::kWritten && text.ends_with('\n')) text.remove_suffix(1);
    Add("the text", text, form);
  }
}

std::string Shown(std::string_view text) {
  std::string shown;
  for (const char character : text) {
    if (character == kParamsEnd) continue;
    shown += character == kComponentEnd ? ';' : character;
  }
  const bool cut = shown.size() > kMostShown;
  if (cut) {
    std::size_t end = kMostShown;
    while (end != 0 && (static_cast<unsigned char>(shown[end]) & 0xC0U) == 0x80U) --end;
    shown.resize(end);
  }
  return "'" + DISPLAY_Bytes(shown) + (cut ? "...'" : "'");
}

// The values behind the parameters, where only these are of interest.
std::string ValueShown(std::string_view text) {
  const std::size_t end = text.find(kParamsEnd);
  return Shown(end == std::string_view::npos ? text : text.substr(end + 1));
}

std::string_view ParamsPart(std::string_view text) {
  const std::size_t end = text.find(kParamsEnd);
  return end == std::string_view::npos ? std::string_view() : text.substr(0, end);
}

std::string DifferenceText(const CanonicalLine& expected, const CanonicalLine& actual) {
  const std::string_view params = ParamsPart(actual.text);
  if (ValueShown(expected.text) != ValueShown(actual.text)) {
    return expected.name + " " + ValueShown(expected.text) + " came back as " +
           ValueShown(actual.text);
  }
  if (params != ParamsPart(expected.text)) {
    return expected.name + " came back with the parameters " + Shown(params) + " instead of " +
           Shown(ParamsPart(expected.text));
  }
  return expected.name + " " + ValueShown(expected.text) + " came back different behind its start";
}

using Lines = std::vector<CanonicalLine>;

// Where the lines of the same name as `first` end.
Lines::const_iterator GroupEnd(Lines::const_iterator first, Lines::const_iterator end) {
  return std::find_if(first, end,
                      [&](const CanonicalLine& line) { return line.name != first->name; });
}

Lines::const_iterator FindName(const Lines& lines, const std::string& name) {
  return std::find_if(lines.begin(), lines.end(),
                      [&](const CanonicalLine& line) { return line.name == name; });
}

// Compares the lines of one name.
void CompareGroups(Lines::const_iterator expected, Lines::const_iterator expected_end,
                   Lines::const_iterator actual, Lines::const_iterator actual_end,
                   std::vector<std::string>* texts) {
  for (; expected != expected_end && actual != actual_end; ++expected, ++actual) {
    if (*expected != *actual) texts->push_back(DifferenceText(*expected, *actual));
  }
  for (; expected != expected_end; ++expected) {
    texts->push_back(expected->name + " " + ValueShown(expected->text) + " is missing");
  }
  for (; actual != actual_end; ++actual) {
    texts->push_back(actual->name + " " + ValueShown(actual->text) + " came in addition");
  }
}

}  // namespace

CanonicalForm RECORD_Canonical(ObjectKind kind, ObjectRecord* record, RecordState state) {
  const ObjectView view = VIEW_Make({kind, record, TAMU_PARSE_OK, 0});
  CanonicalForm form;
  form.kind = kind;
  Add("VERSION", view.version, &form);
  Add("X-IRMC-LUID", view.luid, &form);
  if (kind == KIND_CALENDAR) {
    Add("the kind", view.component == COMPONENT_EVENT ? "event" : "to-do", &form);
    if (view.all_day) Add("X-BLUETOOTH-ALLDAYEVENT", "TRUE", &form);
  }
  for (const PropertyView& property : view.properties) {
    const std::string text = TextOf(property);
    if (text.size() > 1) Add(property.name, text, &form);
  }
  if (view.message) AddMessage(*view.message, state, &form);
  std::stable_sort(
      form.lines.begin(), form.lines.end(),
      [](const CanonicalLine& left, const CanonicalLine& right) { return left.name < right.name; });
  return form;
}

std::vector<std::string> RECORD_Differences(const CanonicalForm& expected,
                                            const CanonicalForm& actual) {
  std::vector<std::string> texts;
  if (expected.kind != actual.kind) texts.emplace_back("it came back as another kind of object");
  for (auto group = expected.lines.begin(); group != expected.lines.end();) {
    const auto end = GroupEnd(group, expected.lines.end());
    const auto found = FindName(actual.lines, group->name);
    const auto found_end =
        found == actual.lines.end() ? found : GroupEnd(found, actual.lines.end());
    CompareGroups(group, end, found, found_end, &texts);
    group = end;
  }
  for (auto group = actual.lines.begin(); group != actual.lines.end();) {
    const auto end = GroupEnd(group, actual.lines.end());
    if (FindName(expected.lines, group->name) == expected.lines.end()) {
      CompareGroups(expected.lines.end(), expected.lines.end(), group, end, &texts);
    }
    group = end;
  }
  return texts;
}

}  // namespace tamu::tool
