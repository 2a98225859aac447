#include "pimstore/session.h"

#include <utility>

#include "core/log.h"
#include "mailstore/session.h"
#include "platform/com_ptr.h"
#include "platform/rich_ink.h"

namespace tamu {
namespace {

using platform::IPOutlookApp;

// Released by POL_Close alone: at the end of the process the device may be gone already.
IPOutlookApp* g_application = nullptr;

TamuResult LogOn() noexcept {
  platform::ComPtr<IPOutlookApp> application;
  platform::HRESULT result =
      platform::CoCreateInstance(platform::CLSID_Application, nullptr, platform::kInProcessServer,
                                 platform::IID_IPOutlookApp, application.put_void());
  if (platform::Failed(result) || !application) {
    LOG_Error("TAMU:  Unable to get application object from POOM interface. (code=0x%08x)", result);
    return TAMU_GENERAL_PIM_ERROR;
  }
  result = application->Logon(0);
  if (platform::Failed(result)) {
    LOG_Error("TAMU:  POOM 'Logon' failed (code=0x%08x)", result);
    return TAMU_GENERAL_PIM_ERROR;
  }
  g_application = application.release();
  return TAMU_OK;
}

}  // namespace

std::uint32_t g_pol_already_open = 0;

IPOutlookApp* POL_Application() noexcept { return g_application; }

TamuResult POL_Open() noexcept {
  LOG_Info("TAMU:  POL_Open()");
  if (g_application != nullptr) {
    if (g_pol_already_open != 0) return TAMU_OK;
  } else if (const TamuResult result = LogOn(); result != TAMU_OK) {
    return result;
  }
  if (const TamuResult result = MAPI_Init(); result != TAMU_OK) return result;
  platform::InitRichInkDLL();
  return TAMU_OK;
}

TamuResult POL_Close() noexcept {
  LOG_Info("TAMU:  POL_Close()");
  if (g_application != nullptr) {
    g_application->Logoff();
    std::exchange(g_application, nullptr)->Release();
  }
  (void)MAPI_DeInit();
  return TAMU_OK;
}

}  // namespace tamu
