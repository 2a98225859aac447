// The command "import".
#include "commands.h"
#include "store/device_session.h"
#include "store/importer.h"

namespace tamu::tool {

int COMMAND_Import(const ImportOptions& options, Console* console) {
  DeviceSession device;
  std::string problem;
  if (!device.Open(&problem)) {
    console->TellError(problem);
    return kExitFailure;
  }
  return Importer(options, console).Run();
}

}  // namespace tamu::tool
