// Every table, entry by entry, pinned by a digest of what the services answer.
#include <array>
#include <cstdio>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "platform/code_pages_support.h"

namespace tamu::platform::testing {
namespace {

// FNV-1a, 64 bits.
class Digest {
 public:
  void Add(std::uint8_t byte) {
    value_ ^= byte;
    value_ *= 0x100000001B3U;
  }
  void AddUnits(const char16_t* units, std::int32_t count) {
    for (std::int32_t i = 0; i < count; ++i) {
      Add(static_cast<std::uint8_t>(units[i] & 0xFF));
      Add(static_cast<std::uint8_t>(units[i] >> 8));
    }
  }
  [[nodiscard]] std::string Text() const {
    std::array<char, 17> text{};
    std::snprintf(text.data(), text.size(), "%016llx", static_cast<unsigned long long>(value_));
    return text.data();
  }

 private:
  std::uint64_t value_ = 0xCBF29CE484222325U;
};

using LeadRange = std::pair<int, int>;

struct TableRow {
  std::uint32_t page;
  const char* decode;
  const char* encode;
  std::vector<LeadRange> lead = {};
};

const TableRow kTables[] = {
    {1250, "2cf329295b5c3de0", "540d660b82d81dd7"},
    {1251, "f9d08bd1cda4df3f", "82f466f2d93bb8e2"},
    {1252, "577db6d912423900", "a65bdc307c3bb55e"},
    {1253, "288276c5c9a181b5", "8191050107a4e0a2"},
    {1254, "8958de9b87cf735e", "ff4d73654f92eeec"},
    {1255, "eb13ceb7023b8688", "b29f69f3bc2b9487"},
    {1256, "8577dce5f9a09088", "071807accd713680"},
    {1257, "68dc089708100ebc", "534b48255567f5d9"},
    {1258, "5375cad06ee0245a", "3788a3b14e546e35"},
    {874, "d49690f22a1aa325", "5b0b05ba9d502b4b"},
    {852, "d861a9a50812298a", "a89efa864dcf4363"},
    {866, "a7e9cde0a5e33825", "4692c776ead0204a"},
    {20866, "32850e94e3bf014e", "90b4cea4db396941"},
    {28591, "c3245fa6c8a16b25", "43d640f72bf9ec76"},
    {28592, "6985e26be4b180d2", "0c09617593150d43"},
    {28593, "d5c060dca6bb4e2a", "af20c5dc22ad8f20"},
    {28594, "f30622056889954c", "7dbeb7131f18d523"},
    {28595, "aad2acd08e3c7e6a", "df863024ab42513f"},
    {28596, "d66ca661a9633351", "4c6d9bfbfe9a9563"},
    {28597, "7589f38a895c47e9", "b9e3099e89da6d26"},
    {28598, "8525bd8c692161f0", "d1a663051f40f1c0"},
    {28599, "5e505410ba85208c", "9075136870dc4e32"},
    {28605, "697526d493d95980", "6e3bdc18ed0499a8"},
    {932, "4b3923c01d06421d", "08981a23b0462cbd", {{0x81, 0x9F}, {0xE0, 0xFC}}},
    {936, "507cfa438f281494", "148e41f7e00dca30", {{0x81, 0xFE}}},
    {949, "85947a3c67d09149", "3bedb1f187dc6078", {{0x81, 0xFE}}},
    {950, "a5915bf98077897a", "5803fa5445c55b27", {{0x81, 0xFE}}},
    {51949, "f34afef9fbfdd886", "bbd9db6bfb47bd59", {{0xA1, 0xAC}, {0xB0, 0xC8}, {0xCA, 0xFD}}},
};
static_assert(std::size(kTables) == 28);

// All single bytes, then all pairs of each lead byte.
std::string DecodeDigest(const TableRow& row) {
  Digest digest;
  const auto add = [&](const char* bytes, std::int32_t count) {
    std::array<char16_t, 4> units{};
    digest.AddUnits(units.data(), MultiByteToWideChar(row.page, 0, bytes, count, units.data(), 4));
  };
  for (int byte = 0; byte < 256; ++byte) {
    const char text[] = {static_cast<char>(byte)};
    add(text, 1);
  }
  for (const auto& [first, last] : row.lead) {
    for (int code = first << 8; code <= (last << 8 | 0xFF); ++code) {
      const char text[] = {static_cast<char>(code >> 8), static_cast<char>(code & 0xFF)};
      add(text, 2);
    }
  }
  return digest.Text();
}

std::string EncodeDigest(const TableRow& row) {
  Digest digest;
  for (int unit = 0; unit <= 0xFFFF; ++unit) {
    const char16_t text[] = {static_cast<char16_t>(unit)};
    std::array<char, 4> bytes{};
    std::int32_t used = -1;
    const std::int32_t count =
        WideCharToMultiByte(row.page, 0, text, 1, bytes.data(), 4, nullptr, &used);
    for (std::int32_t i = 0; i < count; ++i) {
      digest.Add(static_cast<std::uint8_t>(bytes[static_cast<std::size_t>(i)]));
    }
    digest.Add(static_cast<std::uint8_t>(used));
  }
  return digest.Text();
}

// Without best fits, a unit has a code exactly if the code decodes to the unit.
int CountBrokenRoundTrips(std::uint32_t page) {
  int wrong = 0;
  for (int unit = 0; unit <= 0xFFFF; ++unit) {
    const char16_t text = static_cast<char16_t>(unit);
    std::array<char, 4> bytes{};
    std::int32_t used = -1;
    const std::int32_t count =
        WideCharToMultiByte(page, kWcNoBestFitChars, &text, 1, bytes.data(), 4, nullptr, &used);
    char16_t back = 0;
    const std::int32_t units = MultiByteToWideChar(page, 0, bytes.data(), count, &back, 1);
    if (units != 1 || (used == 0) != (back == text)) ++wrong;
  }
  return wrong;
}

TEST(CodePageTables, DecodeAsRecorded) {
  for (const TableRow& row : kTables) EXPECT_EQ(row.decode, DecodeDigest(row)) << row.page;
}

TEST(CodePageTables, EncodeAsRecorded) {
  for (const TableRow& row : kTables) EXPECT_EQ(row.encode, EncodeDigest(row)) << row.page;
}

TEST(CodePageTables, RoundTripWithoutBestFits) {
  for (const TableRow& row : kTables) EXPECT_EQ(0, CountBrokenRoundTrips(row.page)) << row.page;
}

}  // namespace
}  // namespace tamu::platform::testing
