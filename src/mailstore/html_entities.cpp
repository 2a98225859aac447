#include "mailstore/html_entities.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <limits>

namespace tamu {
namespace {

// Up to eight letters and digits as one number that sorts as they do.
using Key = std::uint64_t;
constexpr std::size_t kLongestName = sizeof(Key);

// 0, which no entity has, for what cannot be a name.
template <typename Unit>
constexpr Key KeyOf(std::basic_string_view<Unit> name) noexcept {
  if (name.size() > kLongestName) return 0;
  Key key = 0;
  for (const Unit unit : name) {
    if (unit <= 0 || unit > 0x7F) return 0;
    key = key << 8 | static_cast<Key>(unit);
  }
  return name.empty() ? 0 : key << (8 * (kLongestName - name.size()));
}

struct Entity {
  consteval Entity(const char* name, char16_t character)
      : key(KeyOf(std::string_view(name))), unit(character) {}

  Key key;
  char16_t unit;
};

constexpr Entity kEntities[] = {
    {"AElig", 198},   {"Aacute", 193},  {"Acirc", 194},   {"Agrave", 192},  {"Alpha", 913},
    {"Aring", 197},   {"Atilde", 195},  {"Auml", 196},    {"Beta", 914},    {"Ccedil", 199},
    {"Chi", 935},     {"Dagger", 8225}, {"Delta", 916},   {"ETH", 208},     {"Eacute", 201},
    {"Ecirc", 202},   {"Egrave", 200},  {"Epsilon", 917}, {"Eta", 919},     {"Euml", 203},
    {"Gamma", 915},   {"Iacute", 205},  {"Icirc", 206},   {"Igrave", 204},  {"Iota", 921},
    {"Iuml", 207},    {"Kappa", 922},   {"Lambda", 923},  {"Mu", 924},      {"Ntilde", 209},
    {"Nu", 925},      {"OElig", 338},   {"Oacute", 211},  {"Ocirc", 212},   {"Ograve", 210},
    {"Omega", 937},   {"Omicron", 927}, {"Oslash", 216},  {"Otilde", 213},  {"Ouml", 214},
    {"Phi", 934},     {"Pi", 928},      {"Prime", 8243},  {"Psi", 936},     {"Rho", 929},
    {"Scaron", 352},  {"Sigma", 931},   {"THORN", 222},   {"Tau", 932},     {"Theta", 920},
    {"Uacute", 218},  {"Ucirc", 219},   {"Ugrave", 217},  {"Upsilon", 933}, {"Uuml", 220},
    {"Xi", 926},      {"Yacute", 221},  {"Yuml", 376},    {"Zeta", 918},    {"aacute", 225},
    {"acirc", 226},   {"acute", 180},   {"aelig", 230},   {"agrave", 224},  {"alefsym", 8501},
    {"alpha", 945},   {"amp", 38},      {"and", 8743},    {"ang", 8736},    {"aring", 229},
    {"asymp", 8776},  {"atilde", 227},  {"auml", 228},    {"bdquo", 8222},  {"beta", 946},
    {"brvbar", 166},  {"bull", 8226},   {"cap", 8745},    {"ccedil", 231},  {"cedil", 184},
    {"cent", 162},    {"chi", 967},     {"circ", 710},    {"clubs", 9827},  {"copy", 169},
    {"crarr", 8629},  {"cup", 8746},    {"curren", 164},  {"dArr", 8659},   {"dagger", 8224},
    {"darr", 8595},   {"deg", 176},     {"delta", 948},   {"diams", 9830},  {"divide", 247},
    {"eacute", 233},  {"ecirc", 234},   {"egrave", 232},  {"empty", 8709},  {"emsp", 8195},
    {"ensp", 8194},   {"epsilon", 949}, {"equiv", 8801},  {"eta", 951},     {"eth", 240},
    {"euml", 235},    {"euro", 8364},   {"exist", 8707},  {"fnof", 402},    {"forall", 8704},
    {"frac12", 189},  {"frac14", 188},  {"frac34", 190},  {"frasl", 8260},  {"gamma", 947},
    {"ge", 8805},     {"gt", 62},       {"hArr", 8660},   {"harr", 8596},   {"hearts", 9829},
    {"hellip", 8230}, {"iacute", 237},  {"icirc", 238},   {"iexcl", 161},   {"igrave", 236},
    {"image", 8465},  {"infin", 8734},  {"int", 8747},    {"iota", 953},    {"iquest", 191},
    {"isin", 8712},   {"iuml", 239},    {"kappa", 954},   {"lArr", 8656},   {"lambda", 955},
    {"lang", 9001},   {"laquo", 171},   {"larr", 8592},   {"lceil", 8968},  {"ldquo", 8220},
    {"le", 8804},     {"lfloor", 8970}, {"loz", 9674},    {"lrm", 8206},    {"lsaquo", 8249},
    {"lsquo", 8216},  {"lt", 60},       {"macr", 175},    {"mdash", 8212},  {"micro", 181},
    {"middot", 183},  {"mu", 956},      {"nabla", 8711},  {"nbsp", 160},    {"ndash", 8211},
    {"ne", 8800},     {"ni", 8715},     {"not", 172},     {"notin", 8713},  {"nsub", 8836},
    {"ntilde", 241},  {"nu", 957},      {"oacute", 243},  {"ocirc", 244},   {"oelig", 339},
    {"ograve", 242},  {"oline", 8254},  {"omega", 969},   {"omicron", 959}, {"oplus", 8853},
    {"or", 8744},     {"ordf", 170},    {"ordm", 186},    {"oslash", 248},  {"otilde", 245},
    {"otimes", 8855}, {"ouml", 246},    {"para", 182},    {"part", 8706},   {"permil", 8240},
    {"perp", 8869},   {"phi", 966},     {"pi", 960},      {"piv", 982},     {"plusmn", 177},
    {"pound", 163},   {"prime", 8242},  {"prod", 8719},   {"prop", 8733},   {"psi", 968},
    {"quot", 34},     {"rArr", 8658},   {"rang", 9002},   {"raquo", 187},   {"rarr", 8594},
    {"rceil", 8969},  {"rdquo", 8221},  {"real", 8476},   {"reg", 174},     {"rfloor", 8971},
    {"rho", 961},     {"rlm", 8207},    {"rsaquo", 8250}, {"rsquo", 8217},  {"sbquo", 8218},
    {"scaron", 353},  {"sdot", 8901},   {"sect", 167},    {"shy", 173},     {"sigma", 963},
    {"sigmaf", 962},  {"sim", 8764},    {"spades", 9824}, {"sub", 8834},    {"sube", 8838},
    {"sup", 8835},    {"sup1", 185},    {"sup2", 178},    {"sup3", 179},    {"supe", 8839},
    {"szlig", 223},   {"tau", 964},     {"there4", 8756}, {"theta", 952},   {"thetasym", 977},
    {"thinsp", 8201}, {"thorn", 254},   {"tilde", 732},   {"times", 215},   {"trade", 8482},
    {"uacute", 250},  {"uarr", 8593},   {"ucirc", 251},   {"ugrave", 249},  {"uml", 168},
    {"upsih", 978},   {"upsilon", 965}, {"uuml", 252},    {"weierp", 8472}, {"xi", 958},
    {"yacute", 253},  {"yen", 165},     {"yuml", 255},    {"zeta", 950},    {"zwj", 8205},
    {"zwnj", 8204}};
constexpr std::size_t kEntityCount = 246;
static_assert(std::size(kEntities) == kEntityCount);

// Halving finds a name only where each is above the one before it.
constexpr bool IsSorted() noexcept {
  Key before = 0;
  for (const Entity& entity : kEntities) {
    if (entity.key <= before) return false;
    before = entity.key;
  }
  return true;
}
static_assert(IsSorted());

char16_t FindEntity(std::u16string_view name) noexcept {
  const Key key = KeyOf(name);
  const Entity* const found =
      std::lower_bound(std::begin(kEntities), std::end(kEntities), key,
                       [](const Entity& entity, Key wanted) { return entity.key < wanted; });
  return found != std::end(kEntities) && found->key == key ? found->unit : u' ';
}

// A number's characters without those that are skipped wherever they stand.
class NumberText {
 public:
  NumberText(std::u16string_view text, std::u16string_view skipped) noexcept
      : rest_(text), skipped_(skipped) {
    Settle();
  }
  [[nodiscard]] bool empty() const noexcept { return rest_.empty(); }
  // NUL at the end.
  [[nodiscard]] char16_t front() const noexcept { return rest_.empty() ? u'\0' : rest_.front(); }
  void Next() noexcept {
    rest_.remove_prefix(1);
    Settle();
  }
  // Takes the next character when it is this one.
  bool Take(char16_t expected) noexcept {
    if (front() != expected) return false;
    Next();
    return true;
  }

 private:
  void Settle() noexcept {
    rest_.remove_prefix(std::min(rest_.find_first_not_of(skipped_), rest_.size()));
  }

  std::u16string_view rest_;
  std::u16string_view skipped_;
};

constexpr bool IsBlank(char16_t unit) noexcept {
  return unit == u' ' || (unit >= u'\t' && unit <= u'\r');
}

// The digit's value, or 16.
constexpr std::uint32_t DigitValue(char16_t unit) noexcept {
  if (unit >= u'0' && unit <= u'9') return unit - std::uint32_t{u'0'};
  if (unit >= u'A' && unit <= u'F') return unit - std::uint32_t{u'A'} + 10;
  if (unit >= u'a' && unit <= u'f') return unit - std::uint32_t{u'a'} + 10;
  return 16;
}

// Skips blanks and a sign; true when it was a minus.
bool TakeSign(NumberText* text) noexcept {
  while (IsBlank(text->front())) text->Next();
  if (text->Take(u'-')) return true;
  text->Take(u'+');
  return false;
}

// Digits up to `most`. False without any.
bool TakeDigits(NumberText* text, std::uint32_t base, std::int64_t most,
                std::int64_t* number) noexcept {
  const bool any = DigitValue(text->front()) < base;
  *number = 0;
  for (; DigitValue(text->front()) < base; text->Next()) {
    *number = std::min(*number * base + DigitValue(text->front()), most);
  }
  return any;
}

char16_t ReadDecimal(NumberText text) noexcept {
  constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
  const bool negative = TakeSign(&text);
  std::int64_t number = 0;
  (void)TakeDigits(&text, 10, negative ? kMost + 1 : kMost, &number);
  return static_cast<char16_t>(negative ? -number : number);
}

char16_t ReadHexadecimal(NumberText text) noexcept {
  constexpr std::int64_t kMost = std::numeric_limits<std::uint32_t>::max();
  const bool negative = TakeSign(&text);
  NumberText behind_prefix = text;  // "0X", of which the x is large when it is still there
  if (behind_prefix.Take(u'0') && behind_prefix.Take(u'X')) text = behind_prefix;
  std::int64_t number = 0;
  if (!TakeDigits(&text, 16, kMost, &number)) return u' ';
  return static_cast<char16_t>(negative ? -number : number);
}

}  // namespace

std::optional<char16_t> HTML_DecodeEntity(std::u16string_view name) noexcept {
  if (name.empty()) return std::nullopt;
  if (name.front() != u'#') return FindEntity(name);
  const NumberText number(name, u"#");
  if (number.empty()) return u' ';
  return number.front() == u'x' ? ReadHexadecimal(NumberText(name, u"#x")) : ReadDecimal(number);
}

}  // namespace tamu
