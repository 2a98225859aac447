#include "core/file.h"

#include <cstring>
#include <optional>
#include <utility>

#include "core/log.h"
#include "platform/last_error.h"

namespace tamu {
namespace {

constexpr std::size_t kBufferSize = 64 * 1024 - 64;  // with a red zone still one page
constexpr std::size_t kLargestBuffer = 0x7FFFFFFF;

struct OpenMode {
  std::uint32_t access = 0;
  std::uint32_t disposition = 0;
  bool binary = false;
};

// The platform's terms for a mode of the C library.
std::optional<OpenMode> ParseMode(const char16_t* mode) noexcept {
  OpenMode result;
  switch (*mode) {
    case u'r':
      result = {platform::kGenericRead, platform::kOpenExisting};
      break;
    case u'w':
      result = {platform::kGenericWrite, platform::kCreateAlways};
      break;
    case u'a':
      result = {platform::kFileAppendData, platform::kOpenAlways};
      break;
    default:
      return std::nullopt;
  }
  for (const char16_t* p = mode + 1; *p != u'\0'; ++p) {
    if (*p == u'b') {
      result.binary = true;
    } else if (*p == u'+') {
      result.access |= platform::kGenericRead;
      if (*mode == u'r') result.access |= platform::kGenericWrite;
    } else if (*p != u't') {
      return std::nullopt;
    }
  }
  return result;
}

}  // namespace

File::~File() {
  if (is_open()) Close();
}

bool File::Open(const char16_t* path, const char16_t* mode) noexcept {
  error_ = 0;
  const std::optional<OpenMode> parsed = path != nullptr ? ParseMode(mode) : std::nullopt;
  if (!parsed) {
    platform::SetLastError(platform::kErrorInvalidParameter);
    return false;
  }
  buffer_.reset(static_cast<char*>(MEM_Alloc(kBufferSize)));
  if (!buffer_) {
    platform::SetLastError(platform::kErrorNotEnoughMemory);
    return false;
  }
  capacity_ = kBufferSize;
  constexpr std::uint32_t kShareReadWrite = 3;
  handle_ = platform::CreateFileW(path, parsed->access, kShareReadWrite, nullptr,
                                  parsed->disposition, 0, 0);
  if (!is_open()) {
    buffer_.reset();
    return false;
  }
  binary_ = parsed->binary;
  appends_ = (parsed->access & platform::kFileAppendData) != 0;
  readable_ = (parsed->access & platform::kGenericRead) != 0;
  writable_ = appends_ || (parsed->access & platform::kGenericWrite) != 0;
  met_end_ = source_at_end_ = false;
  line_ = 1;
  base_ = 0;
  ForgetBuffer();
  return true;
}

bool File::Close() noexcept {
  const bool flushed = Flush();
  const bool closed = platform::CloseHandle(std::exchange(handle_, platform::kInvalidHandle)) != 0;
  if (!closed) Note(platform::GetLastError());
  buffer_.reset();
  capacity_ = 0;
  readable_ = writable_ = false;
  ForgetBuffer();
  return flushed && closed;
}

void File::ForgetBuffer() noexcept { next_ = end_ = pending_ = 0; }

void File::Note(std::uint32_t error) noexcept {
  if (error_ == 0) error_ = error != 0 ? error : platform::kErrorGenFailure;
}

std::uint32_t File::TakeError() noexcept { return std::exchange(error_, 0); }

int File::GetChar() noexcept {
  const int character = PeekChar();
  if (character < 0) {
    met_end_ = true;
    return character;
  }
  ++next_;
  if (character == '\n') ++line_;
  return character;
}

int File::PeekChar() noexcept {
  if (next_ == end_ && ExtendWindow() != Extension::kMore) return -1;
  return static_cast<unsigned char>(buffer_.get()[next_]);
}

bool File::MoveTo(std::uint64_t offset) noexcept {
  if (platform::SetFilePointerEx(handle_, static_cast<std::int64_t>(offset), nullptr,
                                 platform::kFileBegin) == 0) {
    Note(platform::GetLastError());
    return false;
  }
  base_ = offset;
  ForgetBuffer();
  source_at_end_ = false;
  return true;
}

bool File::Seek(const Place& place) noexcept {
  if (!Flush()) return false;
  if (end_ != 0 && place.offset >= base_ && place.offset <= base_ + end_) {
    next_ = static_cast<std::size_t>(place.offset - base_);
  } else if (place.offset != base_ + next_ && !MoveTo(place.offset)) {
    return false;
  }
  met_end_ = false;
  line_ = place.line;
  return true;
}

// What was written has to be in the file before it can be read.
bool File::StartReading() noexcept {
  if (!readable_) return false;
  if (pending_ == 0) return true;
  return Flush();
}

// Writing goes on where reading has got to, not where the window ends.
bool File::StartWriting() noexcept {
  if (!writable_ || error_ != 0) return false;
  if (end_ == 0) return true;
  if (!appends_) return MoveTo(base_ + next_);
  ForgetBuffer();
  return true;
}

bool File::GrowWindow() noexcept {
  if (capacity_ >= kLargestBuffer / 2) return false;
  const std::size_t capacity = capacity_ < 1024 * 1024 ? 1024 * 1024 : capacity_ * 2;
  MemPtr<char> grown(static_cast<char*>(MEM_Alloc(capacity)));
  if (!grown) return false;
  std::memcpy(grown.get(), buffer_.get(), end_);
  buffer_ = std::move(grown);
  capacity_ = capacity;
  return true;
}

File::Extension File::ExtendWindow() noexcept {
  if (!StartReading() || source_at_end_) return Extension::kEnd;
  if (next_ > capacity_ / 2 || end_ == capacity_) {
    std::memmove(buffer_.get(), buffer_.get() + next_, end_ - next_);
    base_ += next_;
    end_ -= next_;
    next_ = 0;
  }
  if (end_ == capacity_ && !GrowWindow()) return Extension::kOutOfMemory;
  std::uint32_t done = 0;
  if (platform::ReadFile(handle_, buffer_.get() + end_,
                         static_cast<std::uint32_t>(capacity_ - end_), &done, nullptr) == 0) {
    Note(platform::GetLastError());
    done = 0;
  }
  if (done == 0) {
    source_at_end_ = true;
    return Extension::kEnd;
  }
  end_ += done;
  return Extension::kMore;
}

void File::Advance(std::size_t bytes, std::uint32_t lines, bool met_end) noexcept {
  next_ += bytes;
  line_ += lines;
  met_end_ = met_end;
}

bool File::WriteBytes(std::string_view bytes) noexcept {
  while (bytes.size() > capacity_ - pending_) {
    const std::size_t room = capacity_ - pending_;
    std::memcpy(buffer_.get() + pending_, bytes.data(), room);
    pending_ += room;
    bytes.remove_prefix(room);
    if (!Flush()) return false;
  }
  if (!bytes.empty()) std::memcpy(buffer_.get() + pending_, bytes.data(), bytes.size());
  pending_ += bytes.size();
  return true;
}

bool File::Write(std::string_view text) noexcept {
  if (!StartWriting()) return false;
  if (binary_) return WriteBytes(text);
  for (;;) {
    const std::size_t line_feed = text.find('\n');
    if (!WriteBytes(text.substr(0, line_feed))) return false;
    if (line_feed == std::string_view::npos) return true;
    if (!WriteBytes("\r\n")) return false;
    text.remove_prefix(line_feed + 1);
  }
}

bool File::WriteLine(std::string_view text) noexcept {
  return Write(text) && WriteBytes(binary_ ? "\n" : "\r\n");
}

bool File::Flush() noexcept {
  if (pending_ == 0) return true;
  std::uint32_t done = 0;
  const bool written =
      platform::WriteFile(handle_, buffer_.get(), static_cast<std::uint32_t>(pending_), &done,
                          nullptr) != 0;
  if (!written) Note(platform::GetLastError());
  base_ += done;
  pending_ = 0;
  source_at_end_ = false;
  // What is appended goes to the end, wherever the position was.
  std::int64_t position = 0;
  if (appends_ && readable_ &&
      platform::SetFilePointerEx(handle_, 0, &position, platform::kFileCurrent) != 0) {
    base_ = static_cast<std::uint64_t>(position);
  }
  return written;
}

std::uint32_t FILE_Open(const char16_t* path, const char16_t* mode, File* file) noexcept {
  if (file->Open(path, mode)) return 0;
  const std::uint32_t reason = platform::GetLastError();
  LOG_Error("TAMU:  Unable to open file '%S' for writing", path);
  platform::SetLastError(reason);
  return 1;
}

std::uint32_t FILE_Close(File* file, const char16_t* path) noexcept {
  if (file->Close()) return 0;
  LOG_Error("TAMU:  Unable to close file '%s'", reinterpret_cast<const char*>(path));
  return 1;
}

std::uint32_t FILE_PutLine(File* file, std::string_view text) noexcept {
  return file->WriteLine(text) ? 0 : 1;
}

}  // namespace tamu
