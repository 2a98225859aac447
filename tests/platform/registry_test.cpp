#include "platform/registry.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <string>
#include <vector>

#include "platform/test_folder.h"

namespace tamu::platform {
namespace {

constexpr char16_t kPath[] = u"Software\\Velmora\\BTConfig";
constexpr auto kNotFound = static_cast<std::int32_t>(kErrorFileNotFound);
constexpr auto kDenied = static_cast<std::int32_t>(kErrorAccessDenied);
constexpr auto kInvalid = static_cast<std::int32_t>(kErrorInvalidParameter);
constexpr auto kBadHandle = static_cast<std::int32_t>(kErrorInvalidHandle);
constexpr auto kMore = static_cast<std::int32_t>(kErrorMoreData);

constexpr char kHead[] = "REGEDIT4\n[HKEY_LOCAL_MACHINE\\Software\\Velmora\\BTConfig]\n";

RegistryKey OpenKey(std::uint32_t access = kKeyRead) {
  RegistryKey key = 0;
  EXPECT_EQ(RegOpenKeyExW(kHkeyLocalMachine, kPath, 0, access, &key), 0);
  return key;
}

RegistryKey CreateKey(const char16_t* path = kPath, std::uint32_t* disposition = nullptr) {
  RegistryKey key = 0;
  EXPECT_EQ(RegCreateKeyExW(kHkeyLocalMachine, path, 0, nullptr, 0, kKeyRead | kKeyWrite, nullptr,
                            &key, disposition),
            0);
  return key;
}

std::int32_t SetNumber(RegistryKey key, const char16_t* name, std::uint32_t number) {
  return RegSetValueExW(key, name, 0, kRegDword, reinterpret_cast<const std::uint8_t*>(&number),
                        sizeof number);
}

std::int32_t SetText(RegistryKey key, const char16_t* name, const std::u16string& text) {
  return RegSetValueExW(key, name, 0, kRegSz, reinterpret_cast<const std::uint8_t*>(text.c_str()),
                        static_cast<std::uint32_t>((text.size() + 1) * 2));
}

// -1 when the value is not a number.
std::int64_t GetNumber(RegistryKey key, const char16_t* name) {
  std::uint32_t number = 0;
  std::uint32_t type = 0;
  std::uint32_t size = sizeof number;
  const std::int32_t status =
      RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<std::uint8_t*>(&number), &size);
  return status == 0 && type == kRegDword && size == 4 ? std::int64_t{number} : -1;
}

std::u16string GetText(RegistryKey key, const char16_t* name) {
  char16_t text[512] = {};
  std::uint32_t type = 0;
  std::uint32_t size = sizeof text;
  const std::int32_t status =
      RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<std::uint8_t*>(text), &size);
  if (status != 0 || type != kRegSz || size < 2 || text[size / 2 - 1] != 0) return u"(none)";
  return {text, size / 2 - 1};
}

TEST(RegOpenKeyExW, WithoutAFileNothingIsThereAndNothingIsMade) {
  const TestDevice device;
  RegistryKey key = 99;
  EXPECT_EQ(RegOpenKeyExW(kHkeyLocalMachine, kPath, 0, kKeyRead, &key), kNotFound);
  EXPECT_EQ(key, 0U);
  EXPECT_TRUE(std::filesystem::is_empty(device.path()));
  EXPECT_TRUE(RegistryProblems().empty());
}

TEST(RegOpenKeyExW, FindsKeysWithoutRegardToCaseAndBelowOpenKeys) {
  const TestDevice device;
  WriteBytes(device.registry(), std::string(kHead) + "\"n\"=dword:5\n");
  RegistryKey outer = 0;
  RegistryKey inner = 0;
  ASSERT_EQ(RegOpenKeyExW(kHkeyLocalMachine, u"SOFTWARE", 0, kKeyRead, &outer), 0);
  ASSERT_EQ(RegOpenKeyExW(outer, u"velmora\\BTCONFIG", 0, kKeyRead, &inner), 0);
  EXPECT_EQ(GetNumber(inner, u"N"), 5);
  EXPECT_EQ(RegOpenKeyExW(kHkeyCurrentUser, kPath, 0, kKeyRead, &inner), kNotFound);
  EXPECT_EQ(RegOpenKeyExW(outer, u"velmora\\\\BTCONFIG", 0, kKeyRead, &inner), kInvalid);
  EXPECT_EQ(RegOpenKeyExW(outer, u"velmora", 0, kKeyRead, nullptr), kInvalid);
  EXPECT_EQ(RegOpenKeyExW(12345, u"velmora", 0, kKeyRead, &inner), kBadHandle);
}

TEST(RegCloseKey, AClosedHandleIsInvalidAlsoWhenItsPlaceIsTakenAgain) {
  const TestDevice device;
  WriteBytes(device.registry(), kHead);
  const RegistryKey first = OpenKey();
  EXPECT_EQ(RegCloseKey(first), 0);
  EXPECT_EQ(RegCloseKey(first), kBadHandle);
  const RegistryKey second = OpenKey();
  EXPECT_NE(first, second);
  std::uint32_t size = 0;
  EXPECT_EQ(RegQueryValueExW(first, u"n", nullptr, nullptr, nullptr, &size), kBadHandle);
  EXPECT_EQ(SetNumber(first, u"n", 1), kBadHandle);
  EXPECT_EQ(RegCloseKey(second), 0);
  EXPECT_EQ(RegCloseKey(0), kBadHandle);
  EXPECT_EQ(RegCloseKey(~RegistryKey{0}), kBadHandle);
  EXPECT_EQ(RegCloseKey(kHkeyLocalMachine), 0);
}

TEST(RegQueryValueExW, TellsTypeAndSizeAndFillsOnlyABufferThatHoldsAll) {
  const TestDevice device;
  WriteBytes(device.registry(), std::string(kHead) + "\"s\"=\"abc\"\n@=\"d\"\n");
  const RegistryKey key = OpenKey();
  std::uint32_t type = 0;
  std::uint32_t size = 77;
  EXPECT_EQ(RegQueryValueExW(key, u"s", nullptr, &type, nullptr, &size), 0);
  EXPECT_EQ(type, kRegSz);
  EXPECT_EQ(size, 8U);
  EXPECT_EQ(RegQueryValueExW(key, u"s", nullptr, nullptr, nullptr, nullptr), 0);

  char16_t buffer[4] = {u'x', u'x', u'x', u'x'};
  auto* bytes = reinterpret_cast<std::uint8_t*>(buffer);
  size = 7;
  EXPECT_EQ(RegQueryValueExW(key, u"s", nullptr, nullptr, bytes, &size), kMore);
  EXPECT_EQ(size, 8U);
  EXPECT_EQ(buffer[0], u'x');
  EXPECT_EQ(RegQueryValueExW(key, u"s", nullptr, nullptr, bytes, &size), 0);
  EXPECT_EQ(std::u16string(buffer), u"abc");
  EXPECT_EQ(RegQueryValueExW(key, u"s", nullptr, nullptr, bytes, nullptr), kInvalid);
  EXPECT_EQ(RegQueryValueExW(key, u"none", nullptr, nullptr, bytes, &size), kNotFound);
  EXPECT_EQ(GetText(key, nullptr), u"d");
  EXPECT_EQ(GetText(key, u""), u"d");
  EXPECT_EQ(RegCloseKey(key), 0);
}

TEST(RegCreateKeyExW, MakesTheFolderTheFileAndEveryKeyAbove) {
  const TestFolder folder;
  const ScopedVariable home("TAMU_HOME", (folder / "new/device").c_str());
  std::uint32_t disposition = 0;
  RegCloseKey(CreateKey(kPath, &disposition));
  EXPECT_EQ(disposition, 1U);
  RegCloseKey(CreateKey(u"software\\velmora", &disposition));
  EXPECT_EQ(disposition, 2U);
  EXPECT_EQ(ReadBytes(folder / "new/device/registry.reg"),
            "Windows Registry Editor Version "
            "5.00\n\n[HKEY_LOCAL_MACHINE\\Software\\Velmora\\BTConfig]\n");
  struct stat status = {};
  ASSERT_EQ(stat((folder / "new/device").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0700U);
  ASSERT_EQ(stat((folder / "new/device/registry.reg").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
  EXPECT_FALSE(std::filesystem::exists(folder / "new/device/registry.reg.new"));
}

TEST(RegCreateKeyExW, RefusesNamesThatCannotBeWritten) {
  const TestDevice device;
  RegistryKey key = 0;
  for (const char16_t* path : {u"a\nb", u"\xD800", u"a];b", u"a\\\\b", u"a\x01"}) {
    EXPECT_EQ(RegCreateKeyExW(kHkeyLocalMachine, path, 0, nullptr, 0, 0, nullptr, &key, nullptr),
              kInvalid);
  }
  EXPECT_FALSE(std::filesystem::exists(device.registry()));
}

TEST(RegCreateKeyExW, WithoutADeviceFolderThePathIsMissing) {
  const ScopedVariable own("TAMU_HOME", nullptr);
  const ScopedVariable data("XDG_DATA_HOME", nullptr);
  const ScopedVariable home("HOME", nullptr);
  RegistryKey key = 0;
  EXPECT_EQ(RegCreateKeyExW(kHkeyLocalMachine, kPath, 0, nullptr, 0, 0, nullptr, &key, nullptr),
            static_cast<std::int32_t>(kErrorPathNotFound));
  EXPECT_EQ(RegOpenKeyExW(kHkeyLocalMachine, kPath, 0, kKeyRead, &key), kNotFound);
}

TEST(RegSetValueExW, WhatWasSetIsReadBackAndOnDisk) {
  const TestDevice device;
  const RegistryKey key = CreateKey();
  EXPECT_EQ(SetNumber(key, u"Number", 0x7F000001), 0);
  const std::u16string text = u"G\u00E4ste \"1\\2\"\r\nline \U0001F600 \xD800";
  EXPECT_EQ(SetText(key, u"Text", text), 0);
  EXPECT_EQ(SetText(key, nullptr, u"the default"), 0);
  EXPECT_EQ(GetNumber(key, u"NUMBER"), 0x7F000001);
  EXPECT_EQ(GetText(key, u"text"), text);
  EXPECT_EQ(GetText(key, nullptr), u"the default");
  EXPECT_NE(ReadBytes(device.registry()).find("\"Number\"=dword:7f000001\n"), std::string::npos);
  EXPECT_TRUE(RegistryProblems().empty());
  EXPECT_EQ(RegCloseKey(key), 0);
}

TEST(RegSetValueExW, StringsGetATerminatorAndOtherTypesKeepTheirBytes) {
  const TestDevice device;
  const RegistryKey key = CreateKey();
  const std::uint8_t bytes[] = {0x41, 0, 0x42, 0, 0x43};
  EXPECT_EQ(RegSetValueExW(key, u"s", 0, kRegSz, bytes, 4), 0);
  EXPECT_EQ(GetText(key, u"s"), u"AB");
  EXPECT_EQ(RegSetValueExW(key, u"e", 0, kRegSz, nullptr, 0), 0);
  EXPECT_EQ(GetText(key, u"e"), u"");
  EXPECT_EQ(RegSetValueExW(key, u"s", 0, kRegSz, bytes, 5), kInvalid);
  EXPECT_EQ(RegSetValueExW(key, u"s", 0, kRegSz, nullptr, 4), kInvalid);
  EXPECT_EQ(RegSetValueExW(key, u"b", 0, 7, bytes, 5), 0);
  std::uint32_t type = 0;
  std::uint32_t size = 0;
  EXPECT_EQ(RegQueryValueExW(key, u"b", nullptr, &type, nullptr, &size), 0);
  EXPECT_EQ(type, 7U);
  EXPECT_EQ(size, 5U);
  EXPECT_EQ(RegSetValueExW(key, u"a\nb", 0, 7, bytes, 5), kInvalid);
  EXPECT_EQ(RegCloseKey(key), 0);
}

TEST(RegSetValueExW, AccessIsWhatWasAskedFor) {
  const TestDevice device;
  WriteBytes(device.registry(), std::string(kHead) + "\"n\"=dword:5\n");
  const RegistryKey reader = OpenKey(kKeyRead);
  const RegistryKey writer = OpenKey(kKeyWrite);
  EXPECT_EQ(SetNumber(reader, u"n", 6), kDenied);
  EXPECT_EQ(GetNumber(writer, u"n"), -1);
  EXPECT_EQ(SetNumber(writer, u"n", 6), 0);
  EXPECT_EQ(GetNumber(reader, u"n"), 6);
  RegistryKey made = 0;
  EXPECT_EQ(RegCreateKeyExW(reader, u"sub", 0, nullptr, 0, 0, nullptr, &made, nullptr), kDenied);
  RegCloseKey(reader);
  RegCloseKey(writer);
}

TEST(RegSetValueExW, KeepsModeCommentsAndDamagedLines) {
  const TestDevice device;
  const std::string before =
      std::string(kHead) + "; mine\nbroken line\n\"n\"=dword:00000005 ; five\n";
  WriteBytes(device.registry(), before);
  chmod(device.registry().c_str(), 0640);
  const RegistryKey key = OpenKey(kKeyRead | kKeyWrite);
  EXPECT_EQ(SetNumber(key, u"n", 6), 0);
  RegCloseKey(key);
  std::string expected = before;
  expected.replace(expected.find("00000005"), 8, "00000006");
  EXPECT_EQ(ReadBytes(device.registry()), expected);
  struct stat status = {};
  ASSERT_EQ(stat(device.registry().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0640U);
  const std::vector<RegistryProblem> problems = RegistryProblems();
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_EQ(problems[0].line, 4U);
  EXPECT_EQ(problems[0].file, device.registry());
}

TEST(RegSetValueExW, ALinkedFileStaysLinked) {
  const TestDevice device;
  const TestFolder elsewhere;
  WriteBytes(elsewhere / "settings.reg", kHead);
  ASSERT_EQ(symlink((elsewhere / "settings.reg").c_str(), device.registry().c_str()), 0);
  const RegistryKey key = OpenKey(kKeyWrite);
  EXPECT_EQ(SetNumber(key, u"n", 1), 0);
  RegCloseKey(key);
  EXPECT_TRUE(std::filesystem::is_symlink(device.registry()));
  EXPECT_NE(ReadBytes(elsewhere / "settings.reg").find("\"n\"=dword:00000001"), std::string::npos);
}

TEST(RegSetValueExW, AKeyThatWasRemovedMeanwhileIsSaidSo) {
  const TestDevice device;
  const RegistryKey key = CreateKey();
  WriteBytes(device.registry(), "REGEDIT4\n");
  EXPECT_EQ(SetNumber(key, u"n", 1), static_cast<std::int32_t>(kErrorKeyDeleted));
  std::uint32_t size = 0;
  EXPECT_EQ(RegQueryValueExW(key, u"n", nullptr, nullptr, nullptr, &size),
            static_cast<std::int32_t>(kErrorKeyDeleted));
  RegistryKey made = 0;
  EXPECT_EQ(RegCreateKeyExW(key, u"", 0, nullptr, 0, 0, nullptr, &made, nullptr),
            static_cast<std::int32_t>(kErrorKeyDeleted));
  RegCloseKey(key);
}

TEST(RegSetValueExW, AWriteThatFailsLeavesTheOldFile) {
  const TestDevice device;
  const std::string before = std::string(kHead) + "\"n\"=dword:00000005\n";
  WriteBytes(device.registry(), before);
  const RegistryKey key = OpenKey(kKeyRead | kKeyWrite);
  const auto handler = signal(SIGXFSZ, SIG_IGN);
  rlimit limit = {};
  getrlimit(RLIMIT_FSIZE, &limit);
  const rlimit small = {10, limit.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);
  const std::int32_t status = SetNumber(key, u"n", 6);
  setrlimit(RLIMIT_FSIZE, &limit);
  signal(SIGXFSZ, handler);
  EXPECT_EQ(status, static_cast<std::int32_t>(kErrorFileTooLarge));
  EXPECT_EQ(ReadBytes(device.registry()), before);
  EXPECT_FALSE(std::filesystem::exists(device.registry() + ".new"));
  EXPECT_EQ(GetNumber(key, u"n"), 5);
  RegCloseKey(key);
}

TEST(RegSetValueExW, WhatADeadProcessLeftBesideIsNoObstacle) {
  const TestDevice device;
  WriteBytes(device.registry() + ".new", "half of a");
  const RegistryKey key = CreateKey();
  EXPECT_EQ(SetNumber(key, u"n", 6), 0);
  EXPECT_EQ(GetNumber(key, u"n"), 6);
  RegCloseKey(key);
}

TEST(Registry, WithoutPermissionItIsAccessDeniedAndReported) {
  const TestDevice device;
  WriteBytes(device.registry(), kHead);
  const RegistryKey key = OpenKey(kKeyRead | kKeyWrite);
  chmod(device.path().c_str(), 0555);
  {
    const WithoutPrivileges nobody;
    EXPECT_EQ(SetNumber(key, u"n", 6), kDenied);
  }
  chmod(device.path().c_str(), 0755);
  chmod(device.registry().c_str(), 0);
  {
    const WithoutPrivileges nobody;
    RegistryKey other = 0;
    EXPECT_EQ(RegOpenKeyExW(kHkeyLocalMachine, kPath, 0, kKeyRead, &other), kDenied);
    ASSERT_EQ(RegistryProblems().size(), 1U);
    EXPECT_EQ(RegistryProblems()[0].line, 0U);
  }
  RegCloseKey(key);
}

TEST(Registry, WhatIsNoFileIsAccessDeniedAndHoldsNobodyUp) {
  const TestDevice device;
  RegistryKey key = 0;
  ASSERT_EQ(mkfifo(device.registry().c_str(), 0600), 0);
  EXPECT_EQ(RegOpenKeyExW(kHkeyLocalMachine, kPath, 0, kKeyRead, &key), kDenied);
  std::filesystem::remove(device.registry());
  std::filesystem::create_directory(device.registry());
  EXPECT_EQ(RegOpenKeyExW(kHkeyLocalMachine, kPath, 0, kKeyRead, &key), kDenied);
  EXPECT_EQ(RegCreateKeyExW(kHkeyLocalMachine, kPath, 0, nullptr, 0, 0, nullptr, &key, nullptr),
            kDenied);
}

TEST(Registry, AFileWhereTheFolderShouldBeIsAMissingPath) {
  const TestFolder folder;
  WriteBytes(folder / "file", "");
  const ScopedVariable home("TAMU_HOME", (folder / "file").c_str());
  RegistryKey key = 0;
  EXPECT_EQ(RegOpenKeyExW(kHkeyLocalMachine, kPath, 0, kKeyRead, &key), kNotFound);
  EXPECT_EQ(RegCreateKeyExW(kHkeyLocalMachine, kPath, 0, nullptr, 0, 0, nullptr, &key, nullptr),
            static_cast<std::int32_t>(kErrorPathNotFound));
}

TEST(Registry, SeesEveryChangeOfTheFileAlsoOneOfTheSameSizeAtTheSameTime) {
  const TestDevice device;
  WriteBytes(device.registry(), std::string(kHead) + "\"n\"=dword:0\n");
  const RegistryKey key = OpenKey();
  for (int round = 0; round < 200; ++round) {
    const char digit = static_cast<char>('0' + round % 10);
    // Over the old content, in place: the size and often the times stay.
    WriteBytes(device.registry(), std::string(kHead) + "\"n\"=dword:" + digit + "\n");
    ASSERT_EQ(GetNumber(key, u"n"), digit - '0');
  }
  RegCloseKey(key);
}

TEST(Registry, AnOldFileIsReadOnceAndAgainWhenReplaced) {
  const TestDevice device;
  const std::string content = std::string(kHead) + "\"n\"=dword:1\n";
  WriteBytes(device.registry(), content);
  const timespec old[2] = {{1000, 0}, {1000, 0}};
  utimensat(AT_FDCWD, device.registry().c_str(), old, 0);
  const RegistryKey key = OpenKey();
  EXPECT_EQ(GetNumber(key, u"n"), 1);
  std::string changed = content;
  changed.replace(changed.find("dword:1"), 7, "dword:2");
  WriteBytes(device / "other", changed);
  utimensat(AT_FDCWD, (device / "other").c_str(), old, 0);
  std::filesystem::rename(device / "other", device.registry());
  EXPECT_EQ(GetNumber(key, u"n"), 2);
  RegCloseKey(key);
}

TEST(Registry, FollowsTheDeviceFolder) {
  const TestDevice first;
  WriteBytes(first.registry(), std::string(kHead) + "\"n\"=dword:1\n");
  const RegistryKey key = OpenKey();
  EXPECT_EQ(GetNumber(key, u"n"), 1);
  {
    const TestDevice second;
    WriteBytes(second.registry(), std::string(kHead) + "\"n\"=dword:2\n");
    EXPECT_EQ(GetNumber(key, u"n"), 2);
  }
  EXPECT_EQ(GetNumber(key, u"n"), 1);
  RegCloseKey(key);
}

TEST(Registry, ProcessesThatWriteAtOnceLoseNothing) {
  const TestDevice device;
  RegCloseKey(CreateKey());
  constexpr int kProcesses = 4;
  constexpr int kValues = 15;
  std::vector<pid_t> children;
  for (int process = 0; process < kProcesses; ++process) {
    const pid_t child = fork();
    if (child == 0) {
      const RegistryKey key = OpenKey(kKeyWrite);
      bool good = true;
      for (int value = 0; value < kValues; ++value) {
        const std::u16string name{static_cast<char16_t>(u'a' + process),
                                  static_cast<char16_t>(u'a' + value)};
        good = SetNumber(key, name.c_str(), 1) == 0 && good;
      }
      _exit(good ? 0 : 1);
    }
    children.push_back(child);
  }
  for (const pid_t child : children) {
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
  }
  const RegistryKey key = OpenKey();
  for (int process = 0; process < kProcesses; ++process) {
    for (int value = 0; value < kValues; ++value) {
      const std::u16string name{static_cast<char16_t>(u'a' + process),
                                static_cast<char16_t>(u'a' + value)};
      EXPECT_EQ(GetNumber(key, name.c_str()), 1);
    }
  }
  RegCloseKey(key);
}

TEST(Registry, AReaderNeverMeetsAHalfWrittenFile) {
  const TestDevice device;
  const RegistryKey key = CreateKey();
  ASSERT_EQ(SetNumber(key, u"n", 0), 0);
  const pid_t child = fork();
  if (child == 0) {
    for (std::uint32_t i = 0; i < 60; ++i) static_cast<void>(SetNumber(key, u"n", i));
    _exit(0);
  }
  int status = 0;
  while (waitpid(child, &status, WNOHANG) == 0) ASSERT_GE(GetNumber(key, u"n"), 0);
  EXPECT_EQ(GetNumber(key, u"n"), 59);
  RegCloseKey(key);
}

TEST(Registry, AWriterWaitsForTheLock) {
  const TestDevice device;
  const RegistryKey key = CreateKey();
  const int lock = open((device / "registry.lock").c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_GE(lock, 0);
  ASSERT_EQ(flock(lock, LOCK_EX), 0);
  const pid_t child = fork();
  if (child == 0) {
    close(lock);
    _exit(SetNumber(key, u"n", 8) == 0 ? 0 : 1);
  }
  usleep(50000);
  EXPECT_EQ(GetNumber(key, u"n"), -1);
  close(lock);
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(GetNumber(key, u"n"), 8);
  RegCloseKey(key);
}

}  // namespace
}  // namespace tamu::platform
