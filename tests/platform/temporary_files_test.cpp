#include "platform/linux/temporary_files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <set>
#include <string>

#include "platform/files.h"
#include "platform/test_folder.h"

namespace tamu::platform {
namespace {

TEST(GetTempPathW, TakesTheConfiguredFolderAndEndsInASeparator) {
  char16_t path[256];
  const ScopedVariable with_slash("TMPDIR", "/somewhere/");
  EXPECT_EQ(GetTempPathW(256, path), 11U);
  EXPECT_EQ(std::u16string(path), u"/somewhere/");
  const ScopedVariable without("TMPDIR", "/some");
  EXPECT_EQ(GetTempPathW(256, path), 6U);
  EXPECT_EQ(std::u16string(path), u"/some/");
}

TEST(GetTempPathW, DefaultsToTmp) {
  char16_t path[256];
  for (const char* value : {static_cast<const char*>(nullptr), ""}) {
    const ScopedVariable variable("TMPDIR", value);
    EXPECT_EQ(GetTempPathW(256, path), 5U);
    EXPECT_EQ(std::u16string(path), u"/tmp/");
  }
}

TEST(GetTempPathW, AnswersTheNeededSizeWhenItDoesNotFitAndWritesNothing) {
  const ScopedVariable variable("TMPDIR", "/some");
  char16_t path[8] = u"before";
  EXPECT_EQ(GetTempPathW(6, path), 7U);
  EXPECT_EQ(GetLastError(), kErrorInsufficientBuffer);
  EXPECT_EQ(std::u16string(path), u"before");
  EXPECT_EQ(GetTempPathW(7, path), 6U);
  EXPECT_EQ(GetTempPathW(0, nullptr), 7U);
}

TEST(GetTempFileNameW, MakesAnEmptyFileForTheUserAlone) {
  const TestFolder folder;
  char16_t path[kMaxPath];
  const mode_t before = umask(0);
  const std::uint32_t number = GetTempFileNameW(folder.Wide("").c_str(), u"qmoXYZ", 0, path);
  umask(before);
  EXPECT_NE(number, 0U);
  const std::string native = PathToNative(path);
  EXPECT_TRUE(native.starts_with(folder / "qmo")) << native;
  EXPECT_TRUE(native.ends_with(".tmp")) << native;
  EXPECT_EQ(native.find("XYZ"), std::string::npos);
  struct stat status = {};
  ASSERT_EQ(stat(native.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0600U);
  EXPECT_EQ(status.st_size, 0);
}

TEST(GetTempFileNameW, NamesDiffer) {
  const TestFolder folder;
  std::set<std::u16string> names;
  char16_t path[kMaxPath];
  for (int i = 0; i < 200; ++i) {
    ASSERT_NE(GetTempFileNameW(folder.Wide("").c_str(), u"qmo", 0, path), 0U);
    names.insert(path);
  }
  EXPECT_EQ(names.size(), 200U);
}

TEST(GetTempFileNameW, AGivenNumberOnlyBuildsTheName) {
  const TestFolder folder;
  char16_t path[kMaxPath];
  EXPECT_EQ(GetTempFileNameW(folder.Wide("").c_str(), u"qmo", 0x1A2B, path), 0x1A2BU);
  EXPECT_EQ(PathToNative(path), folder / "qmo00001a2b.tmp");
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(GetTempFileNameW, AMissingFolderIsError267) {
  const TestFolder folder;
  WriteBytes(folder / "file", "");
  char16_t path[kMaxPath] = u"before";
  EXPECT_EQ(GetTempFileNameW(folder.Wide("none").c_str(), u"qmo", 0, path), 0U);
  EXPECT_EQ(GetLastError(), kErrorDirectory);
  EXPECT_EQ(GetTempFileNameW(folder.Wide("file").c_str(), u"qmo", 0, path), 0U);
  EXPECT_EQ(GetLastError(), kErrorDirectory);
  EXPECT_EQ(std::u16string(path), u"before");
}

TEST(GetTempFileNameW, APathThatDoesNotFitIsError111AndNeverCut) {
  // The name takes "/", 3 characters of prefix, 8 digits, ".tmp" and the terminator.
  const TestFolder folder;
  constexpr std::size_t kLongest = kMaxPath - 1 - 16;
  std::string path = folder.path();
  while (path.size() + 2 <= kLongest) {
    path += "/" + std::string(std::min<std::size_t>(kLongest - path.size() - 1, 100), 'd');
  }
  ASSERT_EQ(path.size(), kLongest);
  std::filesystem::create_directories(path + "d");
  std::filesystem::create_directories(path);
  char16_t made[kMaxPath + 1];
  made[kMaxPath] = 0x1234;
  EXPECT_EQ(GetTempFileNameW(PathFromNative(path + "d").c_str(), u"qmo", 0, made), 0U);
  EXPECT_EQ(GetLastError(), kErrorBufferOverflow);
  EXPECT_TRUE(std::filesystem::is_empty(path + "d"));
  EXPECT_NE(GetTempFileNameW(PathFromNative(path).c_str(), u"qmo", 0, made), 0U);
  EXPECT_EQ(std::u16string(made).size(), static_cast<std::size_t>(kMaxPath - 1));
  EXPECT_EQ(made[kMaxPath], 0x1234);
  EXPECT_TRUE(std::filesystem::exists(PathToNative(made)));
}

TEST(GetTempFileNameW, RefusesArgumentsThatNameNoFile) {
  const TestFolder folder;
  char16_t path[kMaxPath];
  EXPECT_EQ(GetTempFileNameW(nullptr, u"qmo", 0, path), 0U);
  EXPECT_EQ(GetLastError(), kErrorInvalidParameter);
  EXPECT_EQ(GetTempFileNameW(folder.Wide("").c_str(), u"qmo", 0, nullptr), 0U);
  EXPECT_EQ(GetLastError(), kErrorInvalidParameter);
  EXPECT_EQ(GetTempFileNameW(folder.Wide("").c_str(), u"../", 0, path), 0U);
  EXPECT_EQ(GetLastError(), kErrorInvalidName);
}

TEST(GetTempFileNameW, WithoutPermissionItIsAccessDenied) {
  const TestFolder folder;
  chmod(folder.path().c_str(), 0555);
  const WithoutPrivileges nobody;
  char16_t path[kMaxPath];
  EXPECT_EQ(GetTempFileNameW(folder.Wide("").c_str(), u"qmo", 0, path), 0U);
  EXPECT_EQ(GetLastError(), kErrorAccessDenied);
}

std::uint32_t next_number = 0;
std::uint32_t CountUp() { return next_number++; }
std::uint32_t AlwaysSeven() {
  ++next_number;
  return 7;
}

TEST(MakeTemporaryFile, TakenNamesArePassedOverAndLeftAlone) {
  const TestFolder folder;
  WriteBytes(folder / "qmo00000001.tmp", "first");
  WriteBytes(folder / "qmo00000002.tmp", "second");
  next_number = 1;
  char16_t path[kMaxPath];
  EXPECT_EQ(MakeTemporaryFile(folder.Wide("").c_str(), u"qmo", path, &CountUp), 3U);
  EXPECT_EQ(PathToNative(path), folder / "qmo00000003.tmp");
  EXPECT_EQ(ReadBytes(folder / "qmo00000001.tmp"), "first");
}

TEST(MakeTemporaryFile, GivesUpWhenEveryNameIsTaken) {
  const TestFolder folder;
  WriteBytes(folder / "qmo00000007.tmp", "taken");
  next_number = 0;
  char16_t path[kMaxPath];
  EXPECT_EQ(MakeTemporaryFile(folder.Wide("").c_str(), u"qmo", path, &AlwaysSeven), 0U);
  EXPECT_EQ(GetLastError(), kErrorFileExists);
  EXPECT_EQ(next_number, static_cast<std::uint32_t>(kTemporaryNameTries));
}

TEST(MakeTemporaryFile, ANumberOfZeroStillReadsAsSuccess) {
  const TestFolder folder;
  next_number = 0;
  char16_t path[kMaxPath];
  EXPECT_EQ(MakeTemporaryFile(folder.Wide("").c_str(), u"qmo", path, &CountUp), 1U);
}

TEST(DeleteFileW, DeletesFilesOnlyAndSaysWhyNot) {
  const TestFolder folder;
  WriteBytes(folder / "f", "");
  EXPECT_TRUE(DeleteFileW(folder.Wide("f").c_str()));
  EXPECT_FALSE(std::filesystem::exists(folder / "f"));
  EXPECT_FALSE(DeleteFileW(folder.Wide("f").c_str()));
  EXPECT_EQ(GetLastError(), kErrorFileNotFound);
  EXPECT_FALSE(DeleteFileW(folder.Wide("none/f").c_str()));
  EXPECT_EQ(GetLastError(), kErrorPathNotFound);
  EXPECT_FALSE(DeleteFileW(folder.Wide("").c_str()));
  EXPECT_EQ(GetLastError(), kErrorAccessDenied);
  EXPECT_FALSE(DeleteFileW(nullptr));
}

}  // namespace
}  // namespace tamu::platform
