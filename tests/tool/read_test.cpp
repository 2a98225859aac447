// "tamu read", and the command line in general.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "tool/program.h"

namespace tamu::tool {
namespace {

using Json = nlohmann::json;

std::vector<Json> ParseLines(const std::string& text) {
  std::vector<Json> objects;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) objects.push_back(Json::parse(line));
  return objects;
}

// Bytes without a pattern, the same in every run and on every machine.
std::string Garbage(std::size_t size) {
  std::string bytes;
  std::uint32_t state = 12345;
  while (bytes.size() < size) {
    state = state * 1664525U + 1013904223U;
    bytes.push_back(static_cast<char>(state >> 24));
  }
  return bytes;
}

TEST(CommandLine, HelpNamesEveryCommandAndGivesExamples) {
  const Program program;
  for (const char* const command : {"", "read", "check", "rewrite", "rrule", "delete", "find",
                                    "import", "update", "config", "log", "code"}) {
    std::vector<std::string> arguments;
    if (*command != '\0') arguments.emplace_back(command);
    arguments.emplace_back("--help");

    const ProgramResult result = program.Run(arguments);

    EXPECT_EQ(result.exit_code, 0) << command;
    EXPECT_NE(result.out.find("Examples:"), std::string::npos) << command;
    EXPECT_NE(result.out.find("tamu " + std::string(command)), std::string::npos) << command;
    EXPECT_EQ(result.err, "") << command;
  }
}

TEST(CommandLine, VersionIsPrinted) {
  const ProgramResult result = Program().Run({"--version"});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_TRUE(result.out.starts_with("tamu ")) << result.out;
}

TEST(CommandLine, WrongUseEndsWithTwoAndAHint) {
  const Program program;
  const std::vector<std::vector<std::string>> mistakes = {{},
                                                          {"frobnicate"},
                                                          {"read"},
                                                          {"read", "--jsn", "a"},
                                                          {"rewrite", "a"},
                                                          {"rrule"},
                                                          {"code", "x"},
                                                          {"code", "4294967296"},
                                                          {"rewrite", "a", "b", "c"}};
  for (const auto& arguments : mistakes) {
    const ProgramResult result = program.Run(arguments);
    const std::string what = arguments.empty() ? "nothing" : arguments.back();
    EXPECT_EQ(result.exit_code, 2) << what;
    EXPECT_TRUE(result.err.starts_with("tamu: ")) << what;
    EXPECT_NE(result.err.find(" --help'"), std::string::npos) << what;
    EXPECT_EQ(result.out, "") << what;
  }
}

TEST(CommandLine, UnknownCommandIsNamed) {
  const ProgramResult result = Program().Run({"frobnicate"});
  EXPECT_NE(result.err.find("'frobnicate'"), std::string::npos);
  for (const char* const command : {"read", "check", "rewrite", "rrule", "code"}) {
    EXPECT_NE(result.err.find(command), std::string::npos) << result.err;
  }
}

TEST(Read, FullDeviceAsStandardOutputIsAnError) {
  Program program;
  program.Write("a.vcf", Card("A"));
  program.SetOutput("/dev/full");
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{"read", "a.vcf"}, {"--help"}, {"code", "1"}}) {
    const ProgramResult result = program.Run(arguments);
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_NE(result.err.find("standard output: writing failed"), std::string::npos) << result.err;
  }
}

TEST(Read, UnreadableFileIsAnErrorWithItsName) {
  Program program;
  program.Write("secret.vcf", Card("A"));
  ASSERT_EQ(::chmod(program.Path("secret.vcf").c_str(), 0), 0);
  if (::geteuid() == 0) program.DropPrivileges();

  const ProgramResult result = program.Run({"read", "secret.vcf"});

  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "tamu: secret.vcf: cannot open it: Permission denied\n");
}

TEST(Read, ReadErrorIsToldAndNotTakenForABrokenCard) {
  const ProgramResult result = Program().Run({"read", "/proc/self/mem"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_NE(result.err.find("reading failed here: Input or output error"), std::string::npos)
      << result.err;
}

TEST(Read, FileNameThatIsNotUtf8IsReadAndShownEscaped) {
  Program program;
  program.Write("caf\xE9.vcf", Card("A") + "junk\r\n");

  const ProgramResult text = program.Run({"read", "caf\xE9.vcf"});
  const ProgramResult json = program.Run({"read", "--json", "caf\xE9.vcf"});

  EXPECT_EQ(text.exit_code, 0);
  EXPECT_TRUE(text.err.starts_with("caf\\xe9.vcf:5: warning: ")) << text.err;
  EXPECT_EQ(ParseLines(json.out).at(0)["file"], "caf\xEF\xBF\xBD.vcf");
}

TEST(Read, StyleIsForTerminalsThatWantIt) {
  Program program;
  program.Write("a.vcf", Card("A"));
  const auto is_styled = [](const std::string& text) {
    return text.find('\x1b') != std::string::npos;
  };
  EXPECT_FALSE(is_styled(program.Run({"read", "a.vcf"}).out));
  EXPECT_TRUE(is_styled(program.RunOnTerminal({"read", "a.vcf"})));
  program.Set("NO_COLOR", "1");
  EXPECT_FALSE(is_styled(program.RunOnTerminal({"read", "a.vcf"})));
  program.Set("NO_COLOR", "");
  EXPECT_TRUE(is_styled(program.RunOnTerminal({"read", "a.vcf"})));
  program.Set("TERM", "dumb");
  EXPECT_FALSE(is_styled(program.RunOnTerminal({"read", "a.vcf"})));
}

TEST(Read, WarningsFollowTheirObjectOnATerminal) {
  Program program;
  program.Set("NO_COLOR", "1");
  program.Write("a.vcf", Card("First\r\nX-FOO:1") + Card("Second"));
  const std::string shown = program.RunOnTerminal({"read", "a.vcf"});
  const std::size_t warning = shown.find("a.vcf:4: warning");
  EXPECT_LT(shown.find("First"), warning) << shown;
  EXPECT_LT(warning, shown.find("Second")) << shown;
}

TEST(Read, PipeWithoutReaderEndsItWithoutAWord) {
  Program program;
  std::string cards;
  for (int i = 0; i < 2000; ++i) cards += Card("Name " + std::to_string(i));
  program.Write("a.vcf", cards);
  program.SetOutputWithoutReader();
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{"read", "a.vcf"}, {"rewrite", "a.vcf", "-"}}) {
    const ProgramResult result = program.Run(arguments);
    EXPECT_EQ(result.exit_code, 1) << arguments.front();
    EXPECT_EQ(result.err, "") << arguments.front();
  }
}

TEST(Read, DamagedSettingsAreToldOnce) {
  Program program;
  program.Set("TAMU_HOME", program.folder());
  program.Write("registry.reg", "Windows Registry Editor Version 5.00\r\n\r\nnonsense\r\n");
  program.Write("a.vcf", Card("A") + Card("B"));

  const ProgramResult result = program.Run({"read", "a.vcf", "a.vcf"});

  EXPECT_EQ(result.exit_code, 0);
  const std::string where = "registry.reg:3: warning: ";
  const std::size_t first = result.err.find(where);
  ASSERT_NE(first, std::string::npos) << result.err;
  EXPECT_EQ(result.err.find(where, first + 1), std::string::npos) << result.err;
}

TEST(Read, UnknownDefaultCharsetIsToldWithoutALine) {
  Program program;
  program.Set("TAMU_HOME", program.folder());
  program.Write("registry.reg",
                "Windows Registry Editor Version 5.00\r\n\r\n"
                "[HKEY_LOCAL_MACHINE\\Software\\Velmora\\BTConfig\\General]\r\n"
                "\"DefaultInputCharset\"=\"FOO\"\r\n");
  program.Write("a.vcf", Card("A"));

  const ProgramResult result = program.Run({"read", "a.vcf"});

  EXPECT_EQ(result.err,
            "tamu: warning: DefaultInputCharset names the unknown character set 'FOO'; the native "
            "code page is used\n");
}

TEST(Read, NativeCodePageBearsOnTextButNotOnValues) {
  Program program;
  program.Set("TAMU_HOME", program.folder());
  program.Write("registry.reg",
                "Windows Registry Editor Version 5.00\r\n\r\n"
                "[HKEY_LOCAL_MACHINE\\Software\\Velmora\\BTConfig\\General]\r\n"
                "\"DefaultInputCharset\"=\"NATIVE\"\r\n\"AnsiCodePage\"=\"1251\"\r\n");
  program.Write("a.vcf", Card("\xC8\xF0\xE0"));

  const std::vector<Json> objects = ParseLines(program.Run({"read", "--json", "a.vcf"}).out);

  const Json& property = objects.at(0)["properties"][0];
  EXPECT_EQ(property["codePage"], 1251);
  EXPECT_EQ(property["text"][0], "\xD0\x98\xD1\x80\xD0\xB0");
  EXPECT_EQ(property["values"][0], "\xC3\x88\xC3\xB0\xC3\xA0");
}

TEST(ReadJson, BinaryGarbageInValuesIsValidJsonWithEveryByte) {
  Program program;
  std::string value;
  for (const char byte : Garbage(100000)) {
    if (byte != '\0' && byte != '\r' && byte != '\n' && byte != ';' && byte != '\\' && byte != '=')
      value.push_back(byte);
  }
  program.Write("a.vcf",
                Card(value) + Card("X\r\nFN;CHARSET=UTF-7:+2AA-\r\nNOTE;CHARSET=UTF-8:" + value));

  const std::vector<Json> objects = ParseLines(program.Run({"read", "--json", "a.vcf"}).out);

  ASSERT_EQ(objects.size(), 2U);
  std::string bytes;
  const std::string raw = objects[0]["properties"][0]["values"][0];
  for (std::size_t i = 0; i < raw.size(); ++i) {
    const auto lead = static_cast<unsigned char>(raw[i]);
    bytes.push_back(lead < 0x80 ? raw[i] : static_cast<char>((lead & 3) << 6 | (raw[++i] & 0x3F)));
  }
  EXPECT_EQ(bytes, value);
}

TEST(ReadJson, GarbageAsAFileNeverCrashes) {
  Program program;
  for (const std::size_t size : {1U, 100U, 5000U, 200000U}) {
    program.Write("a.vcf", "BEGIN:VCARD\r\nVERSION:2.1\r\nN:A\r\n" + Garbage(size));
    const ProgramResult result = program.Run({"read", "--json", "a.vcf"});
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_NE(result.err.find("tamu: a.vcf:1: "), std::string::npos);
  }
}

// A fenced block of the manual.
struct Block {
  std::string language;
  std::string text;
};

std::vector<Block> BlocksOf(const std::string& manual) {
  std::vector<Block> blocks;
  for (std::size_t place = 0; (place = manual.find("```", place)) != std::string::npos;) {
    const std::size_t text = manual.find('\n', place) + 1;
    const std::size_t end = manual.find("```", text);
    blocks.push_back({manual.substr(place + 3, text - place - 4), manual.substr(text, end - text)});
    place = end + 3;
  }
  return blocks;
}

struct Example {
  const char* language;
  std::vector<std::string> arguments;  // the last one is the file, or for "rrule" added
};

// Every example is a block of input and behind it a block of JSON.
TEST(ReadJson, DocumentedExamplesAreWhatTheProgramPrints) {
  const std::vector<Example> examples = {
      {"vcard", {"read", "--json", "contacts.vcf"}},
      {"vcalendar", {"read", "--json", "agenda.vcs"}},
      {"vnote", {"read", "--json", "shopping.vnt"}},
      {"vmessage", {"read", "--json", "hello.vmg"}},
      {"rrule", {"rrule", "--json"}},
  };
  const std::vector<Block> blocks = BlocksOf(ReadFileBytes(TAMU_DOCS "/json.md"));
  for (const Example& example : examples) {
    std::size_t found = 0;
    for (std::size_t i = 0; i + 1 < blocks.size(); ++i) {
      if (blocks[i].language != example.language) continue;
      ++found;
      const Program program;
      std::vector<std::string> arguments = example.arguments;
      if (arguments.size() == 2) {
        arguments.push_back(blocks[i].text.substr(0, blocks[i].text.find('\n')));
      } else {
        program.Write(arguments.back(), blocks[i].text);
      }

      const ProgramResult result = program.Run(arguments);

      ASSERT_EQ(result.exit_code, 0) << result.err;
      ASSERT_EQ(blocks[i + 1].language, "json") << example.language;
      EXPECT_EQ(Json::parse(result.out), Json::parse(blocks[i + 1].text)) << result.out;
    }
    EXPECT_GE(found, 1U) << "no example for " << example.language;
  }
}

std::string MessageWithAttachment() {
  return "BEGIN:VMSG\r\nVERSION:1.1\r\nBEGIN:VENV\r\nBEGIN:VBODY\r\nSubject:Minutes\r\n"
         "Content-Type:text/plain; name=minutes.txt\r\n\r\n1234\r\nEND:VBODY\r\nEND:VENV\r\n"
         "END:VMSG\r\n";
}

TEST(Read, AttachmentsLeaveNoTemporaryFileBehind) {
  Program program;
  ASSERT_EQ(::mkdir(program.Path("tmp").c_str(), 0777), 0);
  program.Set("TMPDIR", program.Path("tmp"));
  program.Write("a.vmg", MessageWithAttachment() + MessageWithAttachment());

  const ProgramResult result = program.Run({"read", "a.vmg"});

  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_NE(result.out.find("minutes.txt, text/plain, 6 bytes"), std::string::npos) << result.out;
  EXPECT_EQ(::rmdir(program.Path("tmp").c_str()), 0) << "something is left in it";
}

TEST(Read, AttachmentWithoutRoomForATemporaryFileIsToldAndTheRestRead) {
  Program program;
  program.Set("TMPDIR", program.Path("missing"));
  program.Write("a.vmg", MessageWithAttachment() + MessageWithAttachment());

  const ProgramResult result = program.Run({"read", "a.vmg"});

  EXPECT_EQ(result.exit_code, 0);
  EXPECT_NE(result.err.find("a.vmg:8: warning: no temporary file could be made"), std::string::npos)
      << result.err;
  EXPECT_NE(result.out.find("minutes.txt, text/plain (its content was not kept)"),
            std::string::npos)
      << result.out;
}

TEST(Read, CalendarsAndMessagesFromAPipeAreRead) {
  Program program;
  const std::string event =
      "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nBEGIN:VEVENT\r\nDESCRIPTION:\r\n"
      "DTSTART:20040105\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n";
  for (const std::string& objects : {event + event, MessageWithAttachment()}) {
    program.SetInput(objects);
    const ProgramResult result = program.Run({"read", "-"});
    EXPECT_EQ(result.exit_code, 0) << result.err;
    EXPECT_EQ(result.err, "");
  }
}

TEST(Read, GarbageInEveryFormatNeverCrashes) {
  Program program;
  const std::vector<std::string> beginnings = {
      "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nBEGIN:VEVENT\r\n", "BEGIN:VNOTE\r\nVERSION:1.1\r\n",
      "BEGIN:VMSG\r\nVERSION:1.1\r\n",
      "BEGIN:VMSG\r\nVERSION:1.1\r\nBEGIN:VENV\r\nBEGIN:VBODY\r\n\r\n"};
  for (const std::string& beginning : beginnings) {
    program.Write("a", beginning + Garbage(100000));
    const ProgramResult result = program.Run({"read", "a"});
    EXPECT_EQ(result.exit_code, 1) << beginning;
    EXPECT_NE(result.err.find("tamu: a:"), std::string::npos) << result.err;
  }
}

TEST(Read, LongLineAndDeepNestingAreRead) {
  Program program;
  std::string nested = "BEGIN:VCARD\r\nVERSION:2.1\r\nN:Deep\r\n";
  for (int i = 0; i < 20000; ++i) nested += "BEGIN:X\r\n";
  for (int i = 0; i < 20000; ++i) nested += "END:X\r\n";
  program.Write("a.vcf",
                nested + "END:VCARD\r\n" + Card("Long\r\nNOTE:" + std::string(5000000, 'x')));

  const ProgramResult result = program.Run({"read", "--json", "a.vcf"});

  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(ParseLines(result.out).size(), 2U);
}

}  // namespace
}  // namespace tamu::tool
