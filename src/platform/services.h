// platform/services.h - every service of the platform by its name, for tests and for diagnosis.
#ifndef TAMU_PLATFORM_SERVICES_H_
#define TAMU_PLATFORM_SERVICES_H_

#include <span>
#include <string_view>

#include "platform/service.h"

namespace tamu::platform {

// All services, each once.
[[nodiscard]] std::span<ServiceBase* const> AllServices() noexcept;

// The service with this name ("RegOpenKeyExW"), or null.
[[nodiscard]] ServiceBase* FindService(std::string_view name) noexcept;

}  // namespace tamu::platform

#endif  // TAMU_PLATFORM_SERVICES_H_
