#include "platform/linux/long_names.h"

#include <gtest/gtest.h>
#include <sys/xattr.h>

#include <filesystem>
#include <set>
#include <string>

#include "platform/files.h"
#include "platform/last_error.h"
#include "platform/test_folder.h"

namespace tamu::platform {
namespace {

std::string Repeat(std::string_view text, std::size_t count) {
  std::string all;
  for (std::size_t i = 0; i < count; ++i) all += text;
  return all;
}

// Names in the folder, and that they are UTF-8 and fit.
std::set<std::string> Names(const TestFolder& folder) {
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
    names.insert(entry.path().filename().native());
    EXPECT_LE(names.rbegin()->size(), 255U);
  }
  return names;
}

bool Create(const std::u16string& path) {
  const FileHandle file = CreateFileW(path.c_str(), kGenericWrite, 0, nullptr, kCreateAlways, 0, 0);
  return file != kInvalidHandle && CloseHandle(file) != 0;
}

bool Opens(const std::u16string& path) {
  const FileHandle file = CreateFileW(path.c_str(), kGenericRead, 0, nullptr, kOpenExisting, 0, 0);
  return file != kInvalidHandle && CloseHandle(file) != 0;
}

TEST(FittingName, NamesThatFitStay) {
  for (const std::string& name : {std::string(), std::string("a.pwi"), std::string(255, 'n')}) {
    EXPECT_EQ(FittingName(name), name);
  }
}

TEST(FittingName, KeepsTheStartAndTheExtension) {
  // The digits are a promise: files that were made before have to be found.
  EXPECT_EQ(FittingName(std::string(300, 'n') + ".pwi"),
            std::string(234, 'n') + "~afd3d28ccdaac58f.pwi");
  EXPECT_EQ(FittingName(std::string(256, 'n')).size(), 255U);
  const std::string no_extension = FittingName("a." + std::string(300, 'x'));
  EXPECT_TRUE(no_extension.starts_with("a.xxx"));
  EXPECT_EQ(no_extension.size(), 255U);
}

TEST(FittingName, NeverCutsACharacter) {
  for (const std::string_view character : {"\xC3\xA9", "\xE4\xB8\xAD", "\xF0\x9F\x98\x80"}) {
    for (std::size_t shift = 0; shift < character.size(); ++shift) {
      const std::string name = std::string(shift, 'a') + Repeat(character, 200) + ".pwi";
      const std::string fitting = FittingName(name);
      EXPECT_LE(fitting.size(), 255U);
      EXPECT_GE(fitting.size(), 252U);
      const std::string start = fitting.substr(0, fitting.find('~'));
      EXPECT_EQ((start.size() - shift) % character.size(), 0U);
      EXPECT_TRUE(name.starts_with(start));
    }
  }
  EXPECT_EQ(FittingName(std::string(300, '\x80')).size(), 255U);  // no UTF-8 at all
}

TEST(FittingName, DifferentNamesStayDifferent) {
  std::set<std::string> names;
  for (int i = 0; i < 10000; ++i) {
    names.insert(FittingName(std::string(300, 'n') + std::to_string(i) + ".pwi"));
  }
  EXPECT_EQ(names.size(), 10000U);
}

TEST(FittingPath, FoldersStay) {
  const std::string folder(300, 'f');
  EXPECT_EQ(FittingPath(folder + "/x"), folder + "/x");
  EXPECT_EQ(FittingPath(folder + "/" + folder), folder + "/" + FittingName(folder));
  EXPECT_EQ(FittingPath(folder), FittingName(folder));
  EXPECT_EQ(FittingPath("/" + folder + "/"), "/" + folder + "/");
  EXPECT_EQ(FittingPath(""), "");
}

TEST(CreateFileW, ANameThatIsTooLongIsFoundAgain) {
  const TestFolder folder;
  const std::u16string one = folder.Wide("") + std::u16string(259, u'\u4E2D') + u".pwi";
  const std::u16string other = folder.Wide("") + std::u16string(258, u'\u4E2D') + u"\u4E2E.pwi";
  ASSERT_TRUE(Create(one));
  EXPECT_TRUE(Opens(one));
  EXPECT_FALSE(Opens(other));
  EXPECT_EQ(GetLastError(), kErrorFileNotFound);
  ASSERT_TRUE(Create(other));
  EXPECT_EQ(Names(folder).size(), 2U);
  ASSERT_TRUE(Create(one));  // again the same file
  EXPECT_EQ(Names(folder).size(), 2U);
  EXPECT_NE(DeleteFileW(one.c_str()), 0);
  EXPECT_FALSE(Opens(one));
  EXPECT_TRUE(Opens(other));
  EXPECT_NE(DeleteFileW(other.c_str()), 0);
  EXPECT_TRUE(Names(folder).empty());
}

TEST(LongNameOf, TheFullNameIsKeptWithTheFile) {
  const TestFolder folder;
  WriteBytes(folder / "probe", "");
  if (::setxattr((folder / "probe").c_str(), "user.tamu.probe", "1", 1, 0) != 0) {
    GTEST_SKIP() << "the file system of /tmp has no extended attributes";
  }
  const std::string full = Repeat("\xD0\x96", 200) + ".pwi";
  ASSERT_TRUE(Create(folder.Wide(full)));
  const std::string name = FittingName(full);
  EXPECT_EQ(LongNameOf(folder.path(), name), full);
  // Under another name it is another file.
  std::filesystem::rename(folder / name, folder / "other.pwi");
  EXPECT_EQ(LongNameOf(folder.path(), "other.pwi"), "other.pwi");
  EXPECT_EQ(LongNameOf(folder.path(), "probe"), "probe");
  EXPECT_EQ(LongNameOf(folder.path(), "missing"), "missing");
}

TEST(LongNameOf, NamesThatFitKeepNothing) {
  const TestFolder folder;
  ASSERT_TRUE(Create(folder.Wide("short.pwi")));
  EXPECT_LE(::listxattr((folder / "short.pwi").c_str(), nullptr, 0), 0);
}

}  // namespace
}  // namespace tamu::platform
