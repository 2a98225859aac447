// core/file.h - the small file layer of the format readers and writers, by wide path and wide mode.
//   Reading goes through a window of the file in memory that grows to the longest logical line, so
//   that a line costs no system call and memory does not depend on the file's length. Writing is
//   buffered. Modes are the C library's: "r", "w", "a", each with "+" or "b"; a mode without "b"
//   writes each line feed as CR LF. Reading never translates.
//   Units      bytes; lines are counted from 1.
//   Ownership  a File closes itself; a path is borrowed for the call.
//   Errors     results as below; the first error of reading, writing or closing stays with the file
//              until asked for.
#ifndef TAMU_CORE_FILE_H_
#define TAMU_CORE_FILE_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "core/memory.h"
#include "platform/files.h"

namespace tamu {

class File {
 public:
  // A position with the number of its physical line.
  struct Place {
    std::uint64_t offset = 0;
    std::uint32_t line = 1;
  };

  File() noexcept = default;
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  ~File();

  // Returns false, with the reason in GetLastError, when the file does not open. The file must be
  // closed.
  [[nodiscard]] bool Open(const char16_t* path, const char16_t* mode) noexcept;
  // Writes what is buffered and closes. Returns false when either fails; the file is closed in any
  // case.
  bool Close() noexcept;
  [[nodiscard]] bool is_open() const noexcept { return handle_ != platform::kInvalidHandle; }

  // The first error since the file was opened, in the platform's numbers, 0 for none; it outlives
  // Close. The second form forgets it.
  [[nodiscard]] std::uint32_t error() const noexcept { return error_; }
  std::uint32_t TakeError() noexcept;

  // --- Reading ---

  // The next character, or -1 at the end.
  int GetChar() noexcept;
  // The same without moving on or meeting the end.
  [[nodiscard]] int PeekChar() noexcept;
  // True once a read has met the end of the file, until the position is moved (the C library's
  // feof).
  [[nodiscard]] bool AtEnd() const noexcept { return met_end_; }
  // Where the next character is read or, but for modes that append, written. Lines are counted when
  // reading.
  [[nodiscard]] Place Tell() const noexcept { return {base_ + next_ + pending_, line_}; }
  // Returns false, with nothing changed, when the position cannot be reached (on a pipe, what has
  // left the window). What is buffered is written first.
  bool Seek(const Place& place) noexcept;
  bool Rewind() noexcept { return Seek(Place{}); }

  // What is in memory from the position on; what it views lives until the next call that reads or
  // seeks.
  [[nodiscard]] std::string_view Window() const noexcept {
    return {buffer_.get() + next_, end_ - next_};
  }
  enum class Extension : std::uint8_t { kMore, kEnd, kOutOfMemory };
  // Reads on, so that the window grows beyond what it shows now. A read error counts as the end.
  [[nodiscard]] Extension ExtendWindow() noexcept;
  // Moves on by `bytes` of the window that hold `lines` line ends; `met_end` says that the reader
  // has looked for more and found the end.
  void Advance(std::size_t bytes, std::uint32_t lines, bool met_end) noexcept;

  // --- Writing ---

  // Writes a text, line feeds as the mode says. Returns false when it fails, also because an
  // earlier write failed.
  [[nodiscard]] bool Write(std::string_view text) noexcept;
  // Writes a text and a line feed.
  [[nodiscard]] bool WriteLine(std::string_view text) noexcept;
  // Writes what is buffered.
  [[nodiscard]] bool Flush() noexcept;

 private:
  void Note(std::uint32_t error) noexcept;
  [[nodiscard]] bool GrowWindow() noexcept;
  [[nodiscard]] bool StartReading() noexcept;
  [[nodiscard]] bool StartWriting() noexcept;
  [[nodiscard]] bool WriteBytes(std::string_view bytes) noexcept;
  [[nodiscard]] bool MoveTo(std::uint64_t offset) noexcept;
  void ForgetBuffer() noexcept;

  platform::FileHandle handle_ = platform::kInvalidHandle;
  bool binary_ = false;
  bool readable_ = false;
  bool writable_ = false;
  bool appends_ = false;
  bool met_end_ = false;
  bool source_at_end_ = false;
  std::uint32_t error_ = 0;
  std::uint32_t line_ = 1;

  // The buffer serves one direction at a time. Reading: its first `end_` bytes are the file from
  // `base_` on, and the position is `next_` of them. Writing: its first `pending_` bytes are not
  // written yet and belong to `base_`.
  MemPtr<char> buffer_;
  std::size_t capacity_ = 0;
  std::uint64_t base_ = 0;
  std::size_t next_ = 0;
  std::size_t end_ = 0;
  std::size_t pending_ = 0;
};

// Opens `path`; on failure logs that it could not be opened "for writing", whatever the mode, and
// returns 1; else 0.
[[nodiscard]] std::uint32_t FILE_Open(const char16_t* path, const char16_t* mode,
                                      File* file) noexcept;

// Closes; on failure logs the path as far as "%s" shows wide text, its first character, and returns
// 1; else 0.
std::uint32_t FILE_Close(File* file, const char16_t* path) noexcept;

// Writes the text and a line feed. Returns nonzero when the write fails.
[[nodiscard]] std::uint32_t FILE_PutLine(File* file, std::string_view text) noexcept;

// Deletes a file; on failure logs the path and the error number and returns 1; else 0.
std::uint32_t FILE_Remove(const char16_t* path) noexcept;

// Units of the buffer that FILE_TempFilename fills, with the terminator.
inline constexpr std::size_t kTempPathUnits = 256;

// Makes the path of a temporary file: the temporary folder followed by `name`, or, for a null or
// empty name, a new empty file with a unique name in it, which only the user can read. Returns 0,
// or 1 after a log line with the reason; `path_out` is then empty. A path that does not fit
// `path_out` is such a failure: it is never cut.
[[nodiscard]] std::uint32_t FILE_TempFilename(const char* name,
                                              char16_t (&path_out)[kTempPathUnits]) noexcept;

}  // namespace tamu

#endif  // TAMU_CORE_FILE_H_
