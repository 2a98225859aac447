#include <array>
#include <cstring>
#include <string>

#include "core/file.h"
#include "core/log.h"
#include "platform/code_pages.h"
#include "platform/files.h"
#include "platform/last_error.h"

namespace tamu {
namespace {

std::uint32_t FailWithFileError(std::uint32_t error) noexcept {
  LOG_Error("TAMU: FILE_TempFilename; FILE error (%d)", error);
  return 1;
}

// Joins folder and name into `path_out`; false when they do not fit.
bool Join(const char16_t* folder, const char16_t* name,
          char16_t (&path_out)[kTempPathUnits]) noexcept {
  const std::size_t folder_length = std::char_traits<char16_t>::length(folder);
  const std::size_t name_length = std::char_traits<char16_t>::length(name);
  if (folder_length + name_length >= kTempPathUnits) return false;
  std::memcpy(path_out, folder, folder_length * sizeof(char16_t));
  std::memcpy(path_out + folder_length, name, (name_length + 1) * sizeof(char16_t));
  return true;
}

std::uint32_t NamedTempFilename(const char16_t* folder, const char* name,
                                char16_t (&path_out)[kTempPathUnits]) noexcept {
  std::array<char16_t, kTempPathUnits + 1> wide;
  if (platform::MultiByteToWideChar(platform::kCpAcp, 0, name, -1, wide.data(),
                                    static_cast<std::int32_t>(wide.size())) == 0) {
    return FailWithFileError(platform::GetLastError());
  }
  if (!Join(folder, wide.data(), path_out))
    return FailWithFileError(platform::kErrorBufferOverflow);
  return 0;
}

std::uint32_t UniqueTempFilename(const char16_t* folder,
                                 char16_t (&path_out)[kTempPathUnits]) noexcept {
  std::array<char16_t, platform::kMaxPath> path{};
  if (platform::GetTempFileNameW(folder, u"qmo", 0, path.data()) == 0) {
    return FailWithFileError(platform::GetLastError());
  }
  if (!Join(u"", path.data(), path_out)) {
    platform::DeleteFileW(path.data());
    return FailWithFileError(platform::kErrorBufferOverflow);
  }
  return 0;
}

}  // namespace

std::uint32_t FILE_Remove(const char16_t* path) noexcept {
  if (platform::DeleteFileW(path) != 0) return 0;
  const std::uint32_t error = platform::GetLastError();
  LOG_Error("TAMU:  Unable to remove file (file=%S)", path);
  LOG_Error("TAMU:  Error: 0x%08x", error);
  return 1;
}

std::uint32_t FILE_TempFilename(const char* name, char16_t (&path_out)[kTempPathUnits]) noexcept {
  path_out[0] = u'\0';
  std::array<char16_t, kTempPathUnits> folder{};
  const std::uint32_t length = platform::GetTempPathW(kTempPathUnits, folder.data());
  if (length == 0 || length >= kTempPathUnits) {
    const std::uint32_t error =
        length == 0 ? platform::GetLastError() : platform::kErrorBufferOverflow;
    LOG_Error("TAMU: FILE_TempFilename; PATH error (%d)", error);
    return 1;
  }
  if (name != nullptr && *name != '\0') return NamedTempFilename(folder.data(), name, path_out);
  return UniqueTempFilename(folder.data(), path_out);
}

}  // namespace tamu
