#include "device/ink/documents.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <new>
#include <system_error>
#include <utility>

#include "platform/files.h"
#include "platform/last_error.h"
#include "platform/linux/errors.h"
#include "platform/linux/long_names.h"
#include "platform/paths.h"
#include "platform/rich_ink.h"
#include "text/unicode.h"

namespace tamu::device {
namespace {

constexpr std::u16string_view kExtension = u".pwi";
constexpr std::int64_t kLargestFile = std::int64_t{1} << 28;

std::uint32_t FindFolder(std::u16string* folder) {
  char16_t path[platform::kMaxPath];
  if (!platform::SHGetSpecialFolderPathW(0, path, platform::kCsidlPersonal, 0)) {
    return platform::GetLastError();
  }
  *folder = path;
  return platform::kErrorSuccess;
}

bool HasExtension(std::u16string_view name) {
  return name.size() >= kExtension.size() &&
         UNICODE_FoldText(name.substr(name.size() - kExtension.size())) == kExtension;
}

// Appends the note in the file `name`, when it is one.
void AppendDocument(const std::u16string& folder, const std::string& native_folder,
                    const std::string& name, std::vector<Document>* documents) {
  if (!HasExtension(platform::PathFromNative(name))) return;
  struct stat status = {};
  if (::stat((native_folder + "/" + name).c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
    return;
  }
  Document document;
  document.title = platform::PathFromNative(platform::LongNameOf(native_folder, name));
  document.title.resize(document.title.size() - kExtension.size());
  document.path = folder + platform::kPathSeparator + platform::PathFromNative(name);
  document.size = static_cast<std::uint64_t>(status.st_size);
  document.modified = status.st_mtime;
  documents->push_back(std::move(document));
}

std::uint32_t List(std::vector<Document>* documents) {
  std::u16string folder;
  if (const std::uint32_t error = FindFolder(&folder)) return error;
  const std::string native = platform::PathToNative(folder);
  std::error_code failure;
  std::filesystem::directory_iterator entry(native, failure);
  if (failure == std::errc::no_such_file_or_directory) return platform::kErrorSuccess;
  while (!failure && entry != std::filesystem::directory_iterator()) {
    AppendDocument(folder, native, entry->path().filename().native(), documents);
    entry.increment(failure);
  }
  if (failure) return platform::ErrorFromErrno(failure.value());
  // Folding is computed once a title, not once a comparison.
  std::vector<std::pair<std::u16string, std::size_t>> order;
  for (std::size_t i = 0; i < documents->size(); ++i) {
    order.emplace_back(UNICODE_FoldText((*documents)[i].title), i);
  }
  std::ranges::sort(order, [&](const auto& left, const auto& right) {
    if (left.first != right.first) return left.first < right.first;
    return (*documents)[left.second].path < (*documents)[right.second].path;
  });
  std::vector<Document> sorted;
  sorted.reserve(order.size());
  for (const auto& [key, i] : order) sorted.push_back(std::move((*documents)[i]));
  *documents = std::move(sorted);
  return platform::kErrorSuccess;
}

// A title is a part of a path, not a path.
bool CanBeTitle(std::u16string_view title) {
  return title.find(platform::kPathSeparator) == std::u16string_view::npos &&
         title.find(u'\0') == std::u16string_view::npos;
}

// Does `work` on the path of the note: the one that the title makes or, when nothing is there, one
// that the list knows under this title.
template <typename Work>
std::uint32_t WithPath(std::u16string_view title, Work&& work) {
  if (!CanBeTitle(title)) return platform::kErrorInvalidName;
  std::u16string path;
  if (const std::uint32_t error = FindFolder(&path)) return error;
  path.push_back(platform::kPathSeparator);
  path.append(title).append(kExtension);
  std::uint32_t error = work(path);
  if (error == platform::kErrorPathNotFound) error = platform::kErrorFileNotFound;
  if (error != platform::kErrorFileNotFound) return error;
  std::vector<Document> documents;
  if (const std::uint32_t failure = List(&documents)) return failure;
  const auto found = std::ranges::find(documents, title, &Document::title);
  return found == documents.end() ? error : work(found->path);
}

std::uint32_t ReadWhole(platform::FileHandle file, std::vector<std::uint8_t>* bytes) {
  std::int64_t size = 0;
  if (!platform::SetFilePointerEx(file, 0, &size, platform::kFileEnd) ||
      !platform::SetFilePointerEx(file, 0, nullptr, platform::kFileBegin)) {
    return platform::GetLastError();
  }
  if (size > kLargestFile) return platform::kErrorFileTooLarge;
  bytes->resize(static_cast<std::size_t>(size));
  std::size_t read = 0;
  for (std::uint32_t done = 1; done > 0 && read < bytes->size(); read += done) {
    const auto rest = static_cast<std::uint32_t>(bytes->size() - read);
    if (!platform::ReadFile(file, bytes->data() + read, rest, &done, nullptr)) {
      return platform::GetLastError();
    }
  }
  bytes->resize(read);  // somebody may have cut it meanwhile
  return platform::kErrorSuccess;
}

// A handle that closes itself.
class OpenFile {
 public:
  explicit OpenFile(const std::u16string& path)
      : handle_(platform::CreateFileW(path.c_str(), platform::kGenericRead, 0, nullptr,
                                      platform::kOpenExisting, 0, 0)) {}
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() {
    if (handle_ != platform::kInvalidHandle) platform::CloseHandle(handle_);
  }
  [[nodiscard]] platform::FileHandle get() const noexcept { return handle_; }

 private:
  platform::FileHandle handle_;
};

std::uint32_t ReadPath(const std::u16string& path, InkText* text) {
  const OpenFile file(path);
  if (file.get() == platform::kInvalidHandle) return platform::GetLastError();
  std::vector<std::uint8_t> bytes;
  if (const std::uint32_t error = ReadWhole(file.get(), &bytes)) return error;
  *text = INK_Decode(bytes);
  return platform::kErrorSuccess;
}

template <typename Work>
std::uint32_t WithoutThrowing(Work&& work) noexcept {
  try {
    return work();
  } catch (const std::bad_alloc&) {
    return platform::kErrorNotEnoughMemory;
  }
}

}  // namespace

std::uint32_t DOCUMENTS_List(std::vector<Document>* documents) noexcept {
  documents->clear();
  const std::uint32_t error = WithoutThrowing([&] { return List(documents); });
  if (error != platform::kErrorSuccess) documents->clear();
  return error;
}

std::uint32_t DOCUMENTS_Read(std::u16string_view title, InkText* text) noexcept {
  *text = {};
  return WithoutThrowing([&] {
    return WithPath(title, [&](const std::u16string& path) { return ReadPath(path, text); });
  });
}

std::uint32_t DOCUMENTS_Delete(std::u16string_view title) noexcept {
  return WithoutThrowing([&] {
    return WithPath(title, [](const std::u16string& path) {
      return platform::DeleteFileW(path.c_str()) ? platform::kErrorSuccess
                                                 : platform::GetLastError();
    });
  });
}

}  // namespace tamu::device
