#include "store/read_back.h"

#include "core/file.h"
#include "formats/format_table.h"
#include "object_reader.h"
#include "open_ends.h"
#include "platform/last_error.h"
#include "store/record_compare.h"

namespace tamu::tool {
namespace {

// Compares the first object of a file.
class Comparer final : public ObjectHandler {
 public:
  explicit Comparer(const CanonicalForm& expected) : expected_(expected) {}

  void TakeObject(const DeliveredObject& object) override {
    if (objects_++ != 0) return;
    differences_ = RECORD_Differences(
        expected_, RECORD_Canonical(object.kind, object.record, RecordState::kWritten));
  }
  void TakeWarning(const Message& /*warning*/) override {}

  [[nodiscard]] std::uint64_t objects() const noexcept { return objects_; }
  [[nodiscard]] std::vector<std::string> TakeDifferences() { return std::move(differences_); }

 private:
  const CanonicalForm& expected_;
  std::uint64_t objects_ = 0;
  std::vector<std::string> differences_;
};

// "" or why it could not be written.
std::string Write(ObjectKind kind, const ObjectRecord& record, const char16_t* path) {
  File file;
  if (!file.Open(path, u"w")) return platform::ErrorText(platform::GetLastError());
  static_cast<void>(FORMAT_Write(kind, &file, record));
  file.Close();
  return file.error() == 0 ? "" : platform::ErrorText(file.error());
}

}  // namespace

ReadBack::Outcome ReadBack::Try(ObjectKind kind, ObjectRecord* record) {
  Outcome outcome;
  const CanonicalForm expected = RECORD_Canonical(kind, record, RecordState::kFetched);
  OPENENDS_Close(kind, record);
  if (const std::string reason = Write(kind, *record, scratch_.path()); !reason.empty()) {
    outcome.differences.push_back("it could not be read back: no temporary file: " + reason);
    return outcome;
  }
  InputFile input;
  std::string reason;
  if (!input.Open(scratch_.argument(), Reading::kOnce, &reason)) {
    outcome.differences.push_back("it could not be read back: " + reason);
    return outcome;
  }
  Comparer comparer(expected);
  const ReadOutcome read = READ_Objects(input, comparer);
  outcome.differences = comparer.TakeDifferences();
  outcome.goes_on = comparer.objects() == 1 && !read.problem && read.rest == RestOfFile::kNothing;
  if (read.problem) {
    outcome.differences.push_back("a file with it cannot be read beyond it: " + read.problem->text);
  } else if (comparer.objects() != 1) {
    outcome.differences.push_back("it comes back as " + std::to_string(comparer.objects()) +
                                  " objects");
  } else if (!outcome.goes_on) {
    outcome.differences.emplace_back("a file with it cannot be read beyond it");
  }
  return outcome;
}

}  // namespace tamu::tool
