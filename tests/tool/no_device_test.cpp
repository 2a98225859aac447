// The store commands of a build without the device.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tool/program.h"

namespace tamu::tool {
namespace {

TEST(StoresWithoutDevice, EachCommandSaysThatTheDeviceCannotBeOpened) {
  const Program program;
  program.Write("a.vcf", Card("Berg;Anna"));
  const std::vector<std::vector<std::string>> commands = {
      {"import", "a.vcf"},        {"find", "a.vcf"}, {"update", "contact", "1", "a.vcf"},
      {"delete", "contact", "1"}, {"list"},          {"show", "contact", "1"},
      {"export", "-o", "all/"}};
  for (const std::vector<std::string>& command : commands) {
    const ProgramResult result = program.Run(command);
    EXPECT_EQ(result.exit_code, 1) << command.front();
    EXPECT_EQ(result.out, "") << command.front();
    EXPECT_NE(result.err.find("cannot be opened"), std::string::npos) << result.err;
  }
}

TEST(StoresWithoutDevice, DoctorSaysThatTheProgramIsBuiltWithoutThem) {
  const Program program;
  const ProgramResult result = program.Run({"doctor"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_NE(result.out.find("database   problem  this program was built without"),
            std::string::npos)
      << result.out;
}

}  // namespace
}  // namespace tamu::tool
