#include "platform/last_error.h"

#include <errno.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <thread>

#include "platform/linux/errors.h"
#include "platform/test_folder.h"

namespace tamu::platform {
namespace {

TEST(LastError, IsTheCallingThreadsOwn) {
  SetLastError(5);
  std::uint32_t in_thread = 1;
  std::thread([&] {
    in_thread = GetLastError();
    SetLastError(80);
  }).join();
  EXPECT_EQ(in_thread, 0U);
  EXPECT_EQ(GetLastError(), 5U);
}

TEST(ErrorText, KnownNumbersHaveTextsAndOthersTheNumber) {
  EXPECT_STREQ(ErrorText(kErrorFileNotFound), "No such file or directory");
  EXPECT_STREQ(ErrorText(1234), "error 1234");
  EXPECT_STREQ(ErrorText(0xFFFFFFFFU), "error 4294967295");
}

TEST(ErrorText, EveryConstantHasAText) {
  const std::string header = ReadBytes(TAMU_TEST_DATA "/../../src/platform/last_error.h");
  int count = 0;
  for (std::size_t at = header.find(" kError"); at != std::string::npos;
       at = header.find(" kError", at + 1), ++count) {
    const auto error =
        static_cast<std::uint32_t>(std::stoul(header.substr(header.find('=', at) + 1)));
    EXPECT_NE(std::strncmp(ErrorText(error), "error ", 6), 0) << error;
  }
  EXPECT_GE(count, 25);
}

TEST(ErrorFromErrno, MapsToThePlatformsNumbers) {
  EXPECT_EQ(ErrorFromErrno(ENOENT), 2U);
  EXPECT_EQ(ErrorFromErrno(ENOTDIR), 3U);
  EXPECT_EQ(ErrorFromErrno(EMFILE), 4U);
  EXPECT_EQ(ErrorFromErrno(EACCES), 5U);
  EXPECT_EQ(ErrorFromErrno(EPERM), 5U);
  EXPECT_EQ(ErrorFromErrno(EISDIR), 5U);
  EXPECT_EQ(ErrorFromErrno(EBADF), 6U);
  EXPECT_EQ(ErrorFromErrno(ENOMEM), 8U);
  EXPECT_EQ(ErrorFromErrno(EROFS), 19U);
  EXPECT_EQ(ErrorFromErrno(EIO), 31U);
  EXPECT_EQ(ErrorFromErrno(EEXIST), 80U);
  EXPECT_EQ(ErrorFromErrno(EPIPE), 109U);
  EXPECT_EQ(ErrorFromErrno(ENOSPC), 112U);
  EXPECT_EQ(ErrorFromErrno(EDQUOT), 112U);
  EXPECT_EQ(ErrorFromErrno(ENAMETOOLONG), 206U);
  EXPECT_EQ(ErrorFromErrno(EFBIG), 223U);
  EXPECT_EQ(ErrorFromErrno(99999), 31U);
}

TEST(ErrorForPath, TellsAMissingFolderFromAMissingFile) {
  const TestFolder folder;
  EXPECT_EQ(ErrorForPath(ENOENT, folder / "file"), 2U);
  EXPECT_EQ(ErrorForPath(ENOENT, folder / "folder/"), 2U);
  EXPECT_EQ(ErrorForPath(ENOENT, folder / "none/file"), 3U);
  EXPECT_EQ(ErrorForPath(ENOENT, "no-such-file-here"), 2U);
  EXPECT_EQ(ErrorForPath(ENOENT, "/no-such-file-here"), 2U);
  EXPECT_EQ(ErrorForPath(ENOENT, ""), 3U);
  EXPECT_EQ(ErrorForPath(EACCES, folder / "none/file"), 5U);
}

}  // namespace
}  // namespace tamu::platform
