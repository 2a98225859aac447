// "tamu rewrite": the output is there whole or not at all.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "tool/program.h"

namespace tamu::tool {
namespace {

using Names = std::vector<std::string>;

unsigned ModeOf(const std::string& path) {
  struct stat status = {};
  return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 07777U : 0;
}

TEST(Rewrite, ItsInputUnderAnyNameIsRefused) {
  Program program;
  program.Write("a.vcf", Card("A"));
  ASSERT_EQ(::link(program.Path("a.vcf").c_str(), program.Path("hard.vcf").c_str()), 0);
  ASSERT_EQ(::symlink("a.vcf", program.Path("soft.vcf").c_str()), 0);
  for (const char* const out : {"a.vcf", "./a.vcf", "hard.vcf", "soft.vcf"}) {
    for (const char* const in : {"a.vcf", "hard.vcf", "soft.vcf"}) {
      const ProgramResult result = program.Run({"rewrite", in, out});
      EXPECT_EQ(result.exit_code, 1) << in << " " << out;
      EXPECT_NE(result.err.find("this is the file that is read"), std::string::npos);
    }
  }
  EXPECT_EQ(program.Read("a.vcf"), Card("A"));
  EXPECT_EQ(program.Names(), (Names{"a.vcf", "hard.vcf", "soft.vcf"}));
}

TEST(Rewrite, LinkStaysAndItsTargetIsReplaced) {
  Program program;
  program.Write("a.vcf", Card("A"));
  program.Write("target.vcf", "old");
  ASSERT_EQ(::mkdir(program.Path("links").c_str(), 0777), 0);
  ASSERT_EQ(::symlink("../target.vcf", program.Path("links/one").c_str()), 0);
  ASSERT_EQ(::symlink("links/one", program.Path("two").c_str()), 0);

  const ProgramResult result = program.Run({"rewrite", "a.vcf", "two"});

  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(program.Read("target.vcf"), Card("A"));
  struct stat status = {};
  ASSERT_EQ(::lstat(program.Path("two").c_str(), &status), 0);
  EXPECT_TRUE(S_ISLNK(status.st_mode));
}

TEST(Rewrite, LinkToAMissingFileMakesThatFile) {
  Program program;
  program.Write("a.vcf", Card("A"));
  ASSERT_EQ(::symlink("new.vcf", program.Path("link").c_str()), 0);
  EXPECT_EQ(program.Run({"rewrite", "a.vcf", "link"}).exit_code, 0);
  EXPECT_EQ(program.Read("new.vcf"), Card("A"));
}

TEST(Rewrite, ModeIsKeptAndANewFileFollowsTheMask) {
  Program program;
  program.Write("a.vcf", Card("A"));
  program.Write("old.vcf", "old");
  ASSERT_EQ(::chmod(program.Path("old.vcf").c_str(), 0640), 0);
  EXPECT_EQ(program.Run({"rewrite", "a.vcf", "old.vcf"}).exit_code, 0);
  EXPECT_EQ(program.Run({"rewrite", "a.vcf", "new.vcf"}).exit_code, 0);
  EXPECT_EQ(ModeOf(program.Path("old.vcf")), 0640U);
  EXPECT_EQ(ModeOf(program.Path("new.vcf")), 0644U);
}

TEST(Rewrite, FullDeviceIsAnErrorAlthoughTheLibraryReportsSuccess) {
  Program program;
  std::string cards;
  for (int i = 0; i < 5000; ++i) cards += Card("Name " + std::to_string(i));
  program.Write("a.vcf", cards);

  const ProgramResult result = program.Run({"rewrite", "a.vcf", "/dev/full"});

  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "tamu: /dev/full: writing failed: No space left on the device\n");
}

TEST(Rewrite, FullStandardOutputIsAnError) {
  Program program;
  program.Write("a.vcf", Card("A"));
  program.SetOutput("/dev/full");
  const ProgramResult result = program.Run({"rewrite", "a.vcf", "-"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_NE(result.err.find("standard output: cannot write it: No space left"), std::string::npos);
}

TEST(Rewrite, FolderWithoutWritePermissionIsAnErrorAndNothingChanges) {
  Program program;
  program.Write("a.vcf", Card("A"));
  program.Write("old.vcf", "old");
  ASSERT_EQ(::chmod(program.folder().c_str(), 0555), 0);
  if (::geteuid() == 0) program.DropPrivileges();

  const ProgramResult made = program.Run({"rewrite", "a.vcf", "new.vcf"});
  const ProgramResult replaced = program.Run({"rewrite", "a.vcf", "old.vcf"});
  ASSERT_EQ(::chmod(program.folder().c_str(), 0755), 0);

  EXPECT_EQ(made.exit_code, 1);
  EXPECT_EQ(made.err, "tamu: new.vcf: cannot make a file in its folder: Permission denied\n");
  EXPECT_EQ(replaced.exit_code, 1);
  EXPECT_EQ(program.Read("old.vcf"), "old");
}

TEST(Rewrite, FileWithoutWritePermissionIsNotReplaced) {
  Program program;
  program.Write("a.vcf", Card("A"));
  program.Write("old.vcf", "old");
  ASSERT_EQ(::chmod(program.Path("old.vcf").c_str(), 0444), 0);
  if (::geteuid() == 0) program.DropPrivileges();

  const ProgramResult result = program.Run({"rewrite", "a.vcf", "old.vcf"});

  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(program.Read("old.vcf"), "old");
}

TEST(Rewrite, FailureLeavesNoTemporaryFile) {
  Program program;
  program.Write("a.vcf", Card("A") + "BEGIN:VCARD\r\nN:B\r\n");
  EXPECT_EQ(program.Run({"rewrite", "a.vcf", "out.vcf"}).exit_code, 1);
  EXPECT_EQ(program.Names(), Names{"a.vcf"});
}

TEST(Rewrite, NamesThatAreNotUtf8Work) {
  Program program;
  program.Write("\xE9.vcf", Card("A"));
  const ProgramResult result = program.Run({"rewrite", "\xE9.vcf", "\xFF.vcf"});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.err, "\\xff.vcf: 1 contact written\n");
  EXPECT_EQ(program.Read("\xFF.vcf"), Card("A"));
}

TEST(Rewrite, ReadsAPipeTwiceByKeepingIt) {
  Program program;
  int input = -1;
  const pid_t child = program.Start({"rewrite", "-", "out.vcf"}, &input);
  const std::string cards = Card("A") + Card("B\r\nX-FOO:1");
  ASSERT_EQ(::write(input, cards.data(), cards.size()), static_cast<ssize_t>(cards.size()));
  ::close(input);
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(program.Read("out.vcf"), Card("A") + Card("B"));
}

bool HasTemporaryFile(const Program& program) {
  for (const std::string& name : program.Names()) {
    if (name.starts_with(".tamu-")) return true;
  }
  return false;
}

// Starts a long rewrite and stops it (SIGSTOP) while its temporary file is there. Returns 0 when it
// was done too soon.
pid_t StartAndStop(const Program& program) {
  int input = -1;
  const pid_t child = program.Start({"rewrite", "in.vcf", "out.vcf"}, &input);
  ::close(input);
  int status = 0;
  while (!HasTemporaryFile(program)) {
    if (::waitpid(child, &status, WNOHANG) == child) return 0;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  ::kill(child, SIGSTOP);
  if (::waitpid(child, &status, WUNTRACED) != child || !WIFSTOPPED(status)) return 0;
  if (HasTemporaryFile(program)) return child;
  ::kill(child, SIGKILL);
  ::waitpid(child, &status, 0);
  return 0;
}

class RewriteSignal : public testing::TestWithParam<int> {};

TEST_P(RewriteSignal, RemovesTheTemporaryFileAndLeavesTheOldOne) {
  const Program program;
  const std::string card = Card("A\r\nNOTE:" + std::string(4000, 'x'));
  std::string cards;
  for (int i = 0; i < 8000; ++i) cards += card;
  program.Write("in.vcf", cards);
  pid_t child = 0;
  for (int attempt = 0; child == 0 && attempt < 10; ++attempt) {
    program.Write("out.vcf", "old");
    child = StartAndStop(program);
  }
  ASSERT_NE(child, 0) << "the program was always done too soon";

  ::kill(child, GetParam());
  ::kill(child, SIGCONT);
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);

  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == GetParam()) << status;
  EXPECT_EQ(program.Read("out.vcf"), "old");
  EXPECT_EQ(program.Names(), (Names{"in.vcf", "out.vcf"}));
}

INSTANTIATE_TEST_SUITE_P(EndingSignals, RewriteSignal, testing::Values(SIGINT, SIGTERM, SIGHUP));

}  // namespace
}  // namespace tamu::tool
