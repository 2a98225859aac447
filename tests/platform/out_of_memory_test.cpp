// Lets the n-th allocation of a call fail, for every n: services answer error 8 and stay usable;
// nothing is thrown.
#include <gtest/gtest.h>

#include <functional>

#include "platform/files.h"
#include "platform/registry.h"
#include "platform/test_folder.h"
#include "support/failing_new.h"

namespace tamu::platform {
namespace {

using tamu::testing::allocations_left;

constexpr char kContent[] =
    "REGEDIT4\n[HKEY_LOCAL_MACHINE\\Software\\A key with a long name]\n\"A number with a long "
    "name\"=dword:5\n";
constexpr char16_t kPath[] = u"Software\\A key with a long name";
constexpr char16_t kName[] = u"A number with a long name";
constexpr auto kNoMemory = static_cast<std::int32_t>(kErrorNotEnoughMemory);

// Fails the first, the second, ... allocation until `call` needs no more; each time it has to
// answer `out_of_memory`. Returns how many allocations the call needs.
template <typename Result>
int FailEveryAllocation(const std::function<Result()>& call, Result out_of_memory, Result success) {
  for (int n = 0; n < 1000; ++n) {
    SetLastError(0);
    allocations_left = n;
    const Result result = call();
    const bool reached_the_end = allocations_left > 0;
    allocations_left = -1;
    if (reached_the_end || result == success) {
      EXPECT_EQ(result, success);
      return n;
    }
    EXPECT_EQ(result, out_of_memory) << n;
  }
  ADD_FAILURE() << "never succeeds";
  return 0;
}

RegistryKey OpenForAll() {
  RegistryKey key = 0;
  EXPECT_EQ(RegOpenKeyExW(kHkeyLocalMachine, kPath, 0, kKeyRead | kKeyWrite, &key), 0);
  return key;
}

TEST(OutOfMemory, OpeningAKeyAnswersError8) {
  const TestDevice device;
  WriteBytes(device.registry(), kContent);
  RegistryKey key = 0;
  const int needed = FailEveryAllocation<std::int32_t>(
      [&] { return RegOpenKeyExW(kHkeyLocalMachine, kPath, 0, kKeyRead, &key); }, kNoMemory, 0);
  EXPECT_GT(needed, 5);
  EXPECT_EQ(RegCloseKey(key), 0);
}

TEST(OutOfMemory, QueryingAnswersError8AndForgetsNothing) {
  const TestDevice device;
  WriteBytes(device.registry(), kContent);
  const RegistryKey key = OpenForAll();
  std::uint32_t number = 0;
  std::uint32_t size = sizeof number;
  const int needed = FailEveryAllocation<std::int32_t>(
      [&] {
        return RegQueryValueExW(key, kName, nullptr, nullptr,
                                reinterpret_cast<std::uint8_t*>(&number), &size);
      },
      kNoMemory, 0);
  EXPECT_GT(needed, 2);
  EXPECT_EQ(number, 5U);
  EXPECT_EQ(RegCloseKey(key), 0);
}

TEST(OutOfMemory, SettingAnswersError8AndLeavesAWholeFile) {
  const TestDevice device;
  WriteBytes(device.registry(), kContent);
  const RegistryKey key = OpenForAll();
  const std::uint32_t number = 6;
  const int needed = FailEveryAllocation<std::int32_t>(
      [&] {
        return RegSetValueExW(key, kName, 0, kRegDword,
                              reinterpret_cast<const std::uint8_t*>(&number), sizeof number);
      },
      kNoMemory, 0);
  EXPECT_GT(needed, 10);
  std::string expected = kContent;
  expected.replace(expected.find("dword:5"), 7, "dword:00000006");
  EXPECT_EQ(ReadBytes(device.registry()), expected);
  EXPECT_FALSE(std::filesystem::exists(device.registry() + ".new"));
  EXPECT_EQ(RegCloseKey(key), 0);
}

TEST(OutOfMemory, FilesAndTemporaryNamesAnswerTheirFailure) {
  const TestFolder folder;
  const std::u16string path = folder.Wide("a file with a name that needs memory");
  FileHandle file = kInvalidHandle;
  EXPECT_GT(FailEveryAllocation<bool>(
                [&] {
                  file = CreateFileW(path.c_str(), kGenericWrite, 0, nullptr, kCreateAlways, 0, 0);
                  return file != kInvalidHandle || GetLastError() != kErrorNotEnoughMemory;
                },
                false, true),
            0);
  EXPECT_TRUE(CloseHandle(file));
  const std::u16string parent = folder.Wide("");
  char16_t made[kMaxPath];
  EXPECT_GT(
      FailEveryAllocation<bool>(
          [&] { return GetTempFileNameW(parent.c_str(), u"qmo", 0, made) != 0; }, false, true),
      0);
  const ScopedVariable variable("TMPDIR", "/a/folder/with/a/name/that/needs/memory");
  EXPECT_GT(FailEveryAllocation<std::uint32_t>([&] { return GetTempPathW(kMaxPath, made); }, 0, 40),
            0);
  EXPECT_GT(FailEveryAllocation<std::int32_t>([&] { return DeleteFileW(path.c_str()); }, 0, 1), 0);
}

}  // namespace
}  // namespace tamu::platform
