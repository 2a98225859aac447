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

// The calls of the platform's services with their arguments.
class PlatformWatch {
 public:
  PlatformWatch() { Active() = this; }
  ~PlatformWatch() { Active() = nullptr; }
  PlatformWatch(const PlatformWatch&) = delete;
  PlatformWatch& operator=(const PlatformWatch&) = delete;

  [[nodiscard]] const Strings& calls() const { return calls_; }

 private:
  static PlatformWatch*& Active() {
    static PlatformWatch* active = nullptr;
    return active;
  }
  template <typename... Numbers>
  static void Note(std::string call, Numbers... numbers) {
    ((call += ' ' + std::to_string(numbers)), ...);
    Active()->calls_.push_back(std::move(call));
  }

  static platform::WindowHandle Create(std::uint32_t extended_style, const char16_t* class_name,
                                       const char16_t* text, std::uint32_t style, std::int32_t x,
                                       std::int32_t y, std::int32_t width, std::int32_t height,
                                       platform::WindowHandle parent, std::intptr_t menu,
                                       std::intptr_t instance, void* parameter) {
    const std::u16string name = class_name;
    const bool defaults = x == platform::kUseDefault && y == x && width == x && height == x;
    Note("CreateWindow " + std::string(name.begin(), name.end()) + (defaults ? "" : " placed"),
         extended_style, std::u16string(text).size(), style, parent, menu, instance);
    return platform::CreateWindowExW.system_function()(extended_style, class_name, text, style, x,
                                                       y, width, height, parent, menu, instance,
                                                       parameter);
  }
  static std::intptr_t Send(platform::WindowHandle window, std::uint32_t message,
                            std::uintptr_t wparam, std::intptr_t lparam) {
    Note("SendMessage", message, wparam);
    return platform::SendMessageW.system_function()(window, message, wparam, lparam);
  }
  static platform::FileHandle Open(const char16_t* path, std::uint32_t access, std::uint32_t share,
                                   void* security, std::uint32_t disposition,
                                   std::uint32_t attributes, platform::FileHandle file) {
    Note("CreateFile", access, share, disposition, attributes, file);
    return platform::CreateFileW.system_function()(path, access, share, security, disposition,
                                                   attributes, file);
  }
  static std::int32_t Write(platform::FileHandle file, const void* buffer, std::uint32_t size,
                            std::uint32_t* done, void* overlapped) {
    if (Active()->calls_.back() != "WriteFile") Note("WriteFile");
    return platform::WriteFile.system_function()(file, buffer, size, done, overlapped);
  }
  static std::int32_t Close(platform::FileHandle file) {
    Note("CloseHandle");
    return platform::CloseHandle.system_function()(file);
  }
  static std::int32_t Destroy(platform::WindowHandle window) {
    Note("DestroyWindow");
    return platform::DestroyWindow.system_function()(window);
  }
  static std::int32_t FolderPath(platform::WindowHandle window, char16_t* path, std::int32_t folder,
                                 std::int32_t create) {
    Note("SHGetSpecialFolderPath", window, folder);
    return platform::SHGetSpecialFolderPathW.system_function()(window, path, folder, create);
  }

  template <typename Signature>
  using Override = platform::ScopedOverride<Signature>;

  Strings calls_;
  Override<platform::WindowHandle(std::uint32_t, const char16_t*, const char16_t*, std::uint32_t,
                                  std::int32_t, std::int32_t, std::int32_t, std::int32_t,
                                  platform::WindowHandle, std::intptr_t, std::intptr_t, void*)>
      create_{platform::CreateWindowExW, &Create};
  Override<std::intptr_t(platform::WindowHandle, std::uint32_t, std::uintptr_t, std::intptr_t)>
      send_{platform::SendMessageW, &Send};
  Override<platform::FileHandle(const char16_t*, std::uint32_t, std::uint32_t, void*, std::uint32_t,
                                std::uint32_t, platform::FileHandle)>
      open_{platform::CreateFileW, &Open};
  Override<std::int32_t(platform::FileHandle, const void*, std::uint32_t, std::uint32_t*, void*)>
      write_{platform::WriteFile, &Write};
  Override<std::int32_t(platform::FileHandle)> close_{platform::CloseHandle, &Close};
  Override<std::int32_t(platform::WindowHandle)> destroy_{platform::DestroyWindow, &Destroy};
  Override<std::int32_t(platform::WindowHandle, char16_t*, std::int32_t, std::int32_t)> folder_{
      platform::SHGetSpecialFolderPathW, &FolderPath};
};

TEST_F(PutNoteTest, ThePlatformIsAskedInThisOrderWithTheseArguments) {
  Note note;
  note.With(&N::prop_summary, "Title").With(&N::prop_body, "Text");
  const PlatformWatch watch;
  pol_PutNote(note.shape());
  EXPECT_EQ(watch.calls(),
            (Strings{"CreateWindow RichInk 0 0 2048 0 0 0", "SHGetSpecialFolderPath 0 5",
                     "CreateFile 1073741824 2 2 128 0", "SendMessage 1097 17",
                     "SendMessage 1098 67586", "WriteFile", "CloseHandle", "DestroyWindow"}));
}

TEST_F(NoteTest, AFoundNoteIsOpenedForReadingAndClosed) {
  Note note;
  note.With(&N::prop_summary, "Title");
  pol_PutNote(note.shape());
  const PlatformWatch watch;
  EXPECT_EQ(POL_FindObject(KIND_NOTE, note.get(), nullptr, 0), 1U);
  EXPECT_EQ(watch.calls(), (Strings{"SHGetSpecialFolderPath 0 5", "CreateFile 2147483648 1 3 128 0",
                                    "CloseHandle"}));
}

// What the control asks for at a time is up to it.
TEST_F(PutNoteTest, TheTextIsServedInPiecesOfTheSizeAskedForWithItsTerminatorAndThenNothing) {
  static Strings pieces;
  static std::int32_t sizes[] = {4, 0, 1, 100, 100};
  pieces.clear();
  const platform::ScopedOverride<std::intptr_t(platform::WindowHandle, std::uint32_t,
                                               std::uintptr_t, std::intptr_t)>
      send(platform::SendMessageW,
           [](platform::WindowHandle, std::uint32_t message, std::uintptr_t,
              std::intptr_t lparam) -> std::intptr_t {
             if (message != platform::kEmStreamIn) return 0;
             auto* const stream = reinterpret_cast<platform::EditStream*>(lparam);
             for (const std::int32_t size : sizes) {
               std::uint8_t buffer[100] = {};
               std::int32_t done = -1;
               EXPECT_EQ(stream->callback(stream->cookie, buffer, size, &done), 0U);
               EXPECT_LE(done, size);
               pieces.emplace_back(buffer, buffer + done);
             }
             return 0;
           });
  Note note;
  note.With(&N::prop_summary, "Title").With(&N::prop_body, "abc");
  pol_PutNote(note.shape());
  using namespace std::string_literals;
  EXPECT_EQ(pieces, (Strings{"a\0b\0"s, ""s, "c"s, "\0\0\0"s, ""s}));
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

TEST_F(NoteOperationsTest, WithoutASessionNotesAreWrittenAndMovedButNotFound) {
  ASSERT_EQ(POL_Close(), TAMU_OK);
  Note note;
  note.With(&N::prop_summary, "Old");
  EXPECT_EQ(POL_AddObject(KIND_NOTE, note.get(), nullptr), TAMU_OK);
  EXPECT_EQ(Files(), Strings{"Old.pwi"});
  EXPECT_EQ(POL_FindObject(KIND_NOTE, note.get(), nullptr, 0), 0U);
  Note changed;
  changed.With(&N::prop_summary, "New");
  EXPECT_EQ(POL_ModifyObject(KIND_NOTE, "Old", changed.get()), TAMU_OK);
  EXPECT_EQ(Files(), Strings{"New.pwi"});
}

TEST_F(NoteOperationsTest, ATitleOfForbiddenCharactersIsTheBareExtension) {
  Note note;
  note.With(&N::prop_summary, "???").With(&N::prop_body, "Text");
  EXPECT_EQ(POL_AddObject(KIND_NOTE, note.get(), nullptr), TAMU_OK);
  EXPECT_EQ(Files(), Strings{".pwi"});
  EXPECT_EQ(TextOf(".pwi"), u"Text");
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
