#include "text/logical_line.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/memory.h"
#include "platform/files.h"
#include "support/log_capture.h"
#include "support/scratch_folder.h"

namespace tamu {
namespace {

using testing::LogCapture;
using testing::ScratchFolder;

class LogicalLines : public ::testing::Test {
 protected:
  void Open(const std::string& content) {
    ASSERT_EQ(FILE_Open(folder_.Put("lines", content).c_str(), u"rb", &file_), 0U);
  }
  // All lines up to and with the one that meets the end.
  std::vector<std::string> All(const std::string& content) {
    Open(content);
    std::vector<std::string> lines;
    while (!file_.AtEnd()) lines.emplace_back(FileLine(&file_).get());
    file_.Close();
    return lines;
  }
  using Lines = std::vector<std::string>;

  ScratchFolder folder_;
  File file_;
};

TEST_F(LogicalLines, EachLineEndKindEndsALine) {
  EXPECT_EQ(All("one\ntwo\r\nthree\n"), (Lines{"one", "two", "three"}));
}

TEST_F(LogicalLines, AFoldedLineIsJoinedWithOneBlank) {
  EXPECT_EQ(All("NOTE:abc\r\n\tdef\r\nN:x\r\n"), (Lines{"NOTE:abc def", "N:x"}));
  EXPECT_EQ(All("a\n  b\n"), (Lines{"a  b"}));
}

TEST_F(LogicalLines, ASoftLineBreakIsJoinedWithNothing) {
  EXPECT_EQ(All("NOTE;ENCODING=QUOTED-PRINTABLE:ab=\r\ncd\r\n"),
            (Lines{"NOTE;ENCODING=QUOTED-PRINTABLE:abcd"}));
  EXPECT_EQ(All("ab=\n cd\nx"), (Lines{"ab cd", "x"}));
}

// Base64 padding is joined too. Kept on purpose.
TEST_F(LogicalLines, AnEqualsSignJoinsAnyPhysicalLine) {
  EXPECT_EQ(All("PHOTO;BASE64:AAA=\r\nTEL:1\r\n"), (Lines{"PHOTO;BASE64:AAATEL:1"}));
}

TEST_F(LogicalLines, OfTwoEqualsSignsTheSecondBreaksNothing) {
  EXPECT_EQ(All("AA==\r\nTEL:1\r\n"), (Lines{"AA==", "TEL:1"}));
  EXPECT_EQ(All("A===\r\nTEL:1\r\n"), (Lines{"A==TEL:1"}));
}

TEST_F(LogicalLines, AnEqualsSignTakesTheNextCharacterAlong) {
  EXPECT_EQ(All("a=3D=\nb\n"), (Lines{"a=3Db"}));
}

TEST_F(LogicalLines, AnEmptyLineIsAnEmptyText) {
  Open("\r\nN:x\r\n");
  EXPECT_STREQ(FileLine(&file_).get(), "");
  EXPECT_FALSE(file_.AtEnd());
  EXPECT_STREQ(FileLine(&file_).get(), "N:x");
}

TEST_F(LogicalLines, TheEndOfTheFileIsAnEmptyTextAndNeverNull) {
  Open("N:x");
  EXPECT_STREQ(FileLine(&file_).get(), "N:x");
  EXPECT_TRUE(file_.AtEnd());
  for (int i = 0; i < 3; ++i) EXPECT_STREQ(FileLine(&file_).get(), "");
  EXPECT_TRUE(file_.AtEnd());
}

TEST_F(LogicalLines, AnEmptyFileIsAtItsEndAfterOneRead) {
  Open("");
  EXPECT_FALSE(file_.AtEnd());
  EXPECT_STREQ(FileLine(&file_).get(), "");
  EXPECT_TRUE(file_.AtEnd());
}

TEST_F(LogicalLines, TheLineEndOfTheLastLineMeetsTheEnd) {
  Open("a\r\nb\r\n");
  EXPECT_STREQ(FileLine(&file_).get(), "a");
  EXPECT_FALSE(file_.AtEnd());
  EXPECT_STREQ(FileLine(&file_).get(), "b");
  EXPECT_TRUE(file_.AtEnd());
}

TEST_F(LogicalLines, AnEmptyLineBeforeAnIndentedOneFoldsAway) {
  EXPECT_EQ(All("\n x\n"), (Lines{" x"}));
}

// The character after a carriage return is taken for its line feed, whatever it is. Kept on
// purpose.
TEST_F(LogicalLines, ACarriageReturnTakesTheNextCharacterAlong) {
  EXPECT_EQ(All("ab\rXcd\ne"), (Lines{"ab", "cd", "e"}));
  EXPECT_EQ(All("ab\rX cd\ne"), (Lines{"ab cd", "e"}));
  EXPECT_EQ(All("ab=\rXcd\n"), (Lines{"abcd"}));
  EXPECT_EQ(All("ab\r\r\ncd\n"), (Lines{"ab", "", "cd"}));
  EXPECT_EQ(All("ab\r"), (Lines{"ab"}));
}

TEST_F(LogicalLines, AFileThatEndsInAnEqualsSignLosesIt) {
  EXPECT_EQ(All("ab="), (Lines{"ab"}));
  EXPECT_EQ(All("ab=\r\n"), (Lines{"ab"}));
  EXPECT_EQ(All("="), (Lines{""}));
  EXPECT_EQ(All("ab=="), (Lines{"ab=="}));
}

TEST_F(LogicalLines, ANulCutsTheLine) {
  EXPECT_EQ(All(std::string("ab\0cd\nef\n", 9)), (Lines{"ab", "ef"}));
  Open(std::string("ab\0cd\n", 6));
  EXPECT_EQ(FileLine(&file_).get()[3], '\0');
}

TEST_F(LogicalLines, ThePositionBehindTheTerminatorIsReadableAndEmpty) {
  Open("NAME");
  const MemPtr<char> line = FileLine(&file_);
  EXPECT_EQ(line.get()[4], '\0');
  EXPECT_EQ(line.get()[5], '\0');
}

TEST_F(LogicalLines, LinesLongerThanTheWindowAreWhole) {
  const std::string text(200000, 'x');
  EXPECT_EQ(All("a\r\n" + text + "=\r\n" + text + "\r\n\ty\r\nb\r\n"),
            (Lines{"a", text + text + " y", "b"}));
}

TEST_F(LogicalLines, EveryPlaceOfTheWindowsEdgeReadsAlike) {
  constexpr std::size_t kWindow = 64 * 1024 - 64;
  for (std::size_t fill = kWindow - 8; fill <= kWindow + 2; ++fill) {
    const std::string first(fill, 'x');
    EXPECT_EQ(All(first + "=\r\nq\r\n z\r\nlast\r\n"), (Lines{first + "q z", "last"})) << fill;
  }
}

TEST_F(LogicalLines, PhysicalLinesAreCounted) {
  Open("a\r\n b\r\nc=\r\nd\r\n\r\ne\r\n");
  const std::vector<std::uint32_t> expected = {1, 3, 5, 6};
  for (const std::uint32_t line : expected) {
    EXPECT_EQ(file_.Tell().line, line);
    static_cast<void>(FileLine(&file_));
  }
}

TEST_F(LogicalLines, ALineCostsNoSystemCall) {
  std::string content;
  for (int i = 0; i < 10000; ++i) content += "TEL;HOME:" + std::to_string(i) + "\r\n";
  Open(content);
  platform::ReadFile.ResetCount();
  platform::SetFilePointerEx.ResetCount();
  int lines = 0;
  while (!file_.AtEnd()) lines += FileLine(&file_) ? 1 : 0;
  EXPECT_EQ(lines, 10000);
  EXPECT_LE(platform::ReadFile.calls(), content.size() / 30000 + 2);
  EXPECT_EQ(platform::SetFilePointerEx.calls(), 0U);
}

TEST_F(LogicalLines, WithoutMemoryTheLineIsNullLoggedAndPassedOver) {
  Open("first line\r\n more\r\nsecond\r\n");
  const LogCapture log;
  MEM_FailNth(1);
  EXPECT_EQ(FileLine(&file_), nullptr);
  MEM_FailNth(0);
  EXPECT_EQ(log.texts(),
            std::vector<std::string>{"TAMU:  Memory allocation of 20 bytes failed in 'FileLine'"});
  EXPECT_EQ(file_.Tell().line, 3U);
  EXPECT_STREQ(FileLine(&file_).get(), "second");
}

TEST_F(LogicalLines, ALineThatNoWindowHoldsIsPassedOver) {
  Open("N:" + std::string(300000, 'x') + "\r\nsecond\r\n");
  MEM_FailNth(1);
  EXPECT_EQ(FileLine(&file_), nullptr);
  MEM_FailNth(0);
  EXPECT_STREQ(FileLine(&file_).get(), "second");
}

TEST_F(LogicalLines, WhatIsPassedOverIsTheWholeLogicalLine) {
  const std::string folded =
      "N:" + std::string(70000, 'x') + "=\r\nTEL:1\r\n TEL:2=\nTEL:3\rxlast\r\n";
  Open(folded);
  MEM_FailNth(1);
  EXPECT_EQ(FileLine(&file_), nullptr);
  MEM_FailNth(0);
  EXPECT_STREQ(FileLine(&file_).get(), "last");
}

// Bytes that reading looks at, as calls of the system cannot show it: none is looked at more than a
// few times, whatever ends the lines. Measured by what it would cost otherwise: each of these took
// minutes.
TEST_F(LogicalLines, LongFilesOfOddLineEndsAreReadInOnePass) {
  const auto repeated = [](const std::string& piece, std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) text += piece;
    return text;
  };
  EXPECT_EQ(All(repeated("TEL:1\rx", 600000)).size(), 600000U);
  EXPECT_EQ(All(repeated("A==\n", 600000)).size(), 600000U);
  EXPECT_EQ(All("A:\n " + repeated("A\rx ", 600000) + "\n").size(), 1U);
  EXPECT_EQ(All(repeated("=", 1000000) + "\nx").size(), 2U);
}

TEST_F(LogicalLines, ReadingEndsAlsoWhenNoMemoryIsLeftForGood) {
  Open("a\r\nb\r\n" + std::string(200000, 'x'));
  MEM_FailNth(1, true);
  int lines = 0;
  while (!file_.AtEnd() && lines < 100) lines += FileLine(&file_) ? 0 : 1;
  MEM_FailNth(0);
  EXPECT_LT(lines, 10);
}

}  // namespace
}  // namespace tamu
