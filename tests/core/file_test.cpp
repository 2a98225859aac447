#include "core/file.h"

#include <gtest/gtest.h>

#include <string>

#include "core/memory.h"
#include "platform/last_error.h"
#include "support/log_capture.h"
#include "support/scratch_folder.h"

namespace tamu {
namespace {

using testing::LogCapture;
using testing::ScopedEnvironment;
using testing::ScratchFolder;

std::string ReadAll(File* file) {
  std::string content;
  for (int character = file->GetChar(); character >= 0; character = file->GetChar()) {
    content += static_cast<char>(character);
  }
  return content;
}

TEST(FileOpen, FailureIsLoggedAsForWritingWhateverTheMode) {
  const ScratchFolder folder;
  const LogCapture log;
  File file;
  EXPECT_EQ(FILE_Open(folder.Wide("missing.vcf").c_str(), u"rb", &file), 1U);
  EXPECT_EQ(platform::GetLastError(), platform::kErrorFileNotFound);
  EXPECT_FALSE(file.is_open());
  ASSERT_EQ(log.lines().size(), 1U);
  EXPECT_EQ(log.lines()[0].text, "TAMU:  Unable to open file '" +
                                     (folder.path() / "missing.vcf").string() + "' for writing");
  EXPECT_EQ(log.lines()[0].severity, LogSeverity::kError);
}

TEST(FileOpen, ADirectoryDoesNotOpen) {
  const ScratchFolder folder;
  File file;
  EXPECT_EQ(FILE_Open(folder.path().u16string().c_str(), u"rb", &file), 1U);
  EXPECT_EQ(platform::GetLastError(), platform::kErrorAccessDenied);
}

TEST(FileOpen, AnUnknownModeDoesNotOpen) {
  const ScratchFolder folder;
  File file;
  EXPECT_FALSE(file.Open(folder.Wide("x").c_str(), u"q"));
  EXPECT_FALSE(file.Open(folder.Wide("x").c_str(), u"w?"));
  EXPECT_EQ(folder.FileCount(), 0U);
}

TEST(FileOpen, NoMemoryForTheWindowIsAFailureToOpen) {
  const ScratchFolder folder;
  const std::u16string path = folder.Put("a", "x");
  MEM_FailNth(1);
  File file;
  EXPECT_FALSE(file.Open(path.c_str(), u"rb"));
  MEM_FailNth(0);
  EXPECT_EQ(platform::GetLastError(), platform::kErrorNotEnoughMemory);
}

TEST(FileWrite, TextModesWriteEachLineFeedAsCrLf) {
  const ScratchFolder folder;
  for (const char16_t* mode : {u"w", u"a+"}) {
    File file;
    ASSERT_EQ(FILE_Open(folder.Wide("a").c_str(), mode, &file), 0U);
    EXPECT_EQ(FILE_PutLine(&file, "one\ntwo"), 0U);
    EXPECT_EQ(FILE_Close(&file, u"a"), 0U);
  }
  EXPECT_EQ(folder.Get("a"), "one\r\ntwo\r\none\r\ntwo\r\n");
}

TEST(FileWrite, BinaryModesChangeNothing) {
  const ScratchFolder folder;
  File file;
  ASSERT_EQ(FILE_Open(folder.Wide("a").c_str(), u"wb", &file), 0U);
  EXPECT_EQ(FILE_PutLine(&file, std::string_view("a\0b\n", 4)), 0U);
  EXPECT_EQ(FILE_Close(&file, u"a"), 0U);
  EXPECT_EQ(folder.Get("a"), std::string("a\0b\n\n", 5));
}

TEST(FileWrite, MoreThanTheBufferArrivesWhole) {
  const ScratchFolder folder;
  const std::string text(300000, 'x');
  File file;
  ASSERT_EQ(FILE_Open(folder.Wide("a").c_str(), u"w", &file), 0U);
  EXPECT_EQ(FILE_PutLine(&file, text), 0U);
  EXPECT_EQ(FILE_Close(&file, u"a"), 0U);
  EXPECT_EQ(folder.Get("a"), text + "\r\n");
}

TEST(FileWrite, AFailedWriteIsRememberedAndEndsTheWriting) {
  const ScratchFolder folder;
  File file;
  ASSERT_EQ(FILE_Open(folder.Wide("a").c_str(), u"w", &file), 0U);
  const platform::ScopedFailure failure(platform::WriteFile, 1, platform::kErrorDiskFull);
  EXPECT_EQ(FILE_PutLine(&file, std::string(100000, 'x')), 1U);
  EXPECT_EQ(FILE_PutLine(&file, "more"), 1U);
  EXPECT_EQ(file.error(), platform::kErrorDiskFull);
  FILE_Close(&file, u"a");
  EXPECT_EQ(file.TakeError(), platform::kErrorDiskFull);
  EXPECT_EQ(file.error(), 0U);
}

TEST(FileClose, AFailedLastWriteIsAFailedClose) {
  const ScratchFolder folder;
  File file;
  ASSERT_EQ(FILE_Open(folder.Wide("a").c_str(), u"w", &file), 0U);
  ASSERT_EQ(FILE_PutLine(&file, "short"), 0U);
  const platform::ScopedFailure failure(platform::WriteFile, 1, platform::kErrorDiskFull);
  EXPECT_EQ(FILE_Close(&file, u"a"), 1U);
  EXPECT_EQ(file.error(), platform::kErrorDiskFull);
}

// The wide path is printed with "%s": its second byte ends it. Kept on purpose.
TEST(FileClose, FailureIsLoggedWithTheFirstCharacterOfThePath) {
  const ScratchFolder folder;
  File file;
  ASSERT_EQ(FILE_Open(folder.Wide("a").c_str(), u"w", &file), 0U);
  const platform::ScopedFailure failure(platform::CloseHandle);
  const LogCapture log;
  EXPECT_EQ(FILE_Close(&file, u"contacts.vcf"), 1U);
  EXPECT_EQ(log.texts(), std::vector<std::string>{"TAMU:  Unable to close file 'c'"});
}

TEST(FileRead, EndIsMetByReadingAndForgottenBySeeking) {
  const ScratchFolder folder;
  File file;
  ASSERT_EQ(FILE_Open(folder.Put("a", "xy").c_str(), u"rb", &file), 0U);
  EXPECT_EQ(file.GetChar(), 'x');
  EXPECT_EQ(file.GetChar(), 'y');
  EXPECT_FALSE(file.AtEnd());
  EXPECT_EQ(file.GetChar(), -1);
  EXPECT_TRUE(file.AtEnd());
  EXPECT_TRUE(file.Rewind());
  EXPECT_FALSE(file.AtEnd());
  EXPECT_EQ(file.GetChar(), 'x');
}

TEST(FileRead, PositionsOutsideTheWindowAreReadAgain) {
  const ScratchFolder folder;
  std::string content;
  for (int i = 0; i < 50000; ++i) content += std::to_string(i) + "\n";
  File file;
  ASSERT_EQ(FILE_Open(folder.Put("a", content).c_str(), u"rb", &file), 0U);
  for (int i = 0; i < 1000; ++i) static_cast<void>(file.GetChar());
  const File::Place place = file.Tell();
  EXPECT_EQ(ReadAll(&file), content.substr(1000));
  EXPECT_TRUE(file.Seek(place));
  EXPECT_EQ(file.Tell().offset, 1000U);
  EXPECT_EQ(file.Tell().line, place.line);
  EXPECT_EQ(ReadAll(&file), content.substr(1000));
}

TEST(FileRead, AnUnreadableFileEndsAndRemembersWhy) {
  const ScratchFolder folder;
  File file;
  ASSERT_EQ(FILE_Open(folder.Put("a", "xy").c_str(), u"rb", &file), 0U);
  const platform::ScopedFailure failure(platform::ReadFile, 1, platform::kErrorGenFailure);
  EXPECT_EQ(file.GetChar(), -1);
  EXPECT_TRUE(file.AtEnd());
  EXPECT_EQ(file.error(), platform::kErrorGenFailure);
}

TEST(FileRead, ReadingFitsTheSystemsCallsToTheWindow) {
  const ScratchFolder folder;
  File file;
  ASSERT_EQ(FILE_Open(folder.Put("a", std::string(1000000, 'x')).c_str(), u"rb", &file), 0U);
  platform::ReadFile.ResetCount();
  EXPECT_EQ(ReadAll(&file).size(), 1000000U);
  EXPECT_LE(platform::ReadFile.calls(), 20U);
}

// Files that are read and written: each direction sees what the other did.

TEST(FileBoth, ReadingBehindAnAppendedTextLosesNeither) {
  const ScratchFolder folder;
  File file;
  ASSERT_TRUE(file.Open(folder.Put("a", "OLDCONTENT\n").c_str(), u"a+b"));
  EXPECT_TRUE(file.Write("abc"));
  EXPECT_EQ(file.GetChar(), -1);
  EXPECT_TRUE(file.Rewind());
  EXPECT_EQ(file.GetChar(), 'O');
  EXPECT_TRUE(file.Write("def"));
  EXPECT_TRUE(file.Close());
  EXPECT_EQ(folder.Get("a"), "OLDCONTENT\nabcdef");
}

TEST(FileBoth, SeekingMovesWhatIsWrittenNext) {
  const ScratchFolder folder;
  File file;
  ASSERT_TRUE(file.Open(folder.Wide("a").c_str(), u"wb"));
  EXPECT_TRUE(file.Write("hello"));
  EXPECT_EQ(file.Tell().offset, 5U);
  EXPECT_TRUE(file.Rewind());
  EXPECT_TRUE(file.Write("J"));
  EXPECT_TRUE(file.Close());
  EXPECT_EQ(folder.Get("a"), "Jello");
}

TEST(FileBoth, WritingGoesOnWhereReadingHasGotTo) {
  const ScratchFolder folder;
  File file;
  ASSERT_TRUE(file.Open(folder.Put("a", "abcdef").c_str(), u"r+b"));
  EXPECT_EQ(file.GetChar(), 'a');
  EXPECT_TRUE(file.Write("XY"));
  EXPECT_EQ(file.GetChar(), 'd');
  EXPECT_TRUE(file.Close());
  EXPECT_EQ(folder.Get("a"), "aXYdef");
}

TEST(FileClosed, ReadingAndWritingFail) {
  const ScratchFolder folder;
  File file;
  ASSERT_TRUE(file.Open(folder.Wide("a").c_str(), u"w+"));
  EXPECT_TRUE(file.Close());
  EXPECT_FALSE(file.Write("x"));
  EXPECT_EQ(file.GetChar(), -1);
}

TEST(FileRead, ASeekThatFailsChangesNothing) {
  const ScratchFolder folder;
  File file;
  ASSERT_TRUE(file.Open(folder.Put("a", std::string(200000, 'x')).c_str(), u"rb"));
  while (file.GetChar() >= 0) {
  }
  const platform::ScopedFailure failure(platform::SetFilePointerEx);
  EXPECT_FALSE(file.Rewind());
  EXPECT_TRUE(file.AtEnd());
  EXPECT_EQ(file.Tell().offset, 200000U);
}

TEST(FileRead, PeekingNeitherMovesNorMeetsTheEnd) {
  const ScratchFolder folder;
  File file;
  ASSERT_TRUE(file.Open(folder.Put("a", "x").c_str(), u"rb"));
  EXPECT_EQ(file.PeekChar(), 'x');
  EXPECT_EQ(file.GetChar(), 'x');
  EXPECT_EQ(file.PeekChar(), -1);
  EXPECT_FALSE(file.AtEnd());
}

TEST(FileRemove, FailureIsLoggedWithPathAndError) {
  const ScratchFolder folder;
  const LogCapture log;
  EXPECT_EQ(FILE_Remove(folder.Wide("missing").c_str()), 1U);
  EXPECT_EQ(log.texts(), (std::vector<std::string>{"TAMU:  Unable to remove file (file=" +
                                                       (folder.path() / "missing").string() + ")",
                                                   "TAMU:  Error: 0x00000002"}));
}

TEST(FileRemove, SuccessIsSilent) {
  const ScratchFolder folder;
  const LogCapture log;
  EXPECT_EQ(FILE_Remove(folder.Put("a", "x").c_str()), 0U);
  EXPECT_EQ(folder.FileCount(), 0U);
  EXPECT_TRUE(log.lines().empty());
}

class TempFilename : public ::testing::Test {
 protected:
  ScratchFolder folder_;
  ScopedEnvironment locale_{"LC_ALL", "C.UTF-8"};
  ScopedEnvironment tmpdir_{"TMPDIR", folder_.path().string()};
  char16_t path_[kTempPathUnits] = u"before";
};

TEST_F(TempFilename, WithoutANameANewFileIsMade) {
  EXPECT_EQ(FILE_TempFilename(nullptr, path_), 0U);
  EXPECT_EQ(folder_.FileCount(), 1U);
  const std::u16string prefix = folder_.path().u16string() + u"/qmo";
  EXPECT_EQ(std::u16string(path_).substr(0, prefix.size()), prefix);
  EXPECT_EQ(FILE_TempFilename("", path_), 0U);
  EXPECT_EQ(folder_.FileCount(), 2U);
}

TEST_F(TempFilename, ANameIsPutBehindTheFolderAndNothingIsMade) {
  EXPECT_EQ(FILE_TempFilename("M\xC3\xBCller.jpg", path_), 0U);
  EXPECT_EQ(std::u16string(path_), folder_.path().u16string() + u"/M\u00FCller.jpg");
  EXPECT_EQ(folder_.FileCount(), 0U);
}

TEST_F(TempFilename, NoTemporaryFolderIsAPathErrorWithOneBlank) {
  const platform::ScopedFailure failure(platform::GetTempPathW, 1, 5);
  const LogCapture log;
  EXPECT_EQ(FILE_TempFilename(nullptr, path_), 1U);
  EXPECT_EQ(log.texts(), std::vector<std::string>{"TAMU: FILE_TempFilename; PATH error (5)"});
  EXPECT_EQ(path_[0], u'\0');
}

TEST_F(TempFilename, AFileThatCannotBeMadeIsAFileErrorWithOneBlank) {
  const platform::ScopedFailure failure(platform::GetTempFileNameW, 1, 80);
  const LogCapture log;
  EXPECT_EQ(FILE_TempFilename(nullptr, path_), 1U);
  EXPECT_EQ(log.texts(), std::vector<std::string>{"TAMU: FILE_TempFilename; FILE error (80)"});
  EXPECT_EQ(path_[0], u'\0');
}

TEST_F(TempFilename, AFolderTooLongIsAPathErrorAndNeverCut) {
  const ScopedEnvironment tmpdir("TMPDIR", "/" + std::string(300, 'x'));
  const LogCapture log;
  EXPECT_EQ(FILE_TempFilename("a", path_), 1U);
  EXPECT_EQ(log.texts(), std::vector<std::string>{"TAMU: FILE_TempFilename; PATH error (111)"});
  EXPECT_EQ(path_[0], u'\0');
}

TEST_F(TempFilename, ANameTooLongIsAFileErrorAndNeverCut) {
  const LogCapture log;
  EXPECT_EQ(FILE_TempFilename(std::string(250, 'x').c_str(), path_), 1U);
  EXPECT_EQ(log.texts(), std::vector<std::string>{"TAMU: FILE_TempFilename; FILE error (111)"});
  EXPECT_EQ(path_[0], u'\0');
  EXPECT_EQ(FILE_TempFilename(std::string(400, 'x').c_str(), path_), 1U);
  EXPECT_EQ(path_[0], u'\0');
}

TEST_F(TempFilename, AUniqueNameThatDoesNotFitLeavesNoFile) {
  std::string deep = folder_.path().string();
  while (deep.size() < 230)
    deep += "/" + std::string(std::min<std::size_t>(230 - deep.size(), 40), 'd');
  std::filesystem::create_directories(deep);
  while (deep.size() < 252) {
    deep += 'e';
    std::filesystem::create_directories(deep);
  }
  const ScopedEnvironment tmpdir("TMPDIR", deep);
  EXPECT_EQ(FILE_TempFilename(nullptr, path_), 1U);
  EXPECT_EQ(path_[0], u'\0');
  EXPECT_TRUE(std::filesystem::is_empty(deep));
}

}  // namespace
}  // namespace tamu
