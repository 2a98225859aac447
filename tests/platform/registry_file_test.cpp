#include "platform/linux/registry_file.h"

#include <gtest/gtest.h>

#include <random>

#include "platform/registry.h"

namespace tamu::platform {
namespace {

constexpr std::size_t kLocalMachine = 2;

RegistryKeyPath Key(std::vector<std::u16string> segments) {
  return {kLocalMachine, std::move(segments)};
}
RegistryData Dword(std::uint8_t number) { return {kRegDword, {number, 0, 0, 0}}; }

// The lowest byte of a value, -1 when it is not there.
int Number(const RegistryFile& file, const RegistryKeyPath& path, std::u16string_view name) {
  const RegistryData* data = file.FindValue(path, name);
  return data && !data->bytes.empty() ? data->bytes[0] : -1;
}

// Text as UTF-16 with a byte order mark.
std::string Utf16(std::u16string_view text, bool little) {
  std::string bytes = little ? "\xFF\xFE" : "\xFE\xFF";
  for (const char16_t unit : text) {
    const char low = static_cast<char>(unit & 0xFF);
    const char high = static_cast<char>(unit >> 8);
    bytes += little ? std::string{low, high} : std::string{high, low};
  }
  return bytes;
}

constexpr char kSample[] =
    "Windows Registry Editor Version 5.00\r\n"
    "\r\n"
    "; a comment\r\n"
    "[HKEY_LOCAL_MACHINE\\Software\\Velmora\\BTConfig]\r\n"
    "@=\"default\"\r\n"
    "\"Number\"=dword:0000000a ; ten\r\n"
    "\"Gone\"=dword:1\r\n"
    "\"Gone\"=-\r\n"
    "\"Twice\"=dword:1\r\n"
    "\"twice\"=dword:2\r\n"
    "\r\n"
    "[HKEY_CURRENT_USER\\Software]\r\n"
    "\"Number\"=dword:0000000b\r\n";

TEST(RegistryFile, ReadsKeysValuesAndRemovals) {
  const RegistryFile file(kSample);
  const RegistryKeyPath config = Key({u"Software", u"Velmora", u"BTConfig"});
  EXPECT_TRUE(file.problems().empty());
  EXPECT_TRUE(file.HasKey(config));
  EXPECT_TRUE(file.HasKey(Key({u"SOFTWARE"})));
  EXPECT_FALSE(file.HasKey(Key({u"Software", u"Other"})));
  EXPECT_EQ(Number(file, config, u"nUMBER"), 10);
  EXPECT_EQ(Number(file, config, u""), 'd');
  EXPECT_EQ(Number(file, config, u"Gone"), -1);
  EXPECT_EQ(Number(file, config, u"Twice"), 2);
  EXPECT_EQ(Number(file, {1, {u"software"}}, u"Number"), 11);
}

TEST(RegistryFile, RemovingAKeyTakesWhatIsBelowAndItMayComeBack) {
  const RegistryFile file(
      "REGEDIT4\n[HKEY_LOCAL_MACHINE\\A\\B]\n\"x\"=dword:1\n[-HKEY_LOCAL_MACHINE\\a]\n\"ignored\"="
      "dword:1\n"
      "[HKEY_LOCAL_MACHINE\\A\\C]\n\"y\"=dword:2\n");
  EXPECT_TRUE(file.problems().empty());
  EXPECT_FALSE(file.HasKey(Key({u"A", u"B"})));
  EXPECT_EQ(Number(file, Key({u"A", u"C"}), u"y"), 2);
  EXPECT_EQ(Number(file, Key({u"A", u"C"}), u"ignored"), -1);
}

TEST(RegistryFile, AnEditChangesItsEntryAndNothingElse) {
  const RegistryKeyPath config = Key({u"software", u"velmora", u"btconfig"});
  std::string expected = kSample;
  expected.replace(expected.find("\"Number\"=dword:0000000a"), 23, "\"number\"=dword:00000005");
  EXPECT_EQ(RegistryFile(kSample).WithValue(config, u"number", Dword(5)), expected);
}

TEST(RegistryFile, ANewValueGoesToTheEndOfItsSection) {
  const std::string bytes = RegistryFile(kSample).WithValue(
      Key({u"Software", u"Velmora", u"BTConfig"}), u"Gone", Dword(7));
  std::string expected = kSample;
  expected.insert(expected.find("\r\n[HKEY_CURRENT"), "\"Gone\"=dword:00000007\r\n");
  EXPECT_EQ(bytes, expected);
  EXPECT_EQ(Number(RegistryFile(bytes), Key({u"Software", u"Velmora", u"BTConfig"}), u"Gone"), 7);
}

TEST(RegistryFile, ANewKeyKeepsTheSpellingOfTheNamesAboveIt) {
  const std::string bytes =
      RegistryFile(kSample).WithKey(Key({u"SOFTWARE", u"velmora", u"BTConfig", u"New"}));
  EXPECT_EQ(bytes, std::string(kSample) +
                       "\r\n[HKEY_LOCAL_MACHINE\\Software\\Velmora\\BTConfig\\New]\r\n");
}

TEST(RegistryFile, AValueOfAKeyWithoutASectionGetsOne) {
  const std::string bytes = RegistryFile(kSample).WithValue(Key({u"software"}), u"v", Dword(1));
  EXPECT_EQ(bytes, std::string(kSample) +
                       "\r\n[HKEY_LOCAL_MACHINE\\Software]\r\n\"v\"=dword:00000001\r\n");
}

TEST(RegistryFile, AnEmptyFileGetsTheHeader) {
  EXPECT_EQ(
      RegistryFile().WithValue(Key({u"A"}), u"v", Dword(1)),
      "Windows Registry Editor Version 5.00\n\n[HKEY_LOCAL_MACHINE\\A]\n\"v\"=dword:00000001\n");
}

TEST(RegistryFile, AFileWithoutALineEndAtItsEndIsContinuedCleanly) {
  const std::string text = "REGEDIT4\r\n[HKEY_LOCAL_MACHINE\\A]\r\n\"v\"=dword:00000001";
  EXPECT_EQ(RegistryFile(text).WithValue(Key({u"A"}), u"w", Dword(2)),
            text + "\r\n\"w\"=dword:00000002");
  EXPECT_EQ(RegistryFile(text).WithKey(Key({u"B"})), text + "\r\n\r\n[HKEY_LOCAL_MACHINE\\B]\r\n");
}

TEST(RegistryFile, KeepsTheEncoding) {
  const std::u16string before =
      u"REGEDIT4\r\n[HKEY_LOCAL_MACHINE\\Ger\u00E4t]\r\n\"\U0001F600\"=dword:00000001\r\n";
  const std::u16string after =
      u"REGEDIT4\r\n[HKEY_LOCAL_MACHINE\\Ger\u00E4t]\r\n\"\U0001F600\"=dword:00000002\r\n";
  const RegistryKeyPath path = Key({u"GER\u00C4T"});
  for (const bool little : {true, false}) {
    EXPECT_EQ(RegistryFile(Utf16(before, little)).WithValue(path, u"\U0001F600", Dword(2)),
              Utf16(after, little));
  }
  const std::string utf8 =
      "REGEDIT4\n[HKEY_LOCAL_MACHINE\\Ger\xC3\xA4t]\n\"\xF0\x9F\x98\x80\"=dword:0000000";
  for (const std::string mark : {"", "\xEF\xBB\xBF"}) {
    EXPECT_EQ(RegistryFile(mark + utf8 + "1\n").WithValue(path, u"\U0001F600", Dword(2)),
              mark + utf8 + "2\n");
  }
}

TEST(RegistryFile, DamagedLinesAreReportedSkippedAndKept) {
  const std::string damaged =
      "REGEDIT4\n"                   // 1
      "\"early\"=dword:1\n"          // 2: in no key, nothing to report
      "[HKEY_LOCAL_MACHINE\\A]\n"    // 3
      "\"bad\"=dword:xyz\n"          // 4
      "garbage\n"                    // 5
      "\"latin\"=\"M\xFCller\"\n"    // 6
      "\"open\"=\"text\n"            // 7
      "\"good\"=dword:00000001\n"    // 8
      "\"hex\"=hex:01,\\\n"          // 9
      "  zz\n"                       // 10
      "; comment \xFF is fine\n"     // 11
      "[HKEY_LOCAL_MACHINE\\B\n"     // 12
      "\"below\"=dword:1\n"          // 13: not the key's before
      "[HKEY_NOBODY\\B]\n"           // 14
      "[HKEY_LOCAL_MACHINE\\\\B]\n"  // 15
      "[-HKEY_LOCAL_MACHINE]\n"      // 16
      "[HKEY_LOCAL_MACHINE\\C]\n"    // 17
      "\"v\"=dword:00000003\n";      // 18
  const RegistryFile file(damaged);
  std::vector<std::uint32_t> lines;
  for (const RegistryFileProblem& problem : file.problems()) {
    lines.push_back(problem.line);
    EXPECT_FALSE(problem.reason.empty());
  }
  EXPECT_EQ(lines, (std::vector<std::uint32_t>{4, 5, 6, 7, 9, 10, 12, 14, 15, 16}));
  EXPECT_EQ(Number(file, Key({u"A"}), u"good"), 1);
  EXPECT_EQ(Number(file, Key({u"A"}), u"below"), -1);
  EXPECT_EQ(Number(file, Key({u"C"}), u"v"), 3);
  std::string expected = damaged;
  expected.replace(expected.rfind("3\n"), 1, "4");
  EXPECT_EQ(file.WithValue(Key({u"C"}), u"v", Dword(4)), expected);
}

TEST(RegistryFile, AMissingHeaderIsReportedAndTheRestIsRead) {
  const RegistryFile file("\n[HKEY_LOCAL_MACHINE\\A]\n\"v\"=dword:1\n");
  ASSERT_EQ(file.problems().size(), 1U);
  EXPECT_EQ(file.problems()[0].line, 2U);
  EXPECT_EQ(Number(file, Key({u"A"}), u"v"), 1);
}

TEST(RegistryFile, EmptyAndBlankFilesAreEmptyRegistries) {
  for (const std::string text : {"", "\n", "\xEF\xBB\xBF", "\xFF\xFE", "  \r\n; only a comment"}) {
    const RegistryFile file(text);
    EXPECT_TRUE(file.problems().empty());
    EXPECT_FALSE(file.HasKey(Key({u"A"})));
    EXPECT_TRUE(file.HasKey(Key({})));
  }
}

TEST(RegistryFile, HalfACharacterAtTheEndIsReportedAndKept) {
  const std::string bytes = Utf16(u"REGEDIT4\n", true) + "x";
  const RegistryFile file(bytes);
  ASSERT_EQ(file.problems().size(), 1U);
  EXPECT_EQ(file.WithKey(Key({u"A"})), Utf16(u"REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\A]\n", true) + "x");
}

TEST(RegistryFile, CommentsMayFollowAKeyAndNamesMayHoldBrackets) {
  const RegistryFile file("REGEDIT4\n[HKEY_LOCAL_MACHINE\\a]b] ; see [c]\n\"v\"=dword:1\n");
  EXPECT_EQ(Number(file, Key({u"a]b"}), u"v"), 1);
}

TEST(RegistryFile, ReportsABoundedNumberOfProblems) {
  std::string text = "REGEDIT4\n";
  for (int i = 0; i < 5000; ++i) text += "x\n";
  EXPECT_EQ(RegistryFile(text).problems().size(), kMaxRegistryProblems + 1);
}

TEST(RegistryFile, UnterminatedTextsCostLinearTime) {
  std::string text = "REGEDIT4\n[HKEY_LOCAL_MACHINE\\A]\n";
  for (int i = 0; i < 200000; ++i) text += "\"a\"=\"b\n\n";
  text += std::string(1000000, '\n');
  const RegistryFile file(text);
  EXPECT_EQ(file.problems().size(), kMaxRegistryProblems + 1);
}

// Whatever the file holds, an edit reads back and disturbs no other value.
TEST(RegistryFile, EditsOfDamagedFilesReadBack) {
  const std::string pieces[] = {"[HKEY_LOCAL_MACHINE\\A]",
                                "[-HKEY_LOCAL_MACHINE\\A]",
                                "[HKEY_LOCAL_MACHINE\\A\\B]",
                                "\"v\"=dword:1",
                                "\"v\"=-",
                                "\"w\"=\"x",
                                "\"w\"=\"x\"",
                                "\"h\"=hex:01,\\",
                                "  02,03",
                                "02,\\",
                                "\n",
                                "\r\n",
                                "\r",
                                "\"",
                                "\\",
                                "@=",
                                "@=\"y\"",
                                "; c",
                                "[",
                                "]",
                                "\xFF",
                                " ",
                                std::string(1, '\0'),
                                "REGEDIT4"};
  std::mt19937 random(42);
  const RegistryKeyPath a = Key({u"A"});
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    for (std::size_t count = random() % 20; count > 0; --count)
      text += pieces[random() % std::size(pieces)];
    const RegistryFile before(text);
    const RegistryFile after(before.WithValue(a, u"V", Dword(200)));
    ASSERT_EQ(Number(after, a, u"v"), 200) << text;
    ASSERT_EQ(Number(after, a, u"w"), Number(before, a, u"w")) << text;
    ASSERT_EQ(Number(after, a, u"h"), Number(before, a, u"h")) << text;
    ASSERT_EQ(Number(after, Key({u"A", u"B"}), u"v"), Number(before, Key({u"A", u"B"}), u"v"))
        << text;
    ASSERT_TRUE(RegistryFile(before.WithKey(Key({u"N"}))).HasKey(Key({u"N"}))) << text;
  }
}

TEST(RegistryFile, RandomBytesAreReadInEveryEncoding) {
  std::mt19937 random(7);
  for (int round = 0; round < 5000; ++round) {
    std::string bytes(random() % 100, ' ');
    for (char& byte : bytes) byte = static_cast<char>(random() % 256);
    for (const std::string mark : {"", "\xEF\xBB\xBF", "\xFF\xFE", "\xFE\xFF"}) {
      const RegistryFile file(mark + bytes);
      const std::string changed = file.WithKey(Key({u"K"}));
      ASSERT_TRUE(changed.starts_with(mark + bytes.substr(0, bytes.size() / 2 * 2)));
      ASSERT_TRUE(RegistryFile(changed).HasKey(Key({u"K"})));
    }
  }
}

}  // namespace
}  // namespace tamu::platform
