// The command "code".
#include "commands.h"
#include "core/wide.h"
#include "display_text.h"
#include "tamu/tamu.h"

namespace tamu::tool {

int COMMAND_Code(const std::vector<std::uint32_t>& codes, Console* console) {
  for (const std::uint32_t code : codes) {
    console->Print(DISPLAY_Line(AsUtf16(TAMU_CodeToString(code))) + "\n");
  }
  return kExitSuccess;
}

}  // namespace tamu::tool
