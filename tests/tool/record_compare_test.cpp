// Comparing records by what they say.
#include "store/record_compare.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/memory.h"
#include "core/records.h"
#include "platform/paths.h"
#include "tamu/tamu.h"
#include "text/property.h"
#include "text/tokens.h"
#include "tool/program.h"

namespace tamu::tool {
namespace {

using Texts = std::vector<std::string>;

// The canonical form of the first object of a file.
CanonicalForm FormOf(const std::string& bytes, RecordState state = RecordState::kWritten) {
  const Program folder;
  folder.Write("file", bytes);
  struct Result {
    CanonicalForm form;
    RecordState state;
  } result{{}, state};
  const auto take = [](ObjectKind kind, ObjectRecord* record, TamuResult, void* user) {
    auto* const into = static_cast<Result*>(user);
    into->form = RECORD_Canonical(kind, record, into->state);
    return 0U;
  };
  const std::u16string path = platform::PathFromNative(folder.Path("file"));
  EXPECT_EQ(TAMU_ReadObjects(path.c_str(), take, &result), TAMU_OK);
  return result.form;
}

CanonicalForm CardForm(const std::string& lines) {
  return FormOf("BEGIN:VCARD\r\nVERSION:2.1\r\nN:A\r\n" + lines + "END:VCARD\r\n");
}

TEST(RecordDifferences, EqualRecordsHaveNone) {
  const std::string lines = "FN:Anna\r\nTEL;HOME:1\r\nTEL;WORK:2\r\nNOTE:x\r\n";
  EXPECT_EQ(RECORD_Differences(CardForm(lines), CardForm(lines)), Texts());
}

TEST(RecordDifferences, AParameterTextWithASemicolonEqualsTwo) {
  ObjectRecord record = {{0}};
  STR_CopyField(record.contact.version, "2.1");
  Property* const name = PROP_Append(&record.contact.prop_n);
  PROP_SetValue(name, MEM_CopyText("A"), 0);
  Property* const phone = PROP_Append(&record.contact.prop_tel);
  PROP_AddParam(phone, "HOME;VOICE");
  PROP_SetValue(phone, MEM_CopyText("1"), 0);
  EXPECT_EQ(RECORD_Differences(RECORD_Canonical(KIND_CONTACT, &record, RecordState::kFetched),
                               CardForm("TEL;HOME;VOICE:1\r\n")),
            Texts());
  RECORD_Free(KIND_CONTACT, &record);
}

TEST(RecordDifferences, EmptyComponentsAtTheEndAndEmptyPropertiesDoNotCount) {
  EXPECT_EQ(
      RECORD_Differences(CardForm("ADR:;;Street\r\n"), CardForm("ADR:;;Street;;;;\r\nX-CAT:\r\n")),
      Texts());
  EXPECT_NE(RECORD_Differences(CardForm("ADR:;;Street\r\n"), CardForm("ADR:;Street\r\n")), Texts());
}

TEST(RecordDifferences, TheEncodingOfATextCountsByItsParametersAlone) {
  EXPECT_EQ(RECORD_Differences(CardForm("NOTE;ENCODING=QUOTED-PRINTABLE:a=62\r\n"),
                               CardForm("NOTE;ENCODING=QUOTED-PRINTABLE:ab\r\n")),
            Texts());
  EXPECT_EQ(RECORD_Differences(CardForm("NOTE:ab\r\n"),
                               CardForm("NOTE;ENCODING=QUOTED-PRINTABLE:ab\r\n")),
            Texts{"NOTE came back with the parameters 'ENCODING=QUOTED-PRINTABLE' instead of ''"});
}

TEST(RecordDifferences, ChangedMissingAndAdditionalPropertiesAreNamed) {
  EXPECT_EQ(
      RECORD_Differences(CardForm("FN:Anna\r\nTEL:1\r\nTEL:2\r\n"),
                         CardForm("FN:Bert\r\nTEL:1\r\nURL:u\r\n")),
      (Texts{"FN 'Anna' came back as 'Bert'", "TEL '2' is missing", "URL 'u' came in addition"}));
}

TEST(RecordDifferences, ADifferenceBehindTheShownStartIsTold) {
  const std::string start(100, 'x');
  const Texts texts =
      RECORD_Differences(CardForm("NOTE:" + start + "1\r\n"), CardForm("NOTE:" + start + "2\r\n"));
  ASSERT_EQ(texts.size(), 1U);
  EXPECT_TRUE(texts[0].ends_with("...' came back different behind its start")) << texts[0];
}

TEST(RecordDifferences, TheOrderOfAPropertysValuesCounts) {
  EXPECT_EQ(
      RECORD_Differences(CardForm("TEL:1\r\nTEL:2\r\n"), CardForm("TEL:2\r\nTEL:1\r\n")).size(),
      2U);
  EXPECT_EQ(RECORD_Differences(CardForm("TEL:1\r\nFN:a\r\n"), CardForm("FN:a\r\nTEL:1\r\n")),
            Texts());
}

std::string MessageText(const std::string& headers, const std::string& body) {
  return "BEGIN:VMSG\r\nVERSION:1.1\r\nX-IRMC-STATUS:READ\r\nX-IRMC-TYPE:INET\r\n"
         "X-BT-FOLDER:INBOX\r\nBEGIN:VENV\r\nBEGIN:VBODY\r\n" +
         headers + "\r\n" + body + "END:VBODY\r\nEND:VENV\r\nEND:VMSG\r\n";
}

TEST(RecordDifferences, AWrittenMessagesLastLineEndIsTheWritersOwn) {
  const CanonicalForm written = FormOf(MessageText("From:a\r\n", "one\r\ntwo\r\n"));
  const CanonicalForm fetched =
      FormOf(MessageText("From:a\r\n", "one\r\ntwo\r\n"), RecordState::kFetched);
  EXPECT_EQ(RECORD_Differences(fetched, written).size(), 1U);
  const CanonicalForm longer = FormOf(MessageText("From:a\r\n", "one\r\ntwo\r\n\r\n"));
  EXPECT_EQ(RECORD_Differences(fetched, longer), Texts());
}

TEST(RecordDifferences, HeadersAndTheTextOfMessagesAreNamed) {
  EXPECT_EQ(RECORD_Differences(FormOf(MessageText("From:a\r\nSubject:s\r\n", "one\r\n")),
                               FormOf(MessageText("From:b\r\n", "two\r\n"))),
            (Texts{"From 'a' came back as 'b'", "Subject 's' is missing",
                   "the text 'one' came back as 'two'"}));
}

TEST(RecordDifferences, AnotherKindIsTold) {
  const CanonicalForm note = FormOf("BEGIN:VNOTE\r\nVERSION:1.1\r\nBODY:x\r\nEND:VNOTE\r\n");
  EXPECT_EQ(RECORD_Differences(note, CardForm("")).front(),
            "it came back as another kind of object");
}

}  // namespace
}  // namespace tamu::tool
