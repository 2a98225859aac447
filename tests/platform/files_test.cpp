#include "platform/files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>

#include <string>
#include <thread>

#include "platform/test_folder.h"

namespace tamu::platform {
namespace {

FileHandle Open(const std::u16string& path, std::uint32_t access, std::uint32_t disposition) {
  SetLastError(0);
  return CreateFileW(path.c_str(), access, 0, nullptr, disposition, 0, 0);
}

std::string ReadAll(FileHandle file) {
  std::string bytes;
  char buffer[7];
  std::uint32_t done = 0;
  while (ReadFile(file, buffer, sizeof buffer, &done, nullptr) && done > 0)
    bytes.append(buffer, done);
  return bytes;
}

bool Write(FileHandle file, std::string_view bytes) {
  std::uint32_t done = 0;
  return WriteFile(file, bytes.data(), static_cast<std::uint32_t>(bytes.size()), &done, nullptr) &&
         done == bytes.size();
}

// A limit of the process while it lives.
class ScopedLimit {
 public:
  ScopedLimit(decltype(RLIMIT_FSIZE) which, rlim_t soft) : which_(which) {
    getrlimit(which_, &before_);
    const rlimit now = {soft, before_.rlim_max};
    setrlimit(which_, &now);
  }
  ~ScopedLimit() { setrlimit(which_, &before_); }
  ScopedLimit(const ScopedLimit&) = delete;
  ScopedLimit& operator=(const ScopedLimit&) = delete;

 private:
  decltype(RLIMIT_FSIZE) which_;
  rlimit before_ = {};
};

TEST(CreateFileW, DispositionsTreatAnExistingFileAsTheySay) {
  const TestFolder folder;
  WriteBytes(folder / "f", "old");
  const std::u16string path = folder.Wide("f");

  EXPECT_EQ(Open(path, kGenericWrite, kCreateNew), kInvalidHandle);
  EXPECT_EQ(GetLastError(), kErrorFileExists);
  const FileHandle existing = Open(path, kGenericRead, kOpenExisting);
  EXPECT_EQ(ReadAll(existing), "old");
  EXPECT_TRUE(CloseHandle(existing));
  const FileHandle always = Open(path, kGenericRead, kOpenAlways);
  EXPECT_EQ(ReadAll(always), "old");
  EXPECT_TRUE(CloseHandle(always));
  EXPECT_TRUE(CloseHandle(Open(path, kGenericWrite, kCreateAlways)));
  EXPECT_EQ(ReadBytes(folder / "f"), "");
}

TEST(CreateFileW, DispositionsTreatAMissingFileAsTheySay) {
  const TestFolder folder;
  EXPECT_EQ(Open(folder.Wide("none"), kGenericRead, kOpenExisting), kInvalidHandle);
  EXPECT_EQ(GetLastError(), kErrorFileNotFound);
  for (const std::uint32_t disposition : {kCreateNew, kCreateAlways, kOpenAlways}) {
    const std::string name = std::to_string(disposition);
    EXPECT_TRUE(CloseHandle(Open(folder.Wide(name), kGenericWrite, disposition)));
    EXPECT_TRUE(std::filesystem::exists(folder / name));
  }
}

TEST(CreateFileW, FailuresHaveThePlatformsNumbers) {
  const TestFolder folder;
  WriteBytes(folder / "file", "");
  EXPECT_EQ(Open(folder.Wide("none/f"), kGenericWrite, kCreateAlways), kInvalidHandle);
  EXPECT_EQ(GetLastError(), kErrorPathNotFound);
  EXPECT_EQ(Open(folder.Wide("file/f"), kGenericRead, kOpenExisting), kInvalidHandle);
  EXPECT_EQ(GetLastError(), kErrorPathNotFound);
  EXPECT_EQ(Open(folder.Wide(std::string(300, 'n') + "/f"), kGenericWrite, kCreateAlways),
            kInvalidHandle);
  EXPECT_EQ(GetLastError(), kErrorFilenameExcedRange);
  EXPECT_EQ(Open(u"", kGenericRead, kOpenExisting), kInvalidHandle);
  EXPECT_EQ(GetLastError(), kErrorPathNotFound);
  EXPECT_EQ(Open(folder.Wide("file"), 0, kOpenExisting), kInvalidHandle);
  EXPECT_EQ(GetLastError(), kErrorInvalidParameter);
  EXPECT_EQ(Open(folder.Wide("file"), kGenericRead, 99), kInvalidHandle);
  EXPECT_EQ(GetLastError(), kErrorInvalidParameter);
  EXPECT_EQ(CreateFileW(nullptr, kGenericRead, 0, nullptr, kOpenExisting, 0, 0), kInvalidHandle);
}

TEST(CreateFileW, AFolderDoesNotOpen) {
  const TestFolder folder;
  for (const std::uint32_t access : {kGenericRead, kGenericWrite, kGenericRead | kGenericWrite}) {
    EXPECT_EQ(Open(folder.Wide(""), access, kOpenExisting), kInvalidHandle);
    EXPECT_EQ(GetLastError(), kErrorAccessDenied);
  }
}

TEST(CreateFileW, WithoutPermissionItIsAccessDenied) {
  const TestFolder folder;
  WriteBytes(folder / "secret", "x");
  chmod(folder.path().c_str(), 0755);
  chmod((folder / "secret").c_str(), 0);
  const WithoutPrivileges nobody;
  EXPECT_EQ(Open(folder.Wide("secret"), kGenericRead, kOpenExisting), kInvalidHandle);
  EXPECT_EQ(GetLastError(), kErrorAccessDenied);
}

TEST(CreateFileW, TooManyOpenFilesIsError4) {
  const TestFolder folder;
  const ScopedLimit limit(RLIMIT_NOFILE, 0);
  EXPECT_EQ(Open(folder.Wide("f"), kGenericWrite, kCreateNew), kInvalidHandle);
  EXPECT_EQ(GetLastError(), kErrorTooManyOpenFiles);
}

TEST(CreateFileW, NewFilesFollowTheUmaskAndStayOutOfChildren) {
  const TestFolder folder;
  const mode_t before = umask(027);
  const FileHandle file = Open(folder.Wide("f"), kGenericWrite, kCreateNew);
  umask(before);
  struct stat status = {};
  ASSERT_EQ(stat((folder / "f").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0640U);
  EXPECT_NE(fcntl(static_cast<int>(file), F_GETFD) & FD_CLOEXEC, 0);
  EXPECT_TRUE(CloseHandle(file));
}

TEST(CreateFileW, NamesThatAreNotUtf8OpenTheFileOfThoseBytes) {
  const TestFolder folder;
  WriteBytes(folder / "M\xFCller.vcf", "content");
  const FileHandle file = Open(folder.Wide("M\xFCller.vcf"), kGenericRead, kOpenExisting);
  ASSERT_NE(file, kInvalidHandle);
  EXPECT_EQ(ReadAll(file), "content");
  EXPECT_TRUE(CloseHandle(file));
}

TEST(WriteFile, AppendGoesToTheEndWhateverThePosition) {
  const TestFolder folder;
  WriteBytes(folder / "f", "old");
  const FileHandle file = Open(folder.Wide("f"), kGenericRead | kFileAppendData, kOpenAlways);
  std::int64_t position = -1;
  ASSERT_TRUE(SetFilePointerEx(file, 0, &position, kFileBegin));
  EXPECT_TRUE(Write(file, "new"));
  EXPECT_TRUE(CloseHandle(file));
  EXPECT_EQ(ReadBytes(folder / "f"), "oldnew");
}

TEST(WriteFile, OnAFileOpenForReadingFailsAndSaysNothingWasWritten) {
  const TestFolder folder;
  WriteBytes(folder / "f", "old");
  const FileHandle file = Open(folder.Wide("f"), kGenericRead, kOpenExisting);
  std::uint32_t done = 9;
  EXPECT_FALSE(WriteFile(file, "x", 1, &done, nullptr));
  EXPECT_EQ(done, 0U);
  EXPECT_EQ(GetLastError(), kErrorInvalidHandle);
  EXPECT_TRUE(CloseHandle(file));
}

TEST(WriteFile, AFullDiskIsError112) {
  const FileHandle file = Open(u"/dev/full", kGenericWrite, kOpenExisting);
  if (file == kInvalidHandle) GTEST_SKIP() << "no /dev/full here";
  std::uint32_t done = 9;
  EXPECT_FALSE(WriteFile(file, "x", 1, &done, nullptr));
  EXPECT_EQ(done, 0U);
  EXPECT_EQ(GetLastError(), kErrorDiskFull);
  EXPECT_TRUE(CloseHandle(file));
}

TEST(WriteFile, WhatWasWrittenBeforeTheFailureIsCounted) {
  const TestFolder folder;
  const FileHandle file = Open(folder.Wide("f"), kGenericWrite, kCreateNew);
  const auto before = signal(SIGXFSZ, SIG_IGN);
  std::uint32_t done = 0;
  {
    const ScopedLimit limit(RLIMIT_FSIZE, 5);
    EXPECT_FALSE(WriteFile(file, "12345678", 8, &done, nullptr));
  }
  signal(SIGXFSZ, before);
  EXPECT_EQ(done, 5U);
  EXPECT_EQ(GetLastError(), kErrorFileTooLarge);
  EXPECT_TRUE(CloseHandle(file));
}

TEST(WriteFile, APipeWithoutReaderIsAnErrorAndNoSignal) {
  const TestFolder folder;
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  const int reader = open((folder / "pipe").c_str(), O_RDONLY | O_NONBLOCK);
  const FileHandle file = Open(folder.Wide("pipe"), kGenericWrite, kOpenExisting);
  ASSERT_NE(file, kInvalidHandle);
  close(reader);
  EXPECT_FALSE(Write(file, "x"));  // the signal would end the test
  EXPECT_EQ(GetLastError(), kErrorBrokenPipe);
  sigset_t pending;
  sigemptyset(&pending);
  sigpending(&pending);
  EXPECT_EQ(sigismember(&pending, SIGPIPE), 0);
  sigset_t blocked;
  sigemptyset(&blocked);
  pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
  EXPECT_EQ(sigismember(&blocked, SIGPIPE), 0);
  EXPECT_TRUE(CloseHandle(file));
}

void OnAlarm(int /*signal*/) {}

TEST(WriteFile, SignalsNeitherInterruptNorCutWhatGoesThroughAPipe) {
  const TestFolder folder;
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  struct sigaction action = {};
  struct sigaction before = {};
  action.sa_handler = &OnAlarm;  // without SA_RESTART: calls are interrupted
  sigaction(SIGALRM, &action, &before);
  constexpr itimerval kOften = {{0, 500}, {0, 500}};
  constexpr itimerval kNever = {};
  std::string received;
  std::thread reader([&] {
    const FileHandle file = Open(folder.Wide("pipe"), kGenericRead, kOpenExisting);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    received = ReadAll(file);
    CloseHandle(file);
  });
  setitimer(ITIMER_REAL, &kOften, nullptr);
  const FileHandle file = Open(folder.Wide("pipe"), kGenericWrite, kOpenExisting);
  const bool written = Write(file, std::string(300000, 'x'));
  CloseHandle(file);
  reader.join();
  setitimer(ITIMER_REAL, &kNever, nullptr);
  sigaction(SIGALRM, &before, nullptr);
  EXPECT_TRUE(written);
  EXPECT_EQ(received.size(), 300000U);
}

TEST(SetFilePointerEx, MovesFromStartPositionAndEndBeyondTwoGibibytes) {
  const TestFolder folder;
  const FileHandle file = Open(folder.Wide("f"), kGenericRead | kGenericWrite, kCreateNew);
  constexpr std::int64_t kFar = (std::int64_t{5} << 30) + 3;
  std::int64_t position = 0;
  ASSERT_TRUE(SetFilePointerEx(file, kFar, &position, kFileBegin));
  EXPECT_EQ(position, kFar);
  ASSERT_TRUE(Write(file, "end"));
  ASSERT_TRUE(SetFilePointerEx(file, -3, nullptr, kFileCurrent));
  EXPECT_EQ(ReadAll(file), "end");
  ASSERT_TRUE(SetFilePointerEx(file, -1, &position, kFileEnd));
  EXPECT_EQ(position, kFar + 2);
  EXPECT_EQ(ReadAll(file), "d");
  EXPECT_TRUE(CloseHandle(file));
}

TEST(SetFilePointerEx, RefusesNegativePositionsUnknownMethodsAndPipes) {
  const TestFolder folder;
  const FileHandle file = Open(folder.Wide("f"), kGenericWrite, kCreateNew);
  EXPECT_FALSE(SetFilePointerEx(file, -1, nullptr, kFileBegin));
  EXPECT_EQ(GetLastError(), kErrorNegativeSeek);
  EXPECT_FALSE(SetFilePointerEx(file, 0, nullptr, 3));
  EXPECT_EQ(GetLastError(), kErrorInvalidParameter);
  EXPECT_TRUE(CloseHandle(file));

  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  const FileHandle pipe = Open(folder.Wide("pipe"), kGenericRead | kGenericWrite, kOpenExisting);
  ASSERT_NE(pipe, kInvalidHandle);
  EXPECT_FALSE(SetFilePointerEx(pipe, 0, nullptr, kFileBegin));
  EXPECT_EQ(GetLastError(), kErrorSeekOnDevice);
  EXPECT_TRUE(CloseHandle(pipe));
}

TEST(CloseHandle, HandlesThatAreNotOpenAreInvalid) {
  for (const FileHandle handle : {kInvalidHandle, FileHandle{-2}, FileHandle{0x7FFFFFF0}}) {
    SetLastError(0);
    EXPECT_FALSE(CloseHandle(handle));
    EXPECT_EQ(GetLastError(), kErrorInvalidHandle);
    char byte = 0;
    EXPECT_FALSE(ReadFile(handle, &byte, 1, nullptr, nullptr));
    EXPECT_FALSE(WriteFile(handle, &byte, 1, nullptr, nullptr));
    EXPECT_FALSE(SetFilePointerEx(handle, 0, nullptr, kFileBegin));
  }
}

TEST(Files, SuccessLeavesTheLastErrorAlone) {
  const TestFolder folder;
  const std::u16string path = folder.Wide("f");
  SetLastError(4711);
  const FileHandle file = CreateFileW(path.c_str(), kGenericWrite, 0, nullptr, kCreateAlways, 0, 0);
  EXPECT_TRUE(Write(file, "x"));
  EXPECT_TRUE(CloseHandle(file));
  EXPECT_TRUE(DeleteFileW(path.c_str()));
  EXPECT_EQ(GetLastError(), 4711U);
}

}  // namespace
}  // namespace tamu::platform
