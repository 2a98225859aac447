// HTML as text: it is never longer than the HTML, and it does not depend on what was there before or
// what follows.
#include <vector>

#include "fuzz_check.h"
#include "mailstore/html_entities.h"
#include "mailstore/html_text.h"

namespace tamu::fuzz {
namespace {

// Half of the inputs as bytes, which find tags faster, half as any units.
std::u16string AsHtml(std::uint8_t choice, const std::string& bytes) {
  if (choice % 2 != 0) return AsWide(bytes);
  std::u16string wide;
  for (const char byte : UpToNul(bytes)) wide.push_back(static_cast<std::uint8_t>(byte));
  return wide;
}

std::u16string ToText(const std::u16string& html) {
  // In a block without a unit to spare.
  std::vector<char16_t> exact(html.begin(), html.end());
  exact.push_back(u'\0');
  std::u16string text;
  FUZZ_CHECK(HTML_ToText(exact.data(), &text) == 1);
  return text;
}

void CheckEntities(const std::u16string& html) {
  FUZZ_CHECK(HTML_DecodeEntity(html).has_value() == !html.empty());
  FUZZ_CHECK(HTML_DecodeEntity(u"#" + html).has_value());
  FUZZ_CHECK(HTML_DecodeEntity(u"#x" + html).has_value());
}

}  // namespace
}  // namespace tamu::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tamu;
  using namespace tamu::fuzz;
  Input input(data, size);
  const std::uint8_t choice = input.Byte();
  const std::u16string html = AsHtml(choice, input.Rest());

  const std::u16string text = ToText(html);
  FUZZ_CHECK(text.size() <= html.size());
  std::u16string appended = u"before";
  FUZZ_CHECK(HTML_ToText(html.c_str(), &appended) == 1);
  FUZZ_CHECK(appended == u"before" + text);

  // Text without any markup is itself.
  const std::u16string body = u"<body>";
  if (html.find_first_of(u"<&\r\n") == std::u16string::npos) {
    FUZZ_CHECK(ToText(body + html) == html);
    FUZZ_CHECK(text.empty());
  }
  // What a whole piece gives does not depend on what follows it: "x" ends no tag and no entity.
  const std::u16string more = ToText(html + u"x");
  FUZZ_CHECK(more.substr(0, text.size()) == text && more.size() <= text.size() + 1);
  CheckEntities(html);
  return 0;
}
