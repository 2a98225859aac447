#include "pimstore/notes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <span>

#include "device/ink/ink_control.h"
#include "device/ink/ink_decoder.h"
#include "pimstore/find.h"
#include "pimstore/store_session.h"
#include "platform/rich_ink.h"

namespace tamu {
namespace {

using testing::LogCapture;
using testing::Note;
using N = NoteShape;
using Strings = std::vector<std::string>;

std::u16string Clean(const std::u16string& title, std::size_t capacity = kNoteTitleLength) {
  std::u16string clean(capacity + 1, u'#');
  NOTE_CleanTitle(title.c_str(), clean.data(), capacity);
  EXPECT_EQ(clean[capacity], u'#') << "written beyond the capacity";
  return clean.c_str();
}

TEST(NoteCleanTitle, LeavesOutWhatNoFileNameTakes) {
  EXPECT_EQ(Clean(u"a/b:c?"), u"abc");
  EXPECT_EQ(Clean(u"\\/:*?<>|\""), u"");
  EXPECT_EQ(Clean(u""), u"");
  EXPECT_EQ(Clean(u"a.b,c;d'e(f) -_+=!"), u"a.b,c;d'e(f) -_+=!");
}

TEST(NoteCleanTitle, LeavesOutControlsAndKeepsTheSpace) {
  EXPECT_EQ(Clean(u"a\tb\nc\rd e\u007F\u0085\u200E"), u"abcd e");
}

TEST(NoteCleanTitle, KeepsPrintableCharactersOfAllScripts) {
  EXPECT_EQ(Clean(u"Grüße, Жук 日本語 한글 😀\u00A0𠀀"), u"Grüße, Жук 日本語 한글 😀\u00A0𠀀");
}

TEST(NoteCleanTitle, LeavesOutHalvesOfPairs) {
  EXPECT_EQ(Clean(u"a\xD83D"
                  u"b\xDE00"
                  u"c\xD83D"),
            u"abc");
}

TEST(NoteCleanTitle, CutsAfter259) {
  EXPECT_EQ(Clean(std::u16string(300, u'x')), std::u16string(259, u'x'));
  EXPECT_EQ(Clean(std::u16string(300, u'?') + std::u16string(259, u'x')),
            std::u16string(259, u'x'));
}

TEST(NoteCleanTitle, DoesNotCutAPair) {
  EXPECT_EQ(Clean(std::u16string(258, u'x') + u"😀y"), std::u16string(258, u'x'));
  EXPECT_EQ(Clean(std::u16string(257, u'x') + u"😀y"), std::u16string(257, u'x') + u"😀");
  EXPECT_EQ(Clean(u"abc", 3), u"ab");
  EXPECT_EQ(Clean(u"abc", 1), u"");
}

TEST(NoteCleanTitle, DoesNothingForANullText) {
  char16_t dest[3] = u"ab";
  NOTE_CleanTitle(nullptr, dest, 3);
  EXPECT_EQ(dest[0], u'a');
  NOTE_CleanTitle(u"x", dest, 0);
  EXPECT_EQ(dest[0], u'a');
  NOTE_CleanTitle(u"x", nullptr, 3);
}

class NoteTest : public testing::SessionTest {
 protected:
  NoteTest() : controls_(device::INK_LiveControls()) {}
  ~NoteTest() override { EXPECT_EQ(device::INK_LiveControls(), controls_ + left_controls_); }

  [[nodiscard]] std::filesystem::path Documents() const { return home().path() / "Documents"; }
  // The text of a note's file.
  [[nodiscard]] std::u16string TextOf(const std::string& name) const {
    const std::string file = home().Get("Documents/" + name);
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(file.data());
    const device::InkText text = device::INK_Decode({bytes, file.size()});
    EXPECT_EQ(text.source, device::InkSource::kDocument);
    EXPECT_FALSE(text.damaged);
    return text.text;
  }
  [[nodiscard]] Strings Files() const {
    Strings names;
    if (!std::filesystem::exists(Documents())) return names;
    for (const auto& entry : std::filesystem::directory_iterator(Documents())) {
      names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }
  // The control stays for a file that does not open.
  void ExpectLeftControl() { ++left_controls_; }

 private:
  int controls_;
  int left_controls_ = 0;
};
using PutNoteTest = NoteTest;
using NoteOperationsTest = NoteTest;

TEST_F(NoteTest, ThePathIsTheCleanTitleInTheDocumentsFolder) {
  const std::u16string documents = Documents().u16string();
  EXPECT_EQ(NOTE_PathFromTitle(u"a/b:c?").data(), documents + u"/abc.pwi");
  EXPECT_EQ(NOTE_PathFromTitle(u"???").data(), documents + u"/.pwi");
  EXPECT_EQ(NOTE_PathFromTitle(nullptr).data(), documents + u"/.pwi");
  EXPECT_EQ(NOTE_PathFromTitle(std::u16string(300, u'x').c_str()).data(),
            documents + u"/" + std::u16string(259, u'x') + u".pwi");
}

TEST_F(NoteTest, WithoutAFolderThereIsNoPath) {
  const platform::ScopedFailure failure(platform::SHGetSpecialFolderPathW);
  EXPECT_EQ(NOTE_PathFromTitle(u"a")[0], u'\0');
}

TEST_F(PutNoteTest, TheFileHoldsTheText) {
  Note note;
  note.With(&N::prop_summary, "Title")
      .With(&N::prop_body, "One=0D=0ATwo=C3=A4", "CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE");
  const LogCapture log;
  pol_PutNote(note.shape());
  EXPECT_EQ(Files(), Strings{"Title.pwi"});
  EXPECT_EQ(TextOf("Title.pwi"), u"One\r\nTwoä");
  EXPECT_EQ(log.texts(), Strings{});
}

TEST_F(PutNoteTest, ALongTextIsServedInPieces) {
  std::string body;
  for (int i = 0; i < 5000; ++i) body += std::to_string(i) + (i % 20 == 19 ? "=0D=0A" : " ");
  Note note;
  note.With(&N::prop_summary, "Long").With(&N::prop_body, body.c_str());
  pol_PutNote(note.shape());
  std::u16string expected;
  for (int i = 0; i < 5000; ++i) {
    for (const char digit : std::to_string(i)) expected += static_cast<char16_t>(digit);
    expected += i % 20 == 19 ? u"\r\n" : u" ";
  }
  EXPECT_EQ(TextOf("Long.pwi"), expected);
}

TEST_F(PutNoteTest, AnExistingFileIsReplaced) {
  Note first;
  first.With(&N::prop_summary, "Title").With(&N::prop_body, std::string(9000, 'x').c_str());
  pol_PutNote(first.shape());
  Note second;
  second.With(&N::prop_summary, "Title").With(&N::prop_body, "short");
  pol_PutNote(second.shape());
  EXPECT_EQ(Files(), Strings{"Title.pwi"});
  EXPECT_EQ(TextOf("Title.pwi"), u"short");
}

TEST_F(PutNoteTest, ANoteWithoutABodyIsAnEmptyDocument) {
  Note note;
  note.With(&N::prop_summary, "Title");
  pol_PutNote(note.shape());
  EXPECT_EQ(TextOf("Title.pwi"), u"");
  EXPECT_NE(home().Get("Documents/Title.pwi"), "");
}

TEST_F(PutNoteTest, WithoutAControlNothingIsWritten) {
  Note note;
  note.With(&N::prop_summary, "Title").With(&N::prop_body, "Text");
  const LogCapture log;
  const platform::ScopedFailure failure(platform::CreateWindowExW);
  pol_PutNote(note.shape());
  EXPECT_EQ(Files(), Strings{});
  ASSERT_EQ(log.texts(), Strings{"TAMU:  Unable to create RICHINK control"});
  EXPECT_EQ(log.lines()[0].severity, LogSeverity::kError);
}

TEST_F(PutNoteTest, AFileThatDoesNotOpenIsLoggedAndTheControlLeftKeptOnPurpose) {
  Note note;
  note.With(&N::prop_summary, "Title").With(&N::prop_body, "Text");
  const LogCapture log;
  const platform::ScopedFailure failure(platform::CreateFileW);
  pol_PutNote(note.shape());
  ExpectLeftControl();
  ASSERT_EQ(log.texts(), Strings{"TAMU:  pol_PutNote Error - Unable to create file '" +
                                 (Documents() / "Title.pwi").string() + "'"});
  EXPECT_EQ(log.lines()[0].severity, LogSeverity::kError);
}

TEST_F(PutNoteTest, EveryFailureElseIsSilentAndReleasesTheControl) {
  Note note;
  note.With(&N::prop_summary, "Title").With(&N::prop_body, "Text");
  for (platform::ServiceBase* service :
       {static_cast<platform::ServiceBase*>(&platform::SendMessageW),
        static_cast<platform::ServiceBase*>(&platform::WriteFile),
        static_cast<platform::ServiceBase*>(&platform::CloseHandle)}) {
    for (std::uint64_t n = 1; n <= 2; ++n) {
      const LogCapture log;
      const platform::ScopedFailure failure(*service, n);
      pol_PutNote(note.shape());
      EXPECT_EQ(log.texts(), Strings{}) << service->name();
    }
  }
}

TEST_F(NoteOperationsTest, AddingReportsAnEmptyIdKeptOnPurpose) {
  Note note;
  note.With(&N::prop_summary, "Title").With(&N::prop_body, "Text");
  char id[16] = "before";
  const LogCapture log;
  EXPECT_EQ(POL_AddObject(KIND_NOTE, note.get(), id), TAMU_OK);
  EXPECT_STREQ(id, "");
  EXPECT_EQ(log.texts(), Strings{"TAMU:  POL_AddObject()"});
  EXPECT_EQ(Files(), Strings{"Title.pwi"});
  EXPECT_EQ(POL_AddObject(KIND_NOTE, note.get(), nullptr), TAMU_OK);
}

TEST_F(NoteOperationsTest, AddingWithoutATitleGives10AndWritesNothing) {
  for (const bool empty : {true, false}) {
    Note note;
    note.With(&N::prop_body, "Text");
    if (empty) note.With(&N::prop_summary, "");
    char id[16] = "before";
    EXPECT_EQ(POL_AddObject(KIND_NOTE, note.get(), id), TAMU_MISSING_FIELD);
    EXPECT_STREQ(id, "");
    EXPECT_EQ(POL_ModifyObject(KIND_NOTE, "Title", note.get()), TAMU_MISSING_FIELD);
  }
  EXPECT_EQ(Files(), Strings{});
}

TEST_F(NoteOperationsTest, AddingIsASuccessWhateverBecameOfTheFile) {
  Note note;
  note.With(&N::prop_summary, "Title");
  const platform::ScopedFailure failure(platform::CreateWindowExW);
  EXPECT_EQ(POL_AddObject(KIND_NOTE, note.get(), nullptr), TAMU_OK);
  EXPECT_EQ(Files(), Strings{});
}

TEST_F(NoteOperationsTest, ModifyingMovesTheNoteToItsNewTitle) {
  Note note;
  note.With(&N::prop_summary, "Old").With(&N::prop_body, "old");
  ASSERT_EQ(POL_AddObject(KIND_NOTE, note.get(), nullptr), TAMU_OK);
  Note changed;
  changed.With(&N::prop_summary, "New").With(&N::prop_body, "new");
  EXPECT_EQ(POL_ModifyObject(KIND_NOTE, "O?ld", changed.get()), TAMU_OK) << "the id is cleaned";
  EXPECT_EQ(Files(), Strings{"New.pwi"});
  EXPECT_EQ(TextOf("New.pwi"), u"new");
  EXPECT_EQ(POL_ModifyObject(KIND_NOTE, "gone", changed.get()), TAMU_OK);
  EXPECT_EQ(POL_ModifyObject(KIND_NOTE, nullptr, changed.get()), TAMU_INVALID_ID);
}

TEST_F(NoteOperationsTest, IdsAreInTheAnsiCodePageBothWays) {
  Note note;
  note.With(&N::prop_summary, "Gr=C3=BC=C3=9Fe", "CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE");
  ASSERT_EQ(POL_AddObject(KIND_NOTE, note.get(), nullptr), TAMU_OK);
  char id[16] = "";
  EXPECT_EQ(POL_FindObject(KIND_NOTE, note.get(), id, 0), 1U);
  EXPECT_STREQ(id,
               "Gr\xFC\xDF"
               "e")
      << "in the code page 1252";
  Note changed;
  changed.With(&N::prop_summary, "New");
  EXPECT_EQ(POL_ModifyObject(KIND_NOTE, id, changed.get()), TAMU_OK);
  EXPECT_EQ(Files(), Strings{"New.pwi"});
}

TEST_F(NoteOperationsTest, ATitleThatNoFileSystemTakesIsFoundAgain) {
  std::string title;
  for (int i = 0; i < 300; ++i) title += "=E6=97=A5";
  Note note;
  note.With(&N::prop_summary, title.c_str(), "CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE");
  ASSERT_EQ(POL_AddObject(KIND_NOTE, note.get(), nullptr), TAMU_OK);
  EXPECT_EQ(Files().size(), 1U);
  EXPECT_EQ(POL_FindObject(KIND_NOTE, note.get(), nullptr, 0), 1U);
}

TEST_F(NoteOperationsTest, FetchingGives16KeptOnPurpose) {
  ObjectRecord record{};
  EXPECT_EQ(POL_GetObjectById(KIND_NOTE, "Title", &record), TAMU_UNSUPPORTED_TYPE);
  EXPECT_EQ(POL_GetObjectById(KIND_NOTE, nullptr, &record), TAMU_INVALID_ID);
}

TEST_F(NoteOperationsTest, FindingReportsTheTitleOfANoteThatIsThere) {
  Note note;
  note.With(&N::prop_summary, "a/b").With(&N::prop_body, "Text");
  char id[16] = "before";
  EXPECT_EQ(POL_FindObject(KIND_NOTE, note.get(), id, 0), 0U);
  EXPECT_STREQ(id, "before");
  ASSERT_EQ(POL_AddObject(KIND_NOTE, note.get(), nullptr), TAMU_OK);
  EXPECT_EQ(POL_FindObject(KIND_NOTE, note.get(), id, 0), 1U);
  EXPECT_STREQ(id, "a/b");
  EXPECT_EQ(POL_FindObject(KIND_NOTE, note.get(), nullptr, 0), 1U);
  Note untitled;
  EXPECT_EQ(POL_FindObject(KIND_NOTE, untitled.get(), nullptr, 0), 0U);
}

}  // namespace
}  // namespace tamu
