// store/importer.h - brings the objects of files into the device's stores, file after file.
//   Objects that the device has already are known by what it finds them by
//   (store/recognition.h). Successes count when their batch is kept for good; failures are told at
//   once. Ctrl-C ends the work behind the object at hand, with what is complete kept.
//   Errors     told; std::bad_alloc.
#ifndef TAMU_TOOLS_STORE_IMPORTER_H_
#define TAMU_TOOLS_STORE_IMPORTER_H_

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "commands.h"
#include "console.h"
#include "object_reader.h"
#include "store/import_batch.h"
#include "store/import_counts.h"
#include "store/progress.h"
#include "store/storing.h"
#include "system/end_request.h"

namespace tamu::tool {

class Importer final : public ObjectHandler {
 public:
  // The device's stores are open as long as it lives.
  Importer(const ImportOptions& options, Console* console) : options_(options), console_(console) {}

  // Imports the files, prints what became of their objects and returns the exit code.
  [[nodiscard]] int Run();

  void TakeObject(const DeliveredObject& object) override;
  void TakeWarning(const Message& warning) override;
  [[nodiscard]] bool WantsEnd() override;

 private:
  // An object, and what is known of it before the device is asked.
  struct Candidate {
    ObjectKind kind;
    ObjectRecord* record;
    StoredKind stored_kind;
    std::uint32_t line;
    std::string label;
    std::optional<std::u16string> key;  // none: the device would not recognise it
    std::string missing;                // why
  };

  void ImportFile(const std::string& name, bool last);
  void EndFile(const ReadOutcome& outcome, bool interrupted, bool last);
  [[nodiscard]] static Candidate Describe(const DeliveredObject& object);
  void Import(const Candidate& candidate);
  void Foresee(const Candidate& candidate);
  // False, told, for an object that the device has and cannot have twice.
  [[nodiscard]] bool AcceptDuplicate(const Candidate& candidate);

  void Keep(const Candidate& candidate, Fate fate, std::string detail);
  void Report(const PendingObject& object);
  void Fail(std::uint32_t line, StoredKind kind, const std::string& label,
            const std::string& reason);
  void FailInDevice(const Candidate& candidate, const std::string& reason);
  // Ends the open batch; `reason` is why it may be lost.
  void Settle(const std::string& reason);
  void NoteLoss();

  void TellRest(const File::Place& place);
  void TellWarning(const Candidate& candidate, const std::string& text);
  void Tell(const std::string& line);

  const ImportOptions& options_;
  Console* console_;
  Progress progress_;
  ImportBatch batch_;
  ImportCounts counts_;
  const InputFile* input_ = nullptr;         // while a file is read
  const EndRequest* end_request_ = nullptr;  // likewise
  std::uint64_t objects_ = 0;                // of the file, read
  std::uint64_t done_ = 0;                   // of the file, stored or skipped
  int losses_ = 0;                           // batches that were lost without one kept between
  bool gave_up_ = false;
  bool ended_ = false;       // no further file is read
  bool incomplete_ = false;  // something was not read
  bool waited_ = false;
  std::unordered_set<std::u16string> foreseen_;  // by kind and key, of a dry run
};

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_STORE_IMPORTER_H_
