#include "formats/vcard_reader.h"

#include <gtest/gtest.h>

#include <string>

#include "core/memory.h"
#include "core/records.h"
#include "formats/shared_record.h"
#include "platform/bstr.h"
#include "support/card_reading.h"
#include "support/log_capture.h"

namespace tamu {
namespace {

using testing::Card;
using testing::GoodCard;
using testing::LogCapture;
using testing::ReadContent;
using testing::Reading;
using testing::ScratchFolder;
using testing::Texts;
using testing::TextsOf;

constexpr const char* kMissing =
    "TAMU:  Error - vCard missing END tago or does not contain required VERSION or N properties";

std::string UnknownProperty(const std::string& name) {
  return "TAMU:  Warning - Parser encountered unknown property: '" + name + "'";
}

// Reads and checks that nothing is left.
class VcardReadObjects : public ::testing::Test {
 protected:
  Reading Read(const std::string& content) {
    const std::size_t blocks = MEM_LiveBlocks();
    const std::int64_t strings = platform::SysLiveStrings();
    Reading reading = ReadContent(content);
    EXPECT_EQ(MEM_LiveBlocks(), blocks);
    EXPECT_EQ(platform::SysLiveStrings(), strings);
    for (const std::uint8_t byte : SHARED_Record()->bytes) {
      if (byte != 0) {
        ADD_FAILURE() << "the shared record is not clear";
        break;
      }
    }
    return reading;
  }
};
using VcardReadOne = VcardReadObjects;

TEST_F(VcardReadObjects, EveryGoodCardIsDelivered) {
  const Reading reading = Read(GoodCard("X-IRMC-LUID:0001\r\n") + GoodCard());
  EXPECT_EQ(reading.result, TAMU_OK);
  ASSERT_EQ(reading.objects.size(), 2U);
  EXPECT_EQ(reading.objects[0].kind, KIND_CONTACT);
  EXPECT_EQ(reading.objects[0].status, TAMU_PARSE_OK);
  EXPECT_EQ(reading.objects[0].luid, "0001");
  EXPECT_EQ(reading.objects[0].version, "2.1");
  EXPECT_EQ(reading.objects[1].luid, "");
}

// One card's warning is every later card's too. Kept on purpose.
TEST_F(VcardReadObjects, AWarningSticksToLaterCards) {
  const Reading reading = Read(GoodCard() + GoodCard("X-FOO:1\r\n") + GoodCard());
  ASSERT_EQ(reading.objects.size(), 3U);
  EXPECT_EQ(reading.objects[0].status, TAMU_PARSE_OK);
  EXPECT_EQ(reading.objects[1].status, TAMU_PARSE_WARNING);
  EXPECT_EQ(reading.objects[2].status, TAMU_PARSE_WARNING);
  EXPECT_EQ(reading.result, TAMU_OK);
}

TEST_F(VcardReadObjects, WhatFollowsTheLastCardEndsTheFileQuietly) {
  for (const char* rest : {"\r\n", "some text\r\n", "begin:vcard\r\n", "\r\n\r\nBEGIN:VCARD\r\n"}) {
    const LogCapture log;
    const Reading reading = Read(GoodCard() + rest + GoodCard());
    EXPECT_EQ(reading.result, TAMU_OK) << rest;
    EXPECT_EQ(reading.objects.size(), 1U) << rest;
    EXPECT_TRUE(log.lines().empty()) << rest;
  }
}

TEST_F(VcardReadObjects, OnlyTheNameOfALaterBeginIsLookedAt) {
  EXPECT_EQ(Read(GoodCard() + "BEGIN:WHATEVER\r\nVERSION:2.1\r\nN:a\r\nEND:X\r\n").objects.size(),
            2U);
  EXPECT_EQ(Read(GoodCard() + "BEGIN;X=Y:VCARD\r\nVERSION:2.1\r\nN:a\r\nEND:X\r\n").objects.size(),
            2U);
}

TEST_F(VcardReadObjects, AFirstLineThatIsNotBeginIsAnError) {
  const LogCapture log;
  EXPECT_EQ(Read("X-BEGIN:VCARD\r\nVERSION:2.1\r\n").result, TAMU_PARSE_ERROR);
  EXPECT_EQ(log.texts(),
            std::vector<std::string>{"TAMU:  Error - vCard does not have a BEGIN tag"});
}

TEST_F(VcardReadObjects, AnErrorEndsTheFileAndEarlierCardsStayDelivered) {
  const Reading reading = Read(GoodCard() + Card("VERSION:2.1\r\n") + GoodCard());
  EXPECT_EQ(reading.result, TAMU_PARSE_ERROR);
  EXPECT_EQ(reading.objects.size(), 1U);
}

TEST_F(VcardReadObjects, AtTheEndOfTheFileThereIsNothingToRead) {
  const ScratchFolder folder;
  File file;
  ASSERT_EQ(FILE_Open(folder.Put("a", "").c_str(), u"rb", &file), 0U);
  EXPECT_EQ(file.GetChar(), -1);
  EXPECT_EQ(VCARD_ReadObjects(&file, nullptr, nullptr), TAMU_PARSE_ERROR);
}

TEST_F(VcardReadOne, ACardWithoutNIsAnError) {
  const LogCapture log;
  const Reading reading = Read(Card("VERSION:2.1\r\nFN:Jo\r\n"));
  EXPECT_EQ(reading.result, TAMU_PARSE_ERROR);
  EXPECT_TRUE(reading.objects.empty());
  EXPECT_EQ(log.texts(), std::vector<std::string>{kMissing});
  EXPECT_EQ(log.lines()[0].severity, LogSeverity::kError);
}

TEST_F(VcardReadOne, ACardWithoutVersionIsAnError) {
  const LogCapture log;
  EXPECT_EQ(Read(Card("N:a\r\n")).result, TAMU_PARSE_ERROR);
  EXPECT_TRUE(log.Has(kMissing));
}

TEST_F(VcardReadOne, ACardWithoutEndIsAnError) {
  const LogCapture log;
  const Reading reading = Read("BEGIN:VCARD\r\nVERSION:2.1\r\nN:a\r\nTEL:1\r\n");
  EXPECT_EQ(reading.result, TAMU_PARSE_ERROR);
  EXPECT_TRUE(reading.objects.empty());
  EXPECT_EQ(log.texts(), std::vector<std::string>{kMissing});
}

TEST_F(VcardReadOne, AVersionAbove21EndsTheCardAtOnce) {
  const LogCapture log;
  const Reading reading = Read(Card("N:a\r\nVERSION:3.0\r\nX-FOO:1\r\n") + GoodCard());
  EXPECT_EQ(reading.result, TAMU_PARSE_ERROR);
  EXPECT_TRUE(reading.objects.empty());
  EXPECT_EQ(log.texts(),
            std::vector<std::string>{"TAMU:  Error - vCard version '3.0' is not supported"});
}

// The card counts as ended, but what it has to contain is asked for all the same.
TEST_F(VcardReadOne, AnUnsupportedVersionBeforeNIsToldTwice) {
  const LogCapture log;
  EXPECT_EQ(Read(Card("VERSION:3.0\r\nN:a\r\n")).result, TAMU_PARSE_ERROR);
  EXPECT_EQ(log.texts(), (std::vector<std::string>{
                             "TAMU:  Error - vCard version '3.0' is not supported", kMissing}));
}

TEST_F(VcardReadOne, OlderVersionsAreSupported) {
  for (const char* version : {"2.1", "2.0", "1.0", "0.1", " 2.1"}) {
    EXPECT_EQ(Read(Card(std::string("VERSION:") + version + "\r\nN:a\r\n")).objects.size(), 1U)
        << version;
  }
  for (const char* version : {"", "abc", "0", "4.0", "2.11"}) {
    EXPECT_EQ(Read(Card(std::string("VERSION:") + version + "\r\nN:a\r\n")).objects.size(), 0U)
        << version;
  }
}

TEST_F(VcardReadOne, PropertiesStandInAnyOrder) {
  EXPECT_EQ(Read(Card("TEL:1\r\nN:a\r\nVERSION:2.1\r\n")).objects.size(), 1U);
}

TEST_F(VcardReadOne, RepeatedPropertiesAreAllKeptInOrder) {
  const Reading reading = Read(GoodCard("TEL;HOME:123\r\nTEL;WORK:456\r\nN:Second;Name\r\n"));
  ASSERT_EQ(reading.objects.size(), 1U);
  EXPECT_EQ(reading.objects[0].tel_params, (std::vector<Texts>{{"HOME"}, {"WORK"}}));
  EXPECT_EQ(reading.objects[0].tel_values, (std::vector<Texts>{{"123"}, {"456"}}));
  EXPECT_EQ(reading.objects[0].n_values, (std::vector<Texts>{{"Doe", "Jo"}, {"Second", "Name"}}));
}

TEST_F(VcardReadOne, NamesAreCaseSensitive) {
  const LogCapture log;
  const Reading reading = Read(GoodCard("tel:123\r\n"));
  EXPECT_EQ(reading.objects.at(0).status, TAMU_PARSE_WARNING);
  EXPECT_TRUE(reading.objects[0].tel_values.empty());
  EXPECT_EQ(log.texts(), std::vector<std::string>{UnknownProperty("tel")});
  EXPECT_EQ(log.lines()[0].severity, LogSeverity::kInformation);
  EXPECT_EQ(log.lines()[0].source_line, 4U);
}

TEST_F(VcardReadOne, OnlyLeadingBlanksOfNamesAndParametersAreRemoved) {
  const LogCapture log;
  const Reading reading = Read(GoodCard("X=\r\n  TEL; HOME:1\r\nTEL :2\r\n"));
  // The first line is joined to the second by its "=", so its name begins with "X".
  EXPECT_EQ(log.texts(),
            (std::vector<std::string>{UnknownProperty("X  TEL"), UnknownProperty("TEL ")}));
  const Reading trimmed =
      Read("BEGIN:VCARD\r\nVERSION:2.1\r\nN:a\r\nTEL; \tHOME;WORK:1\r\nEND:VCARD\r\n");
  EXPECT_EQ(trimmed.objects.at(0).tel_params, (std::vector<Texts>{{"HOME", "WORK"}}));
}

TEST_F(VcardReadOne, ABlankLineIsAWarning) {
  const LogCapture log;
  const Reading reading = Read(GoodCard("\r\nTEL:1\r\n"));
  EXPECT_EQ(reading.objects.at(0).status, TAMU_PARSE_WARNING);
  EXPECT_EQ(reading.objects[0].tel_values.size(), 1U);
  EXPECT_EQ(log.texts(),
            std::vector<std::string>{"TAMU:  Warning - Parser encounted a blank line in vCard"});
  EXPECT_EQ(log.lines()[0].severity, LogSeverity::kError);
}

TEST_F(VcardReadOne, ANestedObjectIsSkippedAndItsUnknownLinesWarn) {
  const LogCapture log;
  const Reading reading = Read(GoodCard(
      "BEGIN:AGENT\r\nTEL:9\r\nVERSION:9.9\r\nX-IRMC-LUID:9\r\nX-BAR:1\r\nEND:AGENT\r\nTEL:1\r\n"));
  ASSERT_EQ(reading.objects.size(), 1U);
  EXPECT_EQ(reading.objects[0].tel_values, (std::vector<Texts>{{"1"}}));
  EXPECT_EQ(reading.objects[0].luid, "");
  EXPECT_EQ(reading.objects[0].version, "2.1");
  EXPECT_EQ(reading.objects[0].status, TAMU_PARSE_WARNING);
  EXPECT_EQ(log.texts(), std::vector<std::string>{UnknownProperty("X-BAR")});
}

// What a nested object has satisfies the requirement, although nothing of it is kept. Kept on
// purpose.
TEST_F(VcardReadOne, VersionAndNInsideANestedObjectCountAsSeen) {
  const Reading reading = Read(Card("BEGIN:X\r\nVERSION:2.1\r\nN:a\r\nEND:X\r\nTEL:1\r\n"));
  ASSERT_EQ(reading.objects.size(), 1U);
  EXPECT_EQ(reading.objects[0].version, "");
  EXPECT_TRUE(reading.objects[0].n_values.empty());
}

TEST_F(VcardReadOne, EndMatchesBeginByDepthWhateverItsValue) {
  EXPECT_EQ(Read("BEGIN:VCARD\r\nVERSION:2.1\r\nN:a\r\nEND:NOTHING\r\n").objects.size(), 1U);
}

TEST_F(VcardReadOne, ComponentsBeyondAPropertysLimitAreDropped) {
  const Reading reading = Read(Card("VERSION:2.1\r\nN:1;2;3;4;5;6;7\r\nTEL:1;2\r\n"));
  EXPECT_EQ(reading.objects.at(0).n_values, (std::vector<Texts>{{"1", "2", "3", "4", "5"}}));
  EXPECT_EQ(reading.objects[0].tel_values, (std::vector<Texts>{{"1"}}));
}

TEST_F(VcardReadOne, TheLuidKeeps511Characters) {
  const Reading reading = Read(GoodCard("X-IRMC-LUID:" + std::string(600, 'x') + "\r\n"));
  EXPECT_EQ(reading.objects.at(0).luid, std::string(511, 'x'));
}

uint32_t CheckVersionField(ObjectKind, ObjectRecord* record, TamuResult, void* user) {
  *static_cast<bool*>(user) =
      record->contact.unused[0] == 0 && record->event.component == 0 &&
      std::string(record->contact.version, 25) == "2.1" + std::string(22, '0');
  return 0;
}

TEST_F(VcardReadOne, AVersionOf25CharactersFillsItsFieldAndNothingElse) {
  const ScratchFolder folder;
  bool good = false;
  const std::u16string path =
      folder.Put("a", Card("VERSION:2.1" + std::string(40, '0') + "\r\nN:a\r\n"));
  EXPECT_EQ(TAMU_ReadObjects(testing::PathPointer(path), &CheckVersionField, &good), TAMU_OK);
  EXPECT_TRUE(good);
}

TEST_F(VcardReadOne, ALongNameOrParameterIsCut) {
  const LogCapture log;
  const std::string long_name(60, 'X');
  const Reading reading =
      Read(GoodCard(long_name + ":1\r\nTEL;" + std::string(200, 'P') + ":1\r\n"));
  EXPECT_EQ(log.texts(), std::vector<std::string>{UnknownProperty(std::string(51, 'X'))});
  EXPECT_EQ(reading.objects.at(0).tel_params, (std::vector<Texts>{{std::string(127, 'P')}}));
}

TEST_F(VcardReadOne, NothingBehindANulIsTakenForAValue) {
  const Reading reading = Read(GoodCard(std::string("TEL\0hidden\r\nNOTE;HOME\0:x;y\r\n", 28)));
  EXPECT_EQ(reading.objects.at(0).tel_values, (std::vector<Texts>{{""}}));
  EXPECT_EQ(reading.objects[0].note_values, (std::vector<Texts>{{""}}));
}

TEST_F(VcardReadOne, ALineWithoutAColonHasAnEmptyValue) {
  const Reading reading = Read(GoodCard("TEL\r\nTEL;HOME\r\n"));
  EXPECT_EQ(reading.objects.at(0).tel_values, (std::vector<Texts>{{""}, {""}}));
}

TEST_F(VcardReadOne, AQuotedPrintableValueOfSeveralLinesIsOneValue) {
  const Reading reading =
      Read(GoodCard("NOTE;ENCODING=QUOTED-PRINTABLE:one=0D=0A=\r\n  two=0D=0A=\r\nthree\r\n"));
  EXPECT_EQ(reading.objects.at(0).note_values, (std::vector<Texts>{{"one=0D=0A  two=0D=0Athree"}}));
}

TEST_F(VcardReadOne, AHundredThousandNestedObjectsAreSkipped) {
  std::string nested;
  for (int i = 0; i < 100000; ++i) nested += "BEGIN:X\r\n";
  EXPECT_EQ(Read(GoodCard(nested)).result, TAMU_PARSE_ERROR);
  for (int i = 0; i < 100000; ++i) nested += "END:X\r\n";
  EXPECT_EQ(Read(GoodCard(nested)).objects.size(), 1U);
}

TEST_F(VcardReadOne, ManyPropertiesOfAKindCostNoWalking) {
  std::string lines;
  for (int i = 0; i < 20000; ++i) lines += "TEL:1\r\n";
  const std::uint64_t before = g_list_steps;
  EXPECT_EQ(Read(GoodCard(lines)).objects.at(0).tel_values.size(), 20000U);
  EXPECT_EQ(g_list_steps, before);
}

TEST_F(VcardReadOne, AValueOfAMillionSemicolonsCostsNoWalking) {
  const std::uint64_t before = g_list_steps;
  EXPECT_EQ(Read(GoodCard("ADR:" + std::string(1000000, ';') + "\r\n")).objects.size(), 1U);
  EXPECT_EQ(g_list_steps, before);
}

TEST_F(VcardReadOne, BinaryGarbageIsAWarningOrAnErrorAndLeavesNothing) {
  std::string garbage;
  for (int i = 0; i < 5000; ++i) garbage += static_cast<char>(i * 7919 >> 3);
  const Reading reading = Read(GoodCard(garbage + "\r\n"));
  EXPECT_TRUE(reading.result == TAMU_OK || reading.result == TAMU_PARSE_ERROR);
}

TEST_F(VcardReadOne, TruncationAnywhereIsAnErrorAndLeavesNothing) {
  const std::string card = GoodCard("TEL;HOME:1\r\nNOTE;QUOTED-PRINTABLE:a=0D=0A=\r\nb\r\n");
  for (std::size_t length = 13; length + 2 < card.size(); ++length) {
    const Reading reading = Read(card.substr(0, length));
    // "END" and "END:" end the card as well: its value is not looked at.
    const bool ended = length >= card.size() - 8;
    EXPECT_EQ(reading.result, ended ? TamuResult{TAMU_OK} : TamuResult{TAMU_PARSE_ERROR}) << length;
  }
}

TEST_F(VcardReadObjects, WhenAnyAllocationFailsNothingIsLeftAndReadingEnds) {
  const std::string content = GoodCard("TEL;HOME;CHARSET=UTF-8:1;2\r\nX-FOO:1\r\n") + GoodCard();
  for (const bool and_after : {false, true}) {
    for (std::uint64_t n = 1;; ++n) {
      ASSERT_LT(n, 200U);
      MEM_FailNth(n, and_after);
      const Reading reading = Read(content);
      const bool struck = MEM_FailureStruck();
      MEM_FailNth(0);
      if (!struck) {
        EXPECT_EQ(reading.objects.size(), 2U);
        break;
      }
      EXPECT_LE(reading.objects.size(), 2U);
    }
  }
}

TEST_F(VcardReadObjects, TheResultIsTheOneKeptWhenTextEndsTheFile) {
  const auto read = [](const std::string& content) {
    const ScratchFolder folder;
    File file;
    EXPECT_EQ(FILE_Open(folder.Put("a", content).c_str(), u"rb", &file), 0U);
    return VCARD_ReadObjects(&file, nullptr, nullptr);
  };
  EXPECT_EQ(read(GoodCard() + "text\r\n"), TAMU_PARSE_OK);
  EXPECT_EQ(read(GoodCard("X-FOO:1\r\n") + GoodCard() + "text\r\n"), TAMU_PARSE_WARNING);
}

TEST_F(VcardReadObjects, NoMemoryForTheWorkBuffersGives11AndNoCallback) {
  const std::string content = GoodCard();
  // The window comes first, then the loop's two buffers, the BEGIN line, and the card's own two.
  for (const std::uint64_t n : {2U, 3U, 5U, 6U}) {
    const LogCapture log;
    MEM_FailNth(n);
    const Reading reading = Read(content);
    MEM_FailNth(0);
    EXPECT_EQ(reading.result, TAMU_OUT_OF_MEMORY) << n;
    EXPECT_TRUE(reading.objects.empty()) << n;
    EXPECT_EQ(log.texts(), std::vector<std::string>{"TAMU:  Error - Memory allocation error"});
  }
}

TEST_F(VcardReadObjects, AFileThatCannotBeReadOnIsAnErrorAndLeavesNothing) {
  const std::string content = GoodCard() + GoodCard("NOTE:" + std::string(200000, 'x') + "\r\n");
  const platform::ScopedFailure failure(platform::ReadFile, 2, 31);
  const Reading reading = Read(content);
  EXPECT_EQ(reading.result, TAMU_PARSE_ERROR);
  EXPECT_EQ(reading.objects.size(), 1U);
}

uint32_t NoteBeginLine(ObjectKind, ObjectRecord*, TamuResult, void* user) {
  static_cast<std::vector<std::uint32_t>*>(user)->push_back(SHARED_BeginLine());
  return 0;
}

TEST_F(VcardReadObjects, TheLineOnWhichACardBeginsIsKnown) {
  const ScratchFolder folder;
  const std::u16string path = folder.Put("a", GoodCard("NOTE:a\r\n b\r\n") + GoodCard());
  std::vector<std::uint32_t> lines;
  TAMU_ReadObjects(testing::PathPointer(path), &NoteBeginLine, &lines);
  EXPECT_EQ(lines, (std::vector<std::uint32_t>{1, 7}));
}

}  // namespace
}  // namespace tamu
