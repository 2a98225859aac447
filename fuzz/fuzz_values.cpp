// Values, parameters and texts: every buffer is exactly as long as it is said to be, what is
// measured is what is written, and wide text that goes into a file comes out of it again.
#include <cstring>
#include <vector>

#include "core/file.h"
#include "core/records.h"
#include "formats/property_emitter.h"
#include "fuzz_check.h"
#include "platform/bstr.h"
#include "text/charset.h"
#include "text/logical_line.h"
#include "text/property.h"
#include "text/property_text.h"
#include "text/quoted_printable.h"
#include "text/string_tools.h"
#include "text/tokens.h"
#include "text/utf8.h"
#include "text/version.h"

namespace tamu::fuzz {
namespace {

// One property that frees itself.
class OwnProperty {
 public:
  OwnProperty() : property_(PROP_Append(&chain_)) { FUZZ_CHECK(property_ != nullptr); }
  OwnProperty(const OwnProperty&) = delete;
  OwnProperty& operator=(const OwnProperty&) = delete;
  ~OwnProperty() { PROP_Free(chain_.get()); }

  [[nodiscard]] Property* get() const { return property_; }

 private:
  Ref<Property> chain_ = nullptr;
  Property* property_;
};

// A text that functions may change, in a block without a byte to spare.
std::vector<char> AsBuffer(const std::string& text) {
  std::vector<char> buffer(text.begin(), text.end());
  buffer.push_back('\0');
  return buffer;
}

void CheckQuotedPrintable(const std::string& text, std::size_t short_size) {
  const std::size_t length = QP_Encode(text, nullptr, 0);
  std::vector<char> encoded(length + 1);
  FUZZ_CHECK(QP_Encode(text, encoded.data(), encoded.size()) == length);
  FUZZ_CHECK(std::strlen(encoded.data()) == length);
  std::vector<char> decoded(text.size() + 1);
  FUZZ_CHECK(QP_Decode({encoded.data(), length}, decoded.data(), decoded.size()) == text.size());
  FUZZ_CHECK(std::string_view(decoded.data(), text.size()) == text);

  std::vector<char> cut(short_size + 1);
  FUZZ_CHECK(QP_Encode(text, cut.data(), cut.size()) == length);
  const std::size_t kept = std::strlen(cut.data());
  FUZZ_CHECK(kept <= short_size && std::memcmp(cut.data(), encoded.data(), kept) == 0);

  // Text that nobody encoded decodes to no more than it was.
  const std::size_t wild = QP_Decode(text, nullptr, 0);
  FUZZ_CHECK(wild <= text.size());
  std::vector<char> wild_out(wild + 1);
  FUZZ_CHECK(QP_Decode(text, wild_out.data(), wild_out.size()) == wild);
  FUZZ_CHECK(wild_out[wild] == '\0');
  std::vector<char> wild_cut(short_size + 1);
  FUZZ_CHECK(QP_Decode(text, wild_cut.data(), wild_cut.size()) == wild);
  FUZZ_CHECK(std::memcmp(wild_cut.data(), wild_out.data(), std::min(wild, short_size)) == 0);
}

void CheckUtf8(const std::string& bytes, const std::u16string& wide, std::size_t short_size) {
  std::vector<char16_t> units(bytes.size() + 1);
  const std::size_t all = UTF8_ToWide(bytes.data(), static_cast<std::int32_t>(bytes.size()),
                                      units.data(), units.size());
  FUZZ_CHECK(all <= bytes.size());
  std::vector<char16_t> cut(short_size + 1);
  const std::size_t some =
      UTF8_ToWide(bytes.data(), static_cast<std::int32_t>(bytes.size()), cut.data(), short_size);
  FUZZ_CHECK(some <= short_size && some <= all);
  FUZZ_CHECK(
      std::equal(cut.begin(), cut.begin() + static_cast<std::ptrdiff_t>(some), units.begin()));

  std::vector<char> out(wide.size() * 4 + 1);
  const std::size_t written = UTF8_FromWide(wide.c_str(), -1, out.data(), out.size());
  FUZZ_CHECK(written <= wide.size() * 3 + 1);
  std::vector<char> cut_out(short_size + 1);
  FUZZ_CHECK(UTF8_FromWide(wide.c_str(), -1, cut_out.data(), cut_out.size()) <= cut_out.size() + 1);
}

void CheckTexts(const std::string& text, std::size_t capacity) {
  std::vector<char> value(kParamValueLength + 1);
  const std::size_t length = PARAM_GetValue(text.c_str(), value.data(), value.size());
  FUZZ_CHECK(length <= kParamValueLength && value[length] == '\0');
  FUZZ_CHECK(text.find('=') != std::string::npos || length == 0);
  (void)CHARSET_FromName({value.data(), length});

  std::vector<char> token(capacity + 1);
  for (const auto copy : {&LINE_CopyToken, &STR_CopyUnescaped}) {
    const char* const end = copy(token.data(), token.size(), text.c_str(), ";:");
    FUZZ_CHECK(end >= text.c_str() && end <= text.c_str() + text.size());
    FUZZ_CHECK(*end == '\0' || *end == ';' || *end == ':');
    FUZZ_CHECK(std::strlen(token.data()) <= capacity);
  }
  STR_CopyBounded(token.data(), text.c_str(), capacity);
  FUZZ_CHECK(std::strncmp(token.data(), text.c_str(), capacity) == 0);

  std::vector<std::uint8_t> bytes(capacity + 1);
  FUZZ_CHECK(HEX_ToBytes(text.c_str(), bytes.data(), bytes.size()) <= text.size());
  (void)VERSION_IsSupported(text.c_str(), kVcardVersion);

  std::vector<char> blanks = AsBuffer(text);
  const std::string stripped = LINE_StripBlanks(blanks.data());
  FUZZ_CHECK(stripped.find_first_of(" \t") == std::string::npos);
  const MemPtr<char> doubled = STR_ReplaceAll(text, "=0D=0A", "\r\n");
  FUZZ_CHECK(std::string_view(doubled.get()).find("=0D=0A") == std::string_view::npos ||
             text.find("=0D=0A") != std::string::npos);
}

// A property as a file may hold it.
void CheckPropertyFromFile(const std::string& params, const std::string& value,
                           std::uint32_t max_components) {
  std::vector<char> value_text = AsBuffer(value);
  std::vector<char> param_text = AsBuffer(params);
  const OwnProperty property;
  PROP_SetFromText(value_text.data(), param_text.data(), max_components, property.get());
  std::uint32_t count = 0;
  for (const StringItem* item = property.get()->values; item != nullptr; item = item->next) ++count;
  FUZZ_CHECK(count <= max_components && (max_components == 0 || count >= 1));
  const StringItem* const charset = PROP_FindParam(property.get()->params, "CHARSET");
  FUZZ_CHECK((charset != nullptr) == ((property.get()->flags & PROP_CHARSET) != 0));
  for (std::uint32_t i = 0; i <= count; ++i) {
    platform::BStr text;
    PROP_GetWide(property.get(), i, &text);
    FUZZ_CHECK(text.c_str()[text.size()] == u'\0');
    FUZZ_CHECK(i < count || text.empty());
  }
  platform::BStr text;
  TEXT_ToWide(value.c_str(), params.c_str(), params.c_str(), &text);
}

bool HasLoneSurrogate(const std::u16string& text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool high = text[i] >= 0xD800 && text[i] <= 0xDBFF;
    const bool low = text[i] >= 0xDC00 && text[i] <= 0xDFFF;
    if (low) return true;
    if (!high) continue;
    if (i + 1 == text.size() || text[i + 1] < 0xDC00 || text[i + 1] > 0xDFFF) return true;
    ++i;
  }
  return false;
}

void ExpectComponents(Property* property, const std::vector<std::u16string>& expected) {
  for (std::uint32_t i = 0; i < expected.size(); ++i) {
    platform::BStr text;
    PROP_GetWide(property, i, &text);
    FUZZ_CHECK(text.view() == expected[i]);
  }
}

// Text as a store holds it, through a property, a file, and back.
void CheckWideRoundTrip(const std::vector<std::u16string>& components) {
  const OwnProperty property;
  for (std::uint32_t i = 0; i < components.size(); ++i) {
    PROP_SetWide(components[i].c_str(), property.get(), kAllowQuotedPrintable, i);
  }
  ExpectComponents(property.get(), components);

  const MemoryFile memory;
  File file;
  FUZZ_CHECK(file.Open(memory.path(), u"w"));
  FUZZ_CHECK(VOBJ_PutProperty(&file, "NOTE", property.get(), true) == 0);
  FUZZ_CHECK(VOBJ_PutLine(&file, "END", "", "VCARD") == 0);
  FUZZ_CHECK(file.Close());
  FUZZ_CHECK(file.Open(memory.path(), u"rb"));
  const MemPtr<char> line = FileLine(&file);
  FUZZ_CHECK(line != nullptr);
  std::vector<char> name(kNameSize);
  std::vector<char> params(kParamsSize);
  char* const value = LINE_Split(name.data(), params.data(), line.get());
  const OwnProperty again;
  PROP_SetFromText(value, params.data(), kAnyComponents, again.get());
  FUZZ_CHECK(std::string_view(name.data()) == "NOTE");
  ExpectComponents(again.get(), components);
  const MemPtr<char> end = FileLine(&file);
  FUZZ_CHECK(end != nullptr && std::string_view(end.get()) == "END:VCARD");
}

// Without quoted-printable, text comes back as long as it does not look encoded.
void CheckPlainRoundTrip(const std::u16string& text) {
  if (text.find(u"=0D=0A") != std::u16string::npos) return;
  const OwnProperty property;
  PROP_SetWide(text.c_str(), property.get(), 0, 2);
  ExpectComponents(property.get(), {u"", u"", text});
}

}  // namespace
}  // namespace tamu::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tamu::fuzz;
  const NothingLeaks leaks;
  Input input(data, size);
  const std::size_t short_size = input.Byte() % 32;
  const std::uint32_t max_components = input.Byte() % 9;
  const std::string first = input.Piece();
  const std::string second = input.Piece();
  const std::string third = input.Piece();

  CheckQuotedPrintable(first, short_size);
  CheckUtf8(first, AsWide(second), short_size);
  CheckTexts(UpToNul(first), short_size);
  CheckPropertyFromFile(UpToNul(first), UpToNul(second), max_components);
  std::vector<std::u16string> components = {AsWide(first), AsWide(second), AsWide(third)};
  bool whole = true;
  for (const std::u16string& component : components) whole = whole && !HasLoneSurrogate(component);
  if (whole) {
    CheckWideRoundTrip(components);
    CheckPlainRoundTrip(components[0]);
  }
  return 0;
}
