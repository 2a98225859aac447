#include "device/ink/documents.h"

#include <gtest/gtest.h>
#include <sys/xattr.h>

#include <filesystem>
#include <string>
#include <vector>

#include "device/ink/ink_encoder.h"
#include "platform/code_pages.h"
#include "platform/files.h"
#include "platform/last_error.h"
#include "platform/linux/long_names.h"
#include "platform/rich_ink.h"
#include "platform/test_folder.h"

namespace tamu::device {
namespace {

class Documents : public ::testing::Test {
 protected:
  Documents() { std::filesystem::create_directory(device_ / "Documents"); }

  [[nodiscard]] std::string Path(const std::string& name) const {
    return device_ / ("Documents/" + name);
  }

  // Writes a note as the library does.
  void Put(const std::u16string& title, std::u16string_view text) const {
    const std::u16string path = device_.Wide("Documents/") + title + u".pwi";
    const std::vector<std::uint8_t> bytes = INK_Encode(text);
    const platform::FileHandle file = platform::CreateFileW(
        path.c_str(), platform::kGenericWrite, 0, nullptr, platform::kCreateAlways, 0, 0);
    ASSERT_NE(file, platform::kInvalidHandle);
    std::uint32_t done = 0;
    EXPECT_NE(platform::WriteFile(file, bytes.data(), static_cast<std::uint32_t>(bytes.size()),
                                  &done, nullptr),
              0);
    EXPECT_NE(platform::CloseHandle(file), 0);
  }

  static std::vector<std::u16string> Titles() {
    std::vector<Document> documents;
    EXPECT_EQ(DOCUMENTS_List(&documents), platform::kErrorSuccess);
    std::vector<std::u16string> titles;
    for (const Document& document : documents) titles.push_back(document.title);
    return titles;
  }

  platform::TestDevice device_;
};

using Strings = std::vector<std::u16string>;

TEST_F(Documents, NotesAreListedByTitle) {
  Put(u"banana", u"b");
  Put(u"Ärger", u"");
  Put(u"Apple", u"a");
  Put(u"cherry", u"c");
  Put(u"", u"no title");
  platform::WriteBytes(Path("CARD.PWI"), "text");
  platform::WriteBytes(Path("other.txt"), "");
  platform::WriteBytes(Path("pwi"), "");
  std::filesystem::create_directory(Path("folder.pwi"));
  EXPECT_EQ(Titles(), (Strings{u"", u"Apple", u"banana", u"CARD", u"cherry", u"Ärger"}));
}

TEST_F(Documents, TheListSaysWhatTheFileIs) {
  Put(u"note", u"text");
  std::vector<Document> documents(3);
  ASSERT_EQ(DOCUMENTS_List(&documents), platform::kErrorSuccess);
  ASSERT_EQ(documents.size(), 1U);
  EXPECT_EQ(documents[0].size, INK_Encode(u"text").size());
  EXPECT_EQ(documents[0].path, device_.Wide("Documents/note.pwi"));
  EXPECT_GT(documents[0].modified, 1700000000);
}

TEST_F(Documents, WithoutAFolderThereAreNone) {
  std::filesystem::remove(device_ / "Documents");
  EXPECT_EQ(Titles(), Strings());
  InkText text;
  EXPECT_EQ(DOCUMENTS_Read(u"x", &text), platform::kErrorFileNotFound);
  EXPECT_EQ(DOCUMENTS_Delete(u"x"), platform::kErrorFileNotFound);
  platform::WriteBytes(device_ / "Documents", "a file");
  std::vector<Document> documents;
  EXPECT_NE(DOCUMENTS_List(&documents), platform::kErrorSuccess);
}

TEST_F(Documents, ANoteIsReadAndDeletedByItsTitle) {
  Put(u"one", u"first\r\nПривет \U0001F600");
  platform::WriteBytes(Path("CARD.PWI"), "plain");
  InkText text;
  ASSERT_EQ(DOCUMENTS_Read(u"one", &text), platform::kErrorSuccess);
  EXPECT_EQ(text.text, u"first\r\nПривет \U0001F600");
  EXPECT_FALSE(text.damaged);
  ASSERT_EQ(DOCUMENTS_Read(u"CARD", &text), platform::kErrorSuccess);
  EXPECT_EQ(text.text, u"plain");
  EXPECT_EQ(text.source, InkSource::kPlainText);
  EXPECT_EQ(DOCUMENTS_Delete(u"one"), platform::kErrorSuccess);
  EXPECT_EQ(DOCUMENTS_Delete(u"CARD"), platform::kErrorSuccess);
  EXPECT_EQ(DOCUMENTS_Delete(u"one"), platform::kErrorFileNotFound);
  EXPECT_EQ(DOCUMENTS_Read(u"one", &text), platform::kErrorFileNotFound);
  EXPECT_EQ(text.text, u"");
  EXPECT_EQ(Titles(), Strings());
}

TEST_F(Documents, LongTitlesAreListedInFull) {
  const std::u16string title(259, u'漢');
  Put(title, u"text");
  const std::string name =
      std::filesystem::directory_iterator(device_ / "Documents")->path().filename().native();
  const std::u16string short_title = platform::PathFromNative(name.substr(0, name.size() - 4));
  EXPECT_LE(name.size(), 255U);
  InkText text;
  EXPECT_EQ(DOCUMENTS_Read(title, &text), platform::kErrorSuccess);
  EXPECT_EQ(DOCUMENTS_Read(short_title, &text), platform::kErrorSuccess);
  EXPECT_EQ(text.text, u"text");
  if (::removexattr(Path(name).c_str(), "user.tamu.long-name") == 0) {
    EXPECT_EQ(Titles(), Strings{short_title});
    Put(title, u"text");
    EXPECT_EQ(Titles(), Strings{title});
  } else {
    EXPECT_EQ(Titles(), Strings{short_title});  // a file system without attributes
  }
  EXPECT_EQ(DOCUMENTS_Delete(title), platform::kErrorSuccess);
  EXPECT_EQ(Titles(), Strings());
}

TEST_F(Documents, ATitleDoesNotLeaveTheFolder) {
  platform::WriteBytes(device_ / "secret.pwi", "text");
  InkText text;
  EXPECT_EQ(DOCUMENTS_Read(u"../secret", &text), platform::kErrorInvalidName);
  EXPECT_EQ(DOCUMENTS_Delete(u"../secret"), platform::kErrorInvalidName);
  EXPECT_EQ(DOCUMENTS_Read(u"secret", &text), platform::kErrorFileNotFound);
  EXPECT_EQ(DOCUMENTS_Read(std::u16string_view(u"a\0b", 3), &text), platform::kErrorInvalidName);
  EXPECT_TRUE(std::filesystem::exists(device_ / "secret.pwi"));
}

TEST_F(Documents, NamesThatAreNoUtf8AreListedAndRead) {
  platform::WriteBytes(Path("caf\xE9.pwi"), "text");
  const Strings titles = Titles();
  ASSERT_EQ(titles.size(), 1U);
  InkText text;
  EXPECT_EQ(DOCUMENTS_Read(titles[0], &text), platform::kErrorSuccess);
  EXPECT_EQ(text.text, u"text");
}

TEST_F(Documents, ANoteWhoseWriterDiedIsSaid) {
  Put(u"note", std::u16string(5000, u'x'));
  std::filesystem::resize_file(Path("note.pwi"), 4096);
  InkText text;
  EXPECT_EQ(DOCUMENTS_Read(u"note", &text), platform::kErrorSuccess);
  EXPECT_TRUE(text.damaged);
  EXPECT_GT(text.text.size(), 3000U);
}

TEST_F(Documents, FailuresOfThePlatformComeBack) {
  Put(u"note", u"text");
  InkText text;
  std::vector<Document> documents;
  {
    const platform::ScopedFailure failure(platform::SHGetSpecialFolderPathW, 1, 5);
    EXPECT_EQ(DOCUMENTS_List(&documents), 5U);
  }
  {
    const platform::ScopedFailure failure(platform::CreateFileW, 1, 32);
    EXPECT_EQ(DOCUMENTS_Read(u"note", &text), 32U);
  }
  {
    const platform::ScopedFailure failure(platform::ReadFile, 1, 31);
    EXPECT_EQ(DOCUMENTS_Read(u"note", &text), 31U);
    EXPECT_EQ(text.text, u"");
  }
  for (const std::uint64_t call : {1U, 2U}) {
    const platform::ScopedFailure failure(platform::SetFilePointerEx, call, 31);
    EXPECT_EQ(DOCUMENTS_Read(u"note", &text), 31U);
  }
  {
    const platform::ScopedFailure failure(platform::DeleteFileW, 1, 5);
    EXPECT_EQ(DOCUMENTS_Delete(u"note"), 5U);
  }
  EXPECT_EQ(Titles(), Strings{u"note"});
}

TEST_F(Documents, AFileThatIsNoNoteBySizeIsNotRead) {
  platform::WriteBytes(Path("huge.pwi"), "");
  std::filesystem::resize_file(Path("huge.pwi"), std::uintmax_t{1} << 40);
  InkText text;
  EXPECT_EQ(DOCUMENTS_Read(u"huge", &text), platform::kErrorFileTooLarge);
}

}  // namespace
}  // namespace tamu::device
