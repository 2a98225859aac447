#include "store/importer.h"

#include <utility>

#include "display_text.h"
#include "store/error_lines.h"
#include "store/object_label.h"
#include "store/recognition.h"

namespace tamu::tool {
namespace {

// A device that lost so many batches in a row will not keep the next one.
constexpr int kMostLosses = 5;

// By fate, of a success.
std::string FateText(Fate fate, bool dry_run) {
  switch (fate) {
    case Fate::kAdded:
      return dry_run ? "would be added" : "added";
    case Fate::kUpdated:
      return dry_run ? "would be updated" : "updated";
    default:
      return dry_run ? "would be skipped, already there" : "skipped, already there";
  }
}

std::string CannotBeRecognised(const std::string& missing) {
  return "cannot be recognised again: " + missing + "; another import would add it once more";
}

}  // namespace

int Importer::Run() {
  const std::vector<std::string>& files = options_.files;
  for (std::size_t i = 0; i < files.size(); ++i) ImportFile(files[i], i + 1 == files.size());
  progress_.Hide();
  const std::vector<std::string> texts = counts_.Texts(options_.dry_run);
  for (const std::string& text : texts) console_->Print(text + "\n");
  if (texts.empty()) console_->Print("nothing was imported\n");
  return counts_.Of(Fate::kFailed) == 0 && !incomplete_ ? kExitSuccess : kExitFailure;
}

void Importer::ImportFile(const std::string& name, bool last) {
  InputFile input;
  std::string reason;
  if (ended_) {
    Tell("not imported: " + DISPLAY_FileName(name));
    return;
  }
  // A pipe would be waited for with a batch open, and while Ctrl-C is held back.
  if (!input.Open(name, Reading::kTwice, &reason)) {
    progress_.Hide();
    console_->TellError(PROBLEM_Text(input.shown(), {0, reason}));
    incomplete_ = true;
    return;
  }
  const EndRequest end_request;
  input_ = &input;
  end_request_ = &end_request;
  objects_ = 0;
  done_ = 0;
  const ReadOutcome outcome = READ_Objects(input, *this);
  Settle({});
  EndFile(outcome, end_request.Came(), last);
  end_request_ = nullptr;
  input_ = nullptr;
}

void Importer::EndFile(const ReadOutcome& outcome, bool interrupted, bool last) {
  if (outcome.problem) {
    progress_.Hide();
    console_->TellError(PROBLEM_Text(input_->shown(), *outcome.problem));
    TellRest(outcome.end);
    incomplete_ = true;
  }
  const std::optional<std::uint64_t> rest =
      outcome.ended ? READ_CountFrom(*input_, outcome.end) : 0;
  const bool cut = rest != 0;
  if (gave_up_) {
    ended_ = true;
    Tell(input_->shown() + ": gave up, as the device keeps failing");
    if (cut) TellRest(outcome.end);
  } else if (interrupted && (cut || !last)) {
    ended_ = true;
    std::string text = "interrupted: " + KIND_Count(done_, {"object", "objects"}) + " of " +
                       input_->shown() + (done_ == 1 ? " is " : " are ") +
                       (options_.dry_run ? "looked at" : "imported");
    if (cut) {
      text += "; the rest, from line " + std::to_string(outcome.end.line) + " on, is not";
    }
    Tell(text);
  }
  incomplete_ = incomplete_ || ended_;
}

bool Importer::WantsEnd() {
  const bool end = gave_up_ || end_request_->Came();
  // The library reads the file to its end all the same: what is complete does not wait for it.
  if (end) Settle({});
  return end;
}

void Importer::TakeObject(const DeliveredObject& object) {
  ++objects_;
  const Candidate candidate = Describe(object);
  if (options_.dry_run) {
    Foresee(candidate);
  } else {
    Import(candidate);
  }
  progress_.Update({input_->shown(), objects_, object.end_offset, input_->size()});
}

void Importer::TakeWarning(const Message& warning) {
  Tell(MESSAGE_Warning(input_->shown(), warning));
}

Importer::Candidate Importer::Describe(const DeliveredObject& object) {
  // What is logged on the way is logged again when the object is stored.
  const ErrorLines ignored;
  Candidate candidate;
  candidate.kind = object.kind;
  candidate.record = object.record;
  candidate.stored_kind = STORED_KindOf(object.kind, *object.record);
  candidate.line = object.line;
  candidate.label = LABEL_Object(object);
  candidate.key = RECOGNITION_Key(object.kind, object.record, &candidate.missing);
  return candidate;
}

void Importer::Import(const Candidate& candidate) {
  const auto waiting = [this] {
    if (!std::exchange(waited_, true)) Tell("waiting: another program uses the device");
    return !end_request_->Came();
  };
  std::string problem;
  // Notes are files: no batch holds them.
  if (candidate.kind != KIND_NOTE && !batch_.Open(waiting, &problem)) {
    gave_up_ = true;
    return Fail(candidate.line, candidate.stored_kind, candidate.label, problem);
  }
  FindOutcome found;
  if (candidate.key) found = STORE_Find(candidate.kind, candidate.record);
  if (found.found == Found::kFailed) return FailInDevice(candidate, found.problem);
  const bool duplicate = found.found == Found::kYes;
  if (duplicate && options_.on_duplicate == OnDuplicate::kSkip) {
    return Keep(candidate, Fate::kSkipped, std::move(found.id));
  }
  if (duplicate && !AcceptDuplicate(candidate)) return;
  const bool update = duplicate && options_.on_duplicate == OnDuplicate::kUpdate;
  const StoreOutcome outcome = update ? STORE_Update(candidate.kind, found.id, candidate.record)
                                      : STORE_Add(candidate.kind, candidate.record);
  for (const std::string& remark : outcome.remarks) TellWarning(candidate, remark);
  if (!outcome.failure.empty()) return FailInDevice(candidate, outcome.failure);
  if (!candidate.key) TellWarning(candidate, CannotBeRecognised(candidate.missing));
  Keep(candidate, update ? Fate::kUpdated : Fate::kAdded, std::move(found.id));
}

// Asks the device and remembers what the import would have brought before.
void Importer::Foresee(const Candidate& candidate) {
  FindOutcome found;
  if (candidate.key) {
    std::u16string name(1, static_cast<char16_t>(candidate.stored_kind));
    name += *candidate.key;
    found = STORE_Find(candidate.kind, candidate.record);
    if (!foreseen_.insert(std::move(name)).second) found.found = Found::kYes;
  }
  const bool duplicate = found.found == Found::kYes;
  if (found.found == Found::kFailed) return FailInDevice(candidate, found.problem);
  if (!candidate.key && candidate.kind == KIND_NOTE) {
    return Fail(candidate.line, candidate.stored_kind, candidate.label, candidate.missing);
  }
  if (duplicate && !AcceptDuplicate(candidate)) return;
  if (!candidate.key) TellWarning(candidate, CannotBeRecognised(candidate.missing));
  Fate fate = Fate::kAdded;
  if (duplicate && options_.on_duplicate == OnDuplicate::kSkip) fate = Fate::kSkipped;
  if (duplicate && options_.on_duplicate == OnDuplicate::kUpdate) fate = Fate::kUpdated;
  Keep(candidate, fate, std::move(found.id));
}

bool Importer::AcceptDuplicate(const Candidate& candidate) {
  if (candidate.kind != KIND_NOTE || options_.on_duplicate != OnDuplicate::kAdd) return true;
  Fail(candidate.line, candidate.stored_kind, candidate.label,
       "the device has a note with this title, and one at most; '--on-duplicate update' replaces "
       "it");
  return false;
}

void Importer::Keep(const Candidate& candidate, Fate fate, std::string detail) {
  PendingObject object{candidate.stored_kind, fate, candidate.line, candidate.label,
                       std::move(detail)};
  if (!batch_.is_open()) return Report(object);
  batch_.Add(std::move(object));
  if (batch_.IsFull()) Settle({});
}

void Importer::Report(const PendingObject& object) {
  counts_.Add(object.kind, object.fate);
  ++done_;
  if (!options_.verbose) return;
  progress_.Hide();
  std::string text = LABEL_At(input_->shown(), object.line, object.label) + ": " +
                     FateText(object.fate, options_.dry_run);
  if (!object.detail.empty()) text += " (" + DISPLAY_Bytes(object.detail) + ")";
  console_->Print(text + "\n");
}

void Importer::Fail(std::uint32_t line, StoredKind kind, const std::string& label,
                    const std::string& reason) {
  counts_.Add(kind, Fate::kFailed);
  Tell(LABEL_At(input_->shown(), line, label) + ": " + reason);
}

// Whether the device has lost the objects before this one, too, only the end of their batch tells.
void Importer::FailInDevice(const Candidate& candidate, const std::string& reason) {
  Settle(reason);
  Fail(candidate.line, candidate.stored_kind, candidate.label, reason);
}

void Importer::Settle(const std::string& reason) {
  if (!batch_.is_open()) return;
  std::vector<PendingObject> objects;
  std::string problem;
  if (batch_.Close(&objects, &problem)) {
    if (!objects.empty()) losses_ = 0;
    for (const PendingObject& object : objects) Report(object);
    return;
  }
  if (problem.empty()) problem = reason;
  for (const PendingObject& object : objects) {
    Fail(object.line, object.kind, object.label, "not kept: " + problem);
  }
  NoteLoss();
}

void Importer::NoteLoss() {
  batch_.SetSingle();
  gave_up_ = ++losses_ >= kMostLosses;
}

void Importer::TellRest(const File::Place& place) {
  const std::optional<std::uint64_t> count = READ_CountFrom(*input_, place);
  if (count.value_or(0) == 0) return;
  Tell(input_->shown() + ": not imported: " + KIND_Count(*count, {"object", "objects"}) +
       ", from line " + std::to_string(place.line) + " on");
}

void Importer::TellWarning(const Candidate& candidate, const std::string& text) {
  Tell(LABEL_At(input_->shown(), candidate.line, "warning: " + candidate.label) + ": " + text);
}

void Importer::Tell(const std::string& line) {
  progress_.Hide();
  console_->Tell(line);
}

}  // namespace tamu::tool
