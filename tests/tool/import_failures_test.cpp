// "tamu import" on devices that fail, and when it is ended or not alone.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>
#include <string>

#include "tool/program.h"
#include "tool/store_files.h"

namespace tamu::tool {
namespace {

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

// The number in front of `what` in the program's output, 0 when it is not there.
unsigned Count(const std::string& text, const std::string& what) {
  std::smatch found;
  return std::regex_search(text, found, std::regex("(\\d+) " + what))
             ? static_cast<unsigned>(std::stoul(found[1]))
             : 0;
}

std::uintmax_t SizeOf(const std::string& path) {
  std::error_code failure;
  const std::uintmax_t size = std::filesystem::file_size(path, failure);
  return failure ? 0 : size;
}

void Pause() {
  const timespec pause = {0, 1000000};
  ::nanosleep(&pause, nullptr);
}

// Starts an import and waits until it has kept something.
pid_t StartImport(const Program& program, int* input) {
  const pid_t child = program.Start({"import", "big.vcf"}, input);
  // That is several batches.
  while (SizeOf(program.home() + "/device.db-wal") < 500000) {
    if (::kill(child, 0) != 0) break;
    Pause();
  }
  return child;
}

TEST(ImportFailures, AReadOnlyDeviceIsSaidToBeSo) {
  Program program;
  program.Write("a.vcf", Card("Berg;Anna"));
  ASSERT_EQ(program.Run({"import", "a.vcf"}).exit_code, 0);
  ::chmod((program.home() + "/device.db").c_str(), 0444);
  ::chmod(program.home().c_str(), 0555);
  std::filesystem::permissions(program.home() + "/stdin", std::filesystem::perms::all);
  program.Write("b.vcf", Card("Berg;Bert"));
  program.DropPrivileges();

  const ProgramResult result = program.Run({"import", "b.vcf"});

  ::chmod(program.home().c_str(), 0755);
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_TRUE(Contains(result.err, "cannot be opened")) << result.err;
}

TEST(ImportFailures, ADamagedDatabaseIsSaidToBeSo) {
  const Program program;
  std::ofstream(program.home() + "/device.db") << std::string(8192, 'x');
  program.Write("a.vcf", Card("Berg;Anna"));
  const ProgramResult result = program.Run({"import", "a.vcf"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_TRUE(Contains(result.err, "damaged; put a good copy in its place")) << result.err;
}

// Pages in the middle: the database opens, and reading or writing them fails.
TEST(ImportFailures, DamageWithinTheDatabaseNeverCountsAsSuccess) {
  const Program program;
  program.Write("big.vcf", Contacts(2000));
  ASSERT_EQ(program.Run({"import", "big.vcf"}).exit_code, 0);
  {
    std::fstream file(program.home() + "/device.db",
                      std::ios::binary | std::ios::in | std::ios::out);
    const std::uintmax_t size = SizeOf(program.home() + "/device.db");
    for (std::uintmax_t at = 40 * 4096; at + 4096 <= size; at += 2 * 4096) {
      file.seekp(static_cast<std::streamoff>(at));
      file << std::string(4096, '\xA5');
    }
  }
  program.Write("more.vcf", Card("Berg;Anna") + Card("Berg;Bert"));

  const ProgramResult result = program.Run({"import", "more.vcf"});

  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.out, "contacts: 2 failed\n");
  EXPECT_TRUE(Contains(result.err, "more.vcf:1: contact \"Anna Berg\": ")) << result.err;
  EXPECT_TRUE(Contains(result.err, "damaged; put a good copy in its place")) << result.err;
}

// What is counted as added is there, what is not is told with its reason.
TEST(ImportFailures, AFullDiskKeepsWhatIsCountedAndTellsTheRest) {
  Program program;
  program.Write("big.vcf", Contacts(8000));
  program.SetFileSizeLimit(1200000);

  const ProgramResult result = program.Run({"import", "-v", "big.vcf"});

  EXPECT_EQ(result.exit_code, 1);
  const unsigned added = Count(result.out, "added");
  const unsigned failed = Count(result.out, "failed");
  const unsigned rest = Count(result.err, "objects, from line");
  EXPECT_GT(added, 0U);
  EXPECT_GT(failed, 0U);
  EXPECT_EQ(added + failed + rest, 8000U);
  EXPECT_TRUE(Contains(result.err, "no space left to write; free some and try again"))
      << result.err.substr(0, 1000);
  EXPECT_TRUE(Contains(result.err, "big.vcf: gave up, as the device keeps failing\n"));
  program.SetFileSizeLimit(0);
  const ProgramResult again = program.Run({"import", "big.vcf"});
  EXPECT_EQ(again.exit_code, 0);
  EXPECT_EQ(again.out, "contacts: " + std::to_string(8000 - added) + " added, " +
                           std::to_string(added) + " skipped (already there)\n");
}

TEST(ImportFailures, ANoteThatDoesNotFitTheDiskLeavesTheOldOne) {
  Program program;
  program.Write("old.vnt", Note("List", "milk"));
  program.Write("new.vnt", Note("List", std::string(300000, 'x')) + Note("Short", "a"));
  ASSERT_EQ(program.Run({"import", "old.vnt"}).exit_code, 0);
  const std::string before = ReadFileBytes(program.home() + "/Documents/List.pwi");
  program.SetFileSizeLimit(80000);

  const ProgramResult result = program.Run({"import", "--on-duplicate", "update", "new.vnt"});

  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.out, "notes: 1 added, 1 failed\n");
  EXPECT_TRUE(Contains(result.err, "new.vnt:1: note \"List\": its file ")) << result.err;
  EXPECT_EQ(ReadFileBytes(program.home() + "/Documents/List.pwi"), before);
  EXPECT_EQ(FileNames(program.home() + "/Documents"),
            (std::vector<std::string>{"List.pwi", "Short.pwi"}));
}

TEST(ImportFailures, ANoteWhoseFileCannotBeWrittenFails) {
  Program program;
  // The folder for notes is a file.
  std::ofstream(program.home() + "/Documents") << "";
  program.Write("a.vnt", Note("List", "milk"));
  const ProgramResult result = program.Run({"import", "a.vnt"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.out, "notes: 1 failed\n");
  EXPECT_TRUE(Contains(result.err, "a.vnt:1: note \"List\": its file cannot be written"))
      << result.err;
}

TEST(ImportFailures, CtrlCKeepsWhatIsCompleteAndSaysWhereItStopped) {
  for (const int signal_number : {SIGINT, SIGTERM, SIGHUP}) {
    Program program;
    program.Write("big.vcf", Contacts(8000));
    program.SetOutput(program.Path("out"));
    program.SetErrors(program.Path("err"));
    int input = -1;
    const pid_t child = StartImport(program, &input);
    ::kill(child, signal_number);
    const int exit_code = Program::Wait(child);
    ::close(input);

    const std::string out = program.Read("out");
    const std::string err = program.Read("err");
    EXPECT_EQ(exit_code, 1);
    const unsigned added = Count(out, "added");
    ASSERT_LT(added, 8000U);
    EXPECT_EQ(err, "interrupted: " + std::to_string(added) +
                       " objects of big.vcf are imported; the rest, from line " +
                       std::to_string(added * 6 + 1) + " on, is not\n");
    program.SetOutput("");
    EXPECT_EQ(program.Run({"import", "big.vcf"}).out, "contacts: " + std::to_string(8000 - added) +
                                                          " added, " + std::to_string(added) +
                                                          " skipped (already there)\n");
  }
}

TEST(ImportFailures, CtrlCKeepsTheFilesBehindFromBeingRead) {
  Program program;
  program.Write("big.vcf", Contacts(8000));
  program.Write("other.vcf", Card("Berg;Anna"));
  program.SetErrors(program.Path("err"));
  int input = -1;
  const pid_t child = program.Start({"import", "big.vcf", "other.vcf"}, &input);
  while (SizeOf(program.home() + "/device.db-wal") < 500000) Pause();
  ::kill(child, SIGINT);
  EXPECT_EQ(Program::Wait(child), 1);
  ::close(input);
  EXPECT_TRUE(Contains(program.Read("err"), "not imported: other.vcf\n")) << program.Read("err");
  EXPECT_EQ(program.Run({"find", "other.vcf"}).exit_code, 1);
}

TEST(ImportFailures, AKilledImportIsCompletedByTheNext) {
  Program program;
  program.Write("big.vcf", Contacts(8000));
  int input = -1;
  const pid_t child = StartImport(program, &input);
  ::kill(child, SIGKILL);
  EXPECT_EQ(Program::Wait(child), 128 + SIGKILL);
  ::close(input);

  const ProgramResult result = program.Run({"import", "big.vcf"});

  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(Count(result.out, "added") + Count(result.out, "skipped"), 8000U);
  EXPECT_GT(Count(result.out, "added"), 0U);
  EXPECT_GT(Count(result.out, "skipped"), 0U);
  // A contact that were there twice would be left.
  EXPECT_EQ(program.Run({"import", "big.vcf"}).out, "contacts: 8000 skipped (already there)\n");
}

// Looking and adding are one step: neither import adds what the other has added.
TEST(ImportFailures, TwoImportsAtOnceAddEachContactOnce) {
  Program program;
  program.Write("big.vcf", Contacts(3000));
  int inputs[2];
  program.SetOutput(program.Path("out0"));
  const pid_t first = program.Start({"import", "big.vcf"}, &inputs[0]);
  program.SetOutput(program.Path("out1"));
  const pid_t second = program.Start({"import", "big.vcf"}, &inputs[1]);
  EXPECT_EQ(Program::Wait(first), 0);
  EXPECT_EQ(Program::Wait(second), 0);
  for (const int input : inputs) ::close(input);
  const std::string out0 = program.Read("out0");
  const std::string out1 = program.Read("out1");
  EXPECT_EQ(Count(out0, "added") + Count(out1, "added"), 3000U) << out0 << out1;
  EXPECT_EQ(Count(out0, "skipped") + Count(out1, "skipped"), 3000U) << out0 << out1;
}

}  // namespace
}  // namespace tamu::tool
