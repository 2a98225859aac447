// support/charset_setup.h - a test fixture with a registry and a locale of its own for everything
// about character sets.
#ifndef TAMU_TESTS_SUPPORT_CHARSET_SETUP_H_
#define TAMU_TESTS_SUPPORT_CHARSET_SETUP_H_

#include <gtest/gtest.h>

#include <string>

#include "support/scratch_folder.h"
#include "text/charset.h"

namespace tamu::testing {

// Starts without registry values, in a locale of code page 1252, with nothing settled yet.
class CharsetSetup : public ::testing::Test {
 protected:
  CharsetSetup() { CHARSET_Reset(); }
  ~CharsetSetup() override { CHARSET_Reset(); }

  // Sets the two charset values; empty ones are left out.
  void Configure(const std::string& input, const std::string& output,
                 const std::string& more = "") {
    std::string registry =
        "Windows Registry Editor Version 5.00\r\n\r\n"
        "[HKEY_LOCAL_MACHINE\\Software\\Velmora\\BTConfig\\General]\r\n";
    if (!input.empty()) registry += "\"DefaultInputCharset\"=\"" + input + "\"\r\n";
    if (!output.empty()) registry += "\"DefaultOutputCharset\"=\"" + output + "\"\r\n";
    folder_.Put("registry.reg", registry + more);
    CHARSET_Reset();
  }

 private:
  ScratchFolder folder_;
  ScopedEnvironment home_{"TAMU_HOME", folder_.path().string()};
  ScopedEnvironment locale_{"LC_ALL", "C"};
};

}  // namespace tamu::testing

#endif  // TAMU_TESTS_SUPPORT_CHARSET_SETUP_H_
