// The command "rewrite".
#include <iterator>
#include <optional>

#include "commands.h"
#include "core/file.h"
#include "formats/format_table.h"
#include "formats/object_file.h"
#include "losses.h"
#include "object_reader.h"
#include "open_ends.h"
#include "platform/last_error.h"
#include "system/output_file.h"
#include "text/tokens.h"

namespace tamu::tool {
namespace {

// The version that an object of a kind gets when it has none, by kind.
constexpr const char* kCompletedVersions[] = {"2.1", "1.0", "1.1", "1.1", "1.1", "1.1"};
static_assert(std::size(kCompletedVersions) == KIND_MSG_OUTBOX + 1);

// Takes objects nobody wants: for files that are only looked through.
class Ignorer final : public ObjectHandler {
 public:
  void TakeObject(const DeliveredObject& /*object*/) override {}
  void TakeWarning(const Message& /*warning*/) override {}
};

class Writer final : public ObjectHandler {
 public:
  Writer(const InputFile& input, File* out, Losses* losses, Console* console)
      : input_(input), out_(out), losses_(losses), console_(console) {}

  void TakeObject(const DeliveredObject& object) override {
    CompleteVersion(object);
    if (KIND_IsMessage(object.kind)) LeaveOutParts(&object.record->message);
    if (OPENENDS_Close(object.kind, object.record)) ++closed_;
    // Its result tells nothing of failed writes; the file does.
    const TamuResult result = FORMAT_Write(object.kind, out_, *object.record);
    if (result == TAMU_UNSUPPORTED_TYPE) ++not_written_;
  }
  void TakeWarning(const Message& warning) override {
    // What is left out is counted, and told at the end.
    if (warning.kind == MessageKind::kLeftOut || warning.kind == MessageKind::kHarmless) return;
    console_->Tell(MESSAGE_Warning(input_.shown(), warning));
  }

  // Objects of kinds that cannot be written.
  [[nodiscard]] std::uint64_t not_written() const noexcept { return not_written_; }
  // Objects that got a version, having none.
  [[nodiscard]] std::uint64_t completed() const noexcept { return completed_; }
  // Objects with texts that would have swallowed the next line.
  [[nodiscard]] std::uint64_t closed() const noexcept { return closed_; }

 private:
  // What is left of a multipart mail is no multipart: as such it could not be read again.
  void LeaveOutParts(MessageShape* message) {
    LOSSES_AddMessage(*message, losses_);
    if (MESSAGE_SaysMultipart(*message)) message->body.content_type[0] = '\0';
  }

  // What is written without a version could not be read again. There is none in the second
  // component of a calendar, in a message whose VERSION stands before a card, and in a card or note
  // that is read on the strength of a nested object's VERSION.
  void CompleteVersion(const DeliveredObject& object) noexcept {
    ObjectRecord& record = *object.record;
    bool completed = false;
    switch (object.kind) {
      case KIND_CONTACT:
        completed = Complete(object.kind, record.contact.version);
        break;
      case KIND_CALENDAR:
        completed = Complete(object.kind, record.event.version);
        break;
      case KIND_NOTE:
        completed = Complete(object.kind, record.note.version);
        break;
      default:
        completed = Complete(object.kind, record.message.version);
        break;
    }
    if (completed) ++completed_;
  }

  template <std::size_t size>
  static bool Complete(ObjectKind kind, char (&version)[size]) noexcept {
    if (version[0] != '\0' || kind >= std::size(kCompletedVersions)) return false;
    STR_CopyField(version, kCompletedVersions[kind]);
    return true;
  }

  const InputFile& input_;
  File* out_;
  Losses* losses_;
  Console* console_;
  std::uint64_t not_written_ = 0;
  std::uint64_t completed_ = 0;
  std::uint64_t closed_ = 0;
};

class Rewriter {
 public:
  Rewriter(const RewriteOptions& options, Console* console)
      : options_(options), console_(console) {}

  // Returns false after a message when the work failed.
  bool Run() {
    if (!OpenBoth()) return false;
    std::uint64_t kept_bytes = 0;
    if (options_.append && out_.HasContent() && !FindKeptBytes(&kept_bytes)) return false;
    std::string reason;
    if (!out_.Prepare(kept_bytes, &reason)) return FailWriting(reason);
    ReadOutcome outcome;
    if (!Convert(&outcome)) return false;
    if (outcome.problem && !MayGoOn(outcome)) return false;
    if (!out_.Commit(&reason)) return FailWriting(reason);
    Report(outcome);
    return !outcome.problem.has_value();
  }

 private:
  bool FailReading(const std::string& reason) {
    console_->TellError(PROBLEM_Text(in_.shown(), {0, reason}));
    return false;
  }
  bool FailWriting(const std::string& reason) {
    if (!reason.empty()) console_->TellError(out_.shown() + ": " + reason);
    return false;
  }

  bool OpenBoth() {
    std::string reason;
    if (!in_.Open(options_.in, Reading::kTwice, &reason)) return FailReading(reason);
    if (!out_.Locate(options_.out, &reason)) return FailWriting(reason);
    if (!in_.identity() || in_.identity() != out_.identity()) return true;
    return FailWriting("this is the file that is read (" + in_.shown() +
                       "). Write to another file and rename it afterwards");
  }

  // Objects are appended where the last one of the file ends: behind anything else, blank lines
  // even, they would never be read.
  bool FindKeptBytes(std::uint64_t* kept_bytes) {
    InputFile old;
    std::string reason;
    if (!old.Open(options_.out, Reading::kOnce, &reason)) return FailWriting(reason);
    Ignorer ignorer;
    const ReadOutcome outcome = READ_Objects(old, ignorer);
    *kept_bytes = outcome.end.offset;
    if (outcome.problem) {
      console_->TellError(PROBLEM_Text(out_.shown(), *outcome.problem));
    } else if (outcome.rest_warning) {
      console_->TellError(
          PROBLEM_Text(out_.shown(), {outcome.rest_warning->line, outcome.rest_warning->text}));
    } else {
      return true;
    }
    return FailWriting(
        "nothing was appended: it would stand behind what cannot be read. Repair the file first");
  }

  // Reads and writes. Returns false when writing failed.
  bool Convert(ReadOutcome* outcome) {
    File out;
    if (!out.Open(out_.path(), u"a")) {
      return FailWriting(std::string("cannot open it: ") +
                         platform::ErrorText(platform::GetLastError()));
    }
    Writer writer(in_, &out, &losses_, console_);
    *outcome = READ_Objects(in_, writer);
    out.Close();
    if (out.error() == platform::kErrorBrokenPipe) return false;
    if (out.error() != 0) {
      return FailWriting(std::string("writing failed: ") + platform::ErrorText(out.error()));
    }
    outcome->objects -= writer.not_written();
    completed_ = writer.completed();
    closed_ = writer.closed();
    return true;
  }

  // Tells the problem; with --keep-going, what was read before it is good enough.
  bool MayGoOn(const ReadOutcome& outcome) {
    console_->TellError(PROBLEM_Text(in_.shown(), *outcome.problem));
    if (options_.keep_going && outcome.objects != 0) return true;
    if (outcome.objects == 0) return FailWriting("nothing was written");
    if (out_.IsDirect()) {
      return FailWriting("it is no regular file, and what was read has been written to it");
    }
    return FailWriting("nothing was written. --keep-going would write what was read");
  }

  void Report(const ReadOutcome& outcome) {
    console_->Tell(out_.shown() + ": " + KIND_Count(outcome.objects, KIND_Words(outcome.kind)) +
                   (options_.append ? " appended" : " written") +
                   (outcome.problem ? ", not all that there are" : ""));
    if (completed_ != 0) {
      console_->Tell(out_.shown() + ": added: VERSION:" + kCompletedVersions[outcome.kind] +
                     " to " + KIND_Count(completed_, KIND_Words(outcome.kind)) + " that had none");
    }
    if (closed_ != 0) {
      console_->Tell(out_.shown() + ": added: a blank behind the '=' that ends a value, in " +
                     KIND_Count(closed_, KIND_Words(outcome.kind)));
    }
    AddLossesOfFile(outcome);
    for (const std::string& text : losses_.Texts()) {
      console_->Tell(out_.shown() + ": left out: " + text);
    }
  }
  void AddLossesOfFile(const ReadOutcome& outcome) {
    File source;
    if (!source.Open(in_.path(), u"rb")) return;
    const ObjectName object_name = OBJECTFILE_PeekName(&source);
    LOSSES_AddFile(object_name, &source, outcome.end.offset, &losses_);
  }

  const RewriteOptions& options_;
  Console* console_;
  InputFile in_;
  OutputFile out_;
  std::uint64_t completed_ = 0;
  std::uint64_t closed_ = 0;
  Losses losses_;
};

}  // namespace

int COMMAND_Rewrite(const RewriteOptions& options, Console* console) {
  return Rewriter(options, console).Run() ? kExitSuccess : kExitFailure;
}

}  // namespace tamu::tool
