// platform/linux/code_pages/make_tables.cpp - build tool: turns the data files into one source file
// of constant tables.
//   Usage      make_tables OUTPUT.cpp DATA.txt...
//   Errors     a damaged data file is named with its line on standard error; the exit code is
//   then 1. The format is described in data/README.md, the tables in tables.h.
#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::size_t kUnits = 0x10000;
constexpr std::size_t kBlockSize = 64;  // tables.h: kBlockBits
constexpr std::uint32_t kUndefined = 0xFFFFFFFF;

struct Page {
  std::string number;
  std::array<bool, 256> lead{};
  bool double_byte = false;
  std::uint32_t default_unit = '?';
  std::vector<std::uint32_t> decode = std::vector<std::uint32_t>(kUnits, kUndefined);  // by code
  std::vector<std::uint32_t> encode = std::vector<std::uint32_t>(kUnits, 0);           // by unit
};

[[noreturn]] void Fail(const std::string& why) { throw std::runtime_error(why); }

std::uint32_t Hex(std::string_view text) {
  std::uint32_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
  if (error != std::errc() || end != text.data() + text.size() || value >= kUnits) {
    Fail("not a number: " + std::string(text));
  }
  return value;
}

// "A-B", or "A" alone, which stands for "A-A".
std::pair<std::uint32_t, std::uint32_t> HexRange(std::string_view text) {
  const std::size_t dash = text.find('-');
  const std::uint32_t first = Hex(text.substr(0, dash));
  const std::uint32_t last = dash == std::string_view::npos ? first : Hex(text.substr(dash + 1));
  if (last < first) Fail("range runs backwards: " + std::string(text));
  return {first, last};
}

// One line of "KEY VALUE VALUE-VALUE ...": the values belong to successive keys.
void ReadRow(std::istringstream& fields, std::string_view key_text,
             std::vector<std::uint32_t>& table, std::map<std::uint32_t, bool>& seen) {
  std::uint32_t key = Hex(key_text);
  std::string field;
  while (fields >> field) {
    const auto [first, last] = HexRange(field);
    for (std::uint32_t value = first; value <= last; ++value, ++key) {
      if (key >= kUnits || !seen.emplace(key, true).second) Fail("given twice");
      table[key] = value;
    }
  }
}

void ReadHeader(const std::string& keyword, std::istringstream& fields, Page& page) {
  std::string field;
  if (keyword == "page" && fields >> page.number) return;
  if (keyword == "default" && fields >> field) {
    page.default_unit = Hex(field);
    return;
  }
  if (keyword != "lead") Fail("unknown keyword " + keyword);
  page.double_byte = true;
  while (fields >> field) {
    const auto [first, last] = HexRange(field);
    if (last > 0xFF) Fail("lead bytes are single bytes");
    for (std::uint32_t byte = first; byte <= last; ++byte) page.lead[byte] = true;
  }
}

// Units encode to the shortest, lowest code that decodes to them, unless `exceptions` says
// otherwise.
void Invert(Page& page, const std::map<std::uint32_t, bool>& exceptions) {
  for (std::size_t code = kUnits; code-- > 0;) {
    const std::uint32_t unit = page.decode[code];
    if (unit == kUndefined) continue;
    if (code < 0x100 ? page.lead[code] : !page.lead[code >> 8]) Fail("code has no lead byte");
    if (!exceptions.contains(unit)) page.encode[unit] = static_cast<std::uint32_t>(code);
  }
  for (std::uint32_t& unit : page.decode) {
    if (unit == kUndefined) unit = page.default_unit;
  }
}

Page ReadPage(const char* path) {
  std::ifstream file(path);
  if (!file) Fail(std::string(path) + ": cannot be opened");
  Page page;
  std::map<std::uint32_t, bool> decoded;
  std::map<std::uint32_t, bool> exceptions;
  enum class Section { kHeader, kDecode, kEncode } section = Section::kHeader;
  std::string line;
  for (int number = 1; std::getline(file, line); ++number) {
    try {
      std::istringstream fields(line.substr(0, line.find('#')));
      std::string keyword;
      if (!(fields >> keyword)) continue;
      if (keyword == "decode") {
        section = Section::kDecode;
      } else if (keyword == "encode") {
        section = Section::kEncode;
      } else if (section == Section::kHeader) {
        ReadHeader(keyword, fields, page);
      } else if (section == Section::kDecode) {
        ReadRow(fields, keyword, page.decode, decoded);
      } else {
        ReadRow(fields, keyword, page.encode, exceptions);
      }
    } catch (const std::exception& error) {
      Fail(std::string(path) + ":" + std::to_string(number) + ": " + error.what());
    }
  }
  if (page.number.empty() || section == Section::kHeader) Fail(std::string(path) + ": incomplete");
  Invert(page, exceptions);
  return page;
}

template <typename Values>
void WriteArray(std::ostream& out, const std::string& type, const std::string& name,
                const Values& values) {
  constexpr std::size_t kPerLine = 16;
  out << "constexpr " << type << " " << name << "[" << values.size() << "] = {";
  for (std::size_t i = 0; i < values.size(); ++i) {
    out << (i % kPerLine == 0 ? "\n    " : " ") << values[i] << ',';
  }
  out << "};\n";
}

// Equal blocks of 64 units are stored once; `index` names the block of each.
struct Blocks {
  std::vector<std::uint32_t> index;
  std::vector<std::uint32_t> codes;
};

Blocks Fold(const std::vector<std::uint32_t>& encode) {
  Blocks blocks;
  std::map<std::vector<std::uint32_t>, std::uint32_t> known;
  for (auto from = encode.begin(); from != encode.end(); from += kBlockSize) {
    const std::vector<std::uint32_t> block(from, from + kBlockSize);
    const auto [at, added] = known.emplace(block, static_cast<std::uint32_t>(known.size()));
    if (added) blocks.codes.insert(blocks.codes.end(), block.begin(), block.end());
    blocks.index.push_back(at->second);
  }
  return blocks;
}

void WriteSingleByte(std::ostream& out, const Page& page) {
  const std::vector<std::uint32_t> units(page.decode.begin(), page.decode.begin() + 256);
  bool ascii = true;
  for (std::uint32_t byte = 0; byte < 0x80; ++byte) ascii &= units[byte] == byte;
  const Blocks blocks = Fold(page.encode);
  if (blocks.codes.size() / kBlockSize > 256) Fail("more blocks than a byte can number");
  WriteArray(out, "char16_t", "kUnits" + page.number, units);
  WriteArray(out, "std::uint8_t", "kBlockOf" + page.number, blocks.index);
  WriteArray(out, "std::uint8_t", "kCodes" + page.number, blocks.codes);
  out << "}  // namespace\nconstinit const SingleByteTable kTable" << page.number << " = {"
      << (ascii ? "true" : "false") << ", kUnits" << page.number << ", kBlockOf" << page.number
      << ", kCodes" << page.number << "};\nnamespace {\n";
}

// The lowest trail byte that any pair of the page has; what lies below is not stored.
std::size_t FirstTrail(const Page& page) {
  std::size_t first = 0xFF;
  for (std::size_t code = 0x100; code < kUnits; ++code) {
    if (page.decode[code] != page.default_unit) first = std::min(first, code & 0xFF);
  }
  return first;
}

void WriteDoubleByte(std::ostream& out, const Page& page) {
  const std::size_t first_trail = FirstTrail(page);
  std::vector<std::uint32_t> row_of(256, 0);
  std::vector<std::uint32_t> rows;
  std::uint32_t row = 0;
  for (std::size_t lead = 0; lead < 256; ++lead) {
    if (!page.lead[lead]) continue;
    row_of[lead] = ++row;
    const auto codes = page.decode.begin() + static_cast<std::ptrdiff_t>(lead << 8);
    rows.insert(rows.end(), codes + static_cast<std::ptrdiff_t>(first_trail), codes + 256);
  }
  for (std::uint32_t byte = 0; byte < 0x80; ++byte) {
    if (page.decode[byte] != byte || page.lead[byte]) Fail("double-byte pages extend ASCII");
  }
  const Blocks blocks = Fold(page.encode);
  const std::string& number = page.number;
  WriteArray(out, "char16_t", "kUnits" + number,
             std::vector<std::uint32_t>(page.decode.begin(), page.decode.begin() + 256));
  WriteArray(out, "std::uint8_t", "kRowOf" + number, row_of);
  WriteArray(out, "char16_t", "kRows" + number, rows);
  WriteArray(out, "std::uint16_t", "kBlockOf" + number, blocks.index);
  WriteArray(out, "std::uint16_t", "kCodes" + number, blocks.codes);
  out << "}  // namespace\nconstinit const DoubleByteTable kTable" << number << " = {"
      << page.default_unit << ", " << page.encode[page.default_unit] << ", " << first_trail
      << ", kUnits" << number << ", kRowOf" << number << ", kRows" << number << ", kBlockOf"
      << number << ", kCodes" << number << "};\nnamespace {\n";
}

void WriteTables(std::ostream& out, int count, char** paths) {
  out << "// Made by make_tables.cpp from the files in data/; changes belong there.\n"
         "#include \"platform/linux/code_pages/tables.h\"\n\n"
         "namespace tamu::platform::code_pages {\nnamespace {\n";
  for (int i = 0; i < count; ++i) {
    const Page page = ReadPage(paths[i]);
    out << "\n// Code page " << page.number << "\n";
    if (page.double_byte) {
      WriteDoubleByte(out, page);
    } else {
      WriteSingleByte(out, page);
    }
  }
  out << "\n}  // namespace\n}  // namespace tamu::platform::code_pages\n";
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::cerr << "usage: make_tables OUTPUT.cpp DATA.txt...\n";
    return 2;
  }
  try {
    std::ostringstream text;
    WriteTables(text, argc - 2, argv + 2);
    std::ofstream out(argv[1], std::ios::binary);
    out << text.str();
    out.close();
    if (!out) Fail(std::string(argv[1]) + ": cannot be written");
  } catch (const std::exception& error) {
    std::cerr << "make_tables: " << error.what() << "\n";
    return 1;
  }
  return 0;
}
