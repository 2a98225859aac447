#include "object_reader.h"

#include <new>
#include <string_view>
#include <vector>

#include "core/log.h"
#include "formats/object_file.h"
#include "formats/shared_record.h"
#include "platform/last_error.h"
#include "read_failure.h"
#include "text/string_tools.h"

namespace tamu::tool {
namespace {

// Warnings that wait for their object to be shown first; of more than these the first go ahead.
constexpr std::size_t kMostWaiting = 1000;

// What the library's callbacks come back to. Nothing may be thrown through the library.
class Collector {
 public:
  Collector(File* file, ObjectHandler* handler, ReadOutcome* outcome) noexcept
      : file_(file), handler_(handler), outcome_(outcome) {
    LOG_SetObserver(&Observe, this);
  }
  ~Collector() { LOG_SetObserver(nullptr, nullptr); }
  Collector(const Collector&) = delete;
  Collector& operator=(const Collector&) = delete;

  static std::uint32_t Take(ObjectKind kind, ObjectRecord* record, TamuResult status, void* user) {
    auto* const collector = static_cast<Collector*>(user);
    collector->TakeObject(
        {kind, record, status, SHARED_BeginLine(), collector->file_->Tell().offset});
    return 0;
  }

  void HandOnWarnings() {
    for (const Message& warning : waiting_) handler_->TakeWarning(warning);
    waiting_.clear();
  }

  [[nodiscard]] const std::optional<Message>& error() const noexcept { return error_; }
  [[nodiscard]] bool out_of_memory() const noexcept { return out_of_memory_; }
  [[nodiscard]] bool ended() const noexcept { return ended_; }

 private:
  static void Observe(const LogLine& line, void* user) {
    auto* const collector = static_cast<Collector*>(user);
    try {
      collector->TakeLine(line);
    } catch (const std::bad_alloc&) {
      collector->out_of_memory_ = true;
    }
  }

  void TakeLine(const LogLine& line) {
    std::optional<Message> message = MESSAGE_FromLog(line);
    if (!message) return;
    switch (message->kind) {
      case MessageKind::kError:
      case MessageKind::kLine:
      case MessageKind::kIncomplete:
      case MessageKind::kUnended:
        // The first one is the cause; what follows it comes of it.
        if (!error_) error_ = std::move(message);
        return;
      default:
        break;
    }
    if (waiting_.size() == kMostWaiting) HandOnWarnings();
    waiting_.push_back(std::move(*message));
  }

  void TakeObject(const DeliveredObject& object) noexcept {
    // The library reads on whatever a callback says.
    if (out_of_memory_ || ended_) return;
    try {
      handler_->TakeObject(object);
      // The handler may have observed what its own work logs.
      LOG_SetObserver(&Observe, this);
      ++outcome_->objects;
      outcome_->kind = object.kind;
      outcome_->end = file_->Tell();
      HandOnWarnings();
      ended_ = handler_->WantsEnd();
      if (ended_) LOG_SetObserver(nullptr, nullptr);
    } catch (const std::bad_alloc&) {
      out_of_memory_ = true;
    }
  }

  File* file_;
  ObjectHandler* handler_;
  ReadOutcome* outcome_;
  std::vector<Message> waiting_;
  std::optional<Message> error_;
  bool out_of_memory_ = false;
  bool ended_ = false;
};

// What begins the objects of a file, behind "BEGIN:".
std::vector<std::string> BeginNames(std::string_view object_name) {
  if (object_name == "VCALENDAR") return {"VEVENT", "VTODO"};
  return {std::string(object_name)};
}

// The next physical line's first characters, without blanks; false at the end of the file.
bool ReadLineStart(File* file, std::string* start) {
  constexpr std::size_t kEnough = 64;
  start->clear();
  int character = file->GetChar();
  if (character < 0) return false;
  for (; character >= 0 && character != '\n'; character = file->GetChar()) {
    const bool blank = character == ' ' || character == '\t' || character == '\r';
    if (!blank && start->size() < kEnough) start->push_back(static_cast<char>(character));
  }
  return true;
}

}  // namespace

ReadOutcome READ_Objects(const InputFile& input, ObjectHandler& handler) {
  ReadOutcome outcome;
  File file;
  if (!file.Open(input.path(), u"rb")) {
    outcome.problem = {
        {0, std::string("cannot open it: ") + platform::ErrorText(platform::GetLastError())}};
    return outcome;
  }
  FailedReading reading{&file, {}, TAMU_OK, nullptr, false, 0};
  reading.object_name = OBJECTFILE_PeekName(&file);
  Collector collector(&file, &handler, &outcome);
  reading.result = OBJECTFILE_Read(&file, &Collector::Take, &collector);
  outcome.ended = collector.ended();
  if (outcome.ended) return outcome;
  collector.HandOnWarnings();
  reading.error = collector.error() ? &*collector.error() : nullptr;
  reading.out_of_memory = collector.out_of_memory();
  reading.begin_line = SHARED_BeginLine();
  outcome.problem = FAILURE_Explain(reading, &outcome);
  if (outcome.rest_warning) handler.TakeWarning(*outcome.rest_warning);
  return outcome;
}

std::optional<std::uint64_t> READ_CountFrom(const InputFile& input, const File::Place& place) {
  File file;
  if (!file.Open(input.path(), u"rb")) return std::nullopt;
  const std::vector<std::string> names = BeginNames(OBJECTFILE_PeekName(&file).data());
  if (!file.Seek(place)) return std::nullopt;
  std::uint64_t count = 0;
  for (std::string start; ReadLineStart(&file, &start);) {
    if (!STR_BeginsNoCase(start, "BEGIN:")) continue;
    const std::string name = start.substr(6);
    for (const std::string& wanted : names) count += STR_EqualNoCase(name, wanted) ? 1U : 0U;
  }
  if (file.TakeError() != 0) return std::nullopt;
  return count;
}

std::string PROBLEM_Text(const std::string& file, const Problem& problem) {
  std::string text = file;
  if (problem.line != 0) text += ":" + std::to_string(problem.line);
  return text + ": " + problem.text;
}

}  // namespace tamu::tool
