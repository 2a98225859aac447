// Rich-ink documents: any bytes decode to a text of bounded length, a text comes back from the
// document that it is put into with its line ends made equal, and a document that is cut gives the
// beginning of its text.
#include <vector>

#include "device/ink/ink_decoder.h"
#include "device/ink/ink_encoder.h"
#include "fuzz_check.h"

namespace tamu::fuzz {
namespace {

// Empty lines of drawings, at two units each, are all that is not in the bytes.
constexpr std::size_t kLongestBlank = 2 * 4096;

std::vector<std::uint8_t> AsBlock(std::string_view bytes) {
  std::vector<std::uint8_t> block(bytes.begin(), bytes.end());
  block.shrink_to_fit();
  return block;
}

void CheckAnyBytes(const std::string& bytes) {
  const device::InkText result = device::INK_Decode(AsBlock(bytes));
  FUZZ_CHECK(result.text.size() <= bytes.size() + kLongestBlank);
  FUZZ_CHECK(result.source != device::InkSource::kOtherFormat || result.text.empty());
}

// The line ends of a text made equal, unit by unit.
std::u16string WithEqualLineEnds(const std::u16string& text) {
  std::u16string equal;
  char16_t before = 0;
  for (const char16_t unit : text) {
    if (unit == u'\r' || (unit == u'\n' && before != u'\r')) {
      equal += u"\r\n";
    } else if (unit != u'\n') {
      equal.push_back(unit);
    }
    before = unit;
  }
  return equal;
}

void CheckRoundTrip(const std::u16string& text, std::size_t cut) {
  const std::u16string canonical = WithEqualLineEnds(text);
  FUZZ_CHECK(device::INK_CanonicalText(text) == canonical);
  const std::vector<std::uint8_t> document = device::INK_Encode(text);
  const device::InkText whole = device::INK_Decode(document);
  FUZZ_CHECK(whole.source == device::InkSource::kDocument);
  FUZZ_CHECK(!whole.damaged && !whole.objects && whole.text == canonical);

  const std::size_t size = 5 + cut % (document.size() - 5);
  const device::InkText part = device::INK_Decode(std::vector<std::uint8_t>(
      document.begin(), document.begin() + static_cast<std::ptrdiff_t>(size)));
  FUZZ_CHECK(canonical.starts_with(part.text));
  FUZZ_CHECK(part.damaged || part.text == canonical);
}

}  // namespace
}  // namespace tamu::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tamu::fuzz;
  Input input(data, size);
  const std::string all(reinterpret_cast<const char*>(data), size);
  CheckAnyBytes(all);
  if (!all.starts_with("{\\pwi"))
    CheckAnyBytes("{\\pwi\x15" + all);  // documents are rarely guessed
  const std::size_t low = input.Byte();
  const std::size_t cut = low | static_cast<std::size_t>(input.Byte()) << 8;
  CheckRoundTrip(AsWide(input.Rest()), cut);
  return 0;
}
