// platform/files.h - files by wide path, unbuffered and untranslated; temporary names; deletion.
//   Units      bytes; path lengths are UTF-16 units.
//   Ownership  a handle is the caller's until CloseHandle.
//   Errors     by result, with the reason in GetLastError. A directory does not open (5).
#ifndef TAMU_PLATFORM_FILES_H_
#define TAMU_PLATFORM_FILES_H_

#include <cstdint>

#include "platform/service.h"

namespace tamu::platform {

using FileHandle = std::intptr_t;
inline constexpr FileHandle kInvalidHandle = -1;

inline constexpr std::uint32_t kGenericRead = 0x80000000U;
inline constexpr std::uint32_t kGenericWrite = 0x40000000U;
inline constexpr std::uint32_t kFileAppendData = 0x4;  // every write goes to the end of the file

inline constexpr std::uint32_t kFileShareRead = 0x1;
inline constexpr std::uint32_t kFileShareWrite = 0x2;

inline constexpr std::uint32_t kFileAttributeNormal = 0x80;

inline constexpr std::uint32_t kCreateNew = 1;     // fails (80) when the file is there
inline constexpr std::uint32_t kCreateAlways = 2;  // an existing file is emptied
inline constexpr std::uint32_t kOpenExisting = 3;
inline constexpr std::uint32_t kOpenAlways = 4;

inline constexpr std::uint32_t kFileBegin = 0;
inline constexpr std::uint32_t kFileCurrent = 1;
inline constexpr std::uint32_t kFileEnd = 2;

inline constexpr std::int32_t kMaxPath = 260;  // units of a path with its terminator

// Opens a file, or kInvalidHandle. A name that is longer than the file system takes is shortened,
// here and in DeleteFileW, and finds the file again (on Linux: more than 255 bytes of UTF-8).
// `share`, `security`, `attributes` and `template_file` are the platform's and have no meaning on
// Linux.
extern Service<FileHandle(const char16_t* path, std::uint32_t access, std::uint32_t share,
                          void* security, std::uint32_t disposition, std::uint32_t attributes,
                          FileHandle template_file)>
    CreateFileW;

// Reads up to `size` bytes; `*done` 0 with a nonzero result is the end of the file. Returns 0 on
// failure.
extern Service<std::int32_t(FileHandle file, void* buffer, std::uint32_t size, std::uint32_t* done,
                            void* overlapped)>
    ReadFile;

// Writes `size` bytes, all of them or the call fails; `*done` says how many were written. Returns 0
// on failure.
extern Service<std::int32_t(FileHandle file, const void* buffer, std::uint32_t size,
                            std::uint32_t* done, void* overlapped)>
    WriteFile;

// Moves the position; `*position` (may be null) receives the new one. Returns 0 on failure (a pipe,
// say).
extern Service<std::int32_t(FileHandle file, std::int64_t distance, std::int64_t* position,
                            std::uint32_t method)>
    SetFilePointerEx;

// Closes any handle of this header. Returns 0 on failure; the handle is gone all the same.
extern Service<std::int32_t(FileHandle handle)> CloseHandle;

// Deletes a file. Returns 0 on failure: 2 no such file, 3 no such folder, 5 a folder or no
// permission.
extern Service<std::int32_t(const char16_t* path)> DeleteFileW;

// The folder for temporary files, ending in its separator, in at most `capacity` units with the
// terminator. Returns the units written without the terminator; more than `capacity` (the units
// needed with it) when it does not fit; 0 on failure.
extern Service<std::uint32_t(std::uint32_t capacity, char16_t* path)> GetTempPathW;

// Makes a new, empty file with a unique name that starts with the first three characters of
// `prefix` (`unique` 0; any other number only builds the name) in `folder`, readable and writable
// by the user alone. `path` holds kMaxPath units. Returns a nonzero number, or 0: a folder that is
// missing or too long is error 267 or 111.
extern Service<std::uint32_t(const char16_t* folder, const char16_t* prefix, std::uint32_t unique,
                             char16_t* path)>
    GetTempFileNameW;

}  // namespace tamu::platform

#endif  // TAMU_PLATFORM_FILES_H_
