#include "platform/services.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

#include "platform/bstr.h"
#include "platform/files.h"
#include "platform/registry.h"
#include "platform/sockets.h"
#include "platform/test_folder.h"

namespace tamu::platform {
namespace {

// The names that the headers declare: "extern Service<...> Name;".
std::multiset<std::string> DeclaredServices() {
  std::multiset<std::string> names;
  const std::filesystem::path headers =
      std::filesystem::path(TAMU_TEST_DATA) / "../../src/platform";
  for (const auto& entry : std::filesystem::directory_iterator(headers)) {
    if (entry.path().extension() != ".h") continue;
    const std::string text = ReadBytes(entry.path().string());
    for (std::size_t at = text.find("\nextern Service<"); at != std::string::npos;
         at = text.find("\nextern Service<", at + 1)) {
      const std::size_t end = text.find(';', at);
      const std::size_t before = text.find_last_of("> \n", end);
      names.insert(text.substr(before + 1, end - before - 1));
    }
  }
  return names;
}

TEST(AllServices, ListsEveryDeclaredServiceOnce) {
  std::multiset<std::string> listed;
  for (const ServiceBase* service : AllServices()) listed.insert(service->name());
  const std::multiset<std::string> declared = DeclaredServices();
  EXPECT_GE(declared.size(), 25U);
  EXPECT_EQ(listed, declared);
}

TEST(FindService, FindsByNameAndNothingElse) {
  for (ServiceBase* service : AllServices()) EXPECT_EQ(FindService(service->name()), service);
  EXPECT_EQ(FindService("sendto"), &sendto);
  EXPECT_EQ(FindService("Sendto"), nullptr);
  EXPECT_EQ(FindService(""), nullptr);
}

TEST(FailNth, ExactlyTheNthCallFailsWithTheGivenError) {
  DeleteFileW.ResetCount();
  const TestFolder folder;
  const ScopedFailure failure(DeleteFileW, 2, kErrorSharingViolation);
  for (int call = 1; call <= 4; ++call) {
    WriteBytes(folder / "f", "");
    SetLastError(0);
    EXPECT_EQ(DeleteFileW(folder.Wide("f").c_str()) == 0, call == 2) << call;
    EXPECT_EQ(GetLastError(), call == 2 ? kErrorSharingViolation : 0U);
    EXPECT_EQ(std::filesystem::exists(folder / "f"), call == 2);
  }
  EXPECT_EQ(DeleteFileW.calls(), 4U);
}

TEST(FailNth, EndsWithItsScope) {
  { const ScopedFailure failure(SysAllocString); }
  const BStr string(SysAllocString(u"x"));
  EXPECT_EQ(string.view(), u"x");
}

TEST(FailNth, AFailureAnswersWhatTheServicesContractSays) {
  const ScopedFailure open(CreateFileW);
  const ScopedFailure name(GetTempFileNameW);
  const ScopedFailure key(RegOpenKeyExW);
  const ScopedFailure allocate(SysAllocStringLen);
  const ScopedFailure make(socket);
  char16_t path[kMaxPath];
  RegistryKey handle = 0;
  EXPECT_EQ(CreateFileW(u"/dev/null", kGenericRead, 0, nullptr, kOpenExisting, 0, 0),
            kInvalidHandle);
  EXPECT_EQ(GetTempFileNameW(u"/tmp", u"qmo", 0, path), 0U);
  EXPECT_EQ(RegOpenKeyExW(kHkeyLocalMachine, u"", 0, kKeyRead, &handle), 5);
  EXPECT_EQ(SysAllocStringLen(u"x", 1), nullptr);
  EXPECT_EQ(socket(kAfInet, kSockDgram, 0), kInvalidSocket);
}

std::int32_t AlwaysDeletes(const char16_t* /*path*/) { return 77; }

TEST(Override, ReplacesTheFunctionUntilItsScopeEnds) {
  {
    const ScopedOverride replaced(DeleteFileW, &AlwaysDeletes);
    EXPECT_EQ(DeleteFileW(u"/no/such/file"), 77);
    const ScopedFailure failure(DeleteFileW);
    EXPECT_EQ(DeleteFileW(u"/no/such/file"), 0);
  }
  EXPECT_EQ(DeleteFileW(u"/no/such/file"), 0);
  EXPECT_EQ(GetLastError(), kErrorPathNotFound);
}

}  // namespace
}  // namespace tamu::platform
