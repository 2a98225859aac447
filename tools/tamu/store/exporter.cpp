#include "store/exporter.h"

#include <filesystem>
#include <system_error>

#include "display_text.h"
#include "formats/format_table.h"
#include "object_reader.h"
#include "platform/last_error.h"
#include "platform/paths.h"
#include "system/folder.h"

namespace tamu::tool {
namespace {

// Of one object so many differences are told.
constexpr std::size_t kMostTexts = 5;

class Counter final : public ObjectHandler {
 public:
  void TakeObject(const DeliveredObject& /*object*/) override {}
  void TakeWarning(const Message& /*warning*/) override {}
};

std::string CountsText(const std::array<std::uint64_t, std::size(kStoredKinds)>& counts) {
  std::string text;
  for (const StoredKind kind : kStoredKinds) {
    const std::uint64_t count = counts[static_cast<std::size_t>(kind)];
    if (count == 0) continue;
    text += (text.empty() ? "" : ", ") + KIND_Count(count, STORED_Words(kind));
  }
  return text.empty() ? "nothing" : text;
}

}  // namespace

bool Exporter::Fail(const std::string& where, const std::string& reason) {
  // A reader that has seen enough gives no reason.
  if (!reason.empty()) console_->TellError(where.empty() ? reason : where + ": " + reason);
  return false;
}

bool Exporter::FetchOrTell(const CatalogueEntry& entry, FetchedObject* object) {
  std::string problem;
  if (FETCH_Object(device_, entry.id, object, &problem)) return true;
  console_->TellError(CATALOGUE_Label(entry) + ": " + problem + ". It was left out");
  ++failed_;
  return false;
}

void Exporter::TellChanges(const std::string& where, const CatalogueEntry& entry,
                           const std::vector<std::string>& texts) {
  if (texts.empty()) return;
  ++changed_;
  const std::string label = where + ": " + CATALOGUE_Label(entry) + ": ";
  for (std::size_t i = 0; i < texts.size() && i < kMostTexts; ++i) console_->Tell(label + texts[i]);
  if (texts.size() > kMostTexts) {
    console_->Tell(label + "and " + std::to_string(texts.size() - kMostTexts) +
                   " more differences");
  }
}

void Exporter::Count(const CatalogueEntry& entry) {
  ++written_[static_cast<std::size_t>(entry.id.kind)];
}

bool Exporter::WriteFile(const std::vector<StoredKind>& kinds, const std::string& argument) {
  OutputFile target;
  std::string reason;
  if (!read_back_.Prepare(&reason)) return Fail("", reason);
  if (!target.Locate(argument, &reason) || !target.Prepare(0, &reason)) {
    return Fail(target.shown(), reason);
  }
  if (!WriteAll(kinds, target)) return false;
  const bool read_back = target.IsDirect() || IsReadBack(target);
  if (!target.Commit(&reason)) return Fail(target.shown(), reason);
  return Finish(target.shown(), target.shown()) && read_back;
}

// False after a message when the file cannot be written.
bool Exporter::WriteAll(const std::vector<StoredKind>& kinds, const OutputFile& target) {
  File out;
  if (!out.Open(target.path(), u"a")) {
    return Fail(target.shown(),
                std::string("cannot open it: ") + platform::ErrorText(platform::GetLastError()));
  }
  std::vector<CatalogueEntry> last;
  std::string problem;
  const auto take = [&](const CatalogueEntry& entry) {
    FetchedObject object;
    if (!FetchOrTell(entry, &object)) return true;
    ReadBack::Outcome outcome = read_back_.Try(object.kind(), object.record());
    outcome.differences.insert(outcome.differences.begin(), object.losses.begin(),
                               object.losses.end());
    TellChanges(target.shown(), entry, outcome.differences);
    if (!outcome.goes_on) {
      last.push_back(entry);
      return true;
    }
    static_cast<void>(FORMAT_Write(object.kind(), &out, *object.record()));
    Count(entry);
    ++readable_;
    return out.error() == 0;
  };
  const bool listed = CATALOGUE_List(device_, kinds, take, &problem);
  if (listed) WriteLast(last, target, &out);
  out.Close();
  if (!listed) return Fail("", problem + ". Nothing was written");
  if (out.error() == platform::kErrorBrokenPipe) return false;
  if (out.error() == 0) return true;
  return Fail(target.shown(), std::string("writing failed: ") + platform::ErrorText(out.error()));
}

// What ends the reading of its file stands behind everything that can be read.
void Exporter::WriteLast(const std::vector<CatalogueEntry>& last, const OutputFile& target,
                         File* out) {
  for (const CatalogueEntry& entry : last) {
    FetchedObject object;
    if (!FetchOrTell(entry, &object)) continue;
    static_cast<void>(FORMAT_Write(object.kind(), out, *object.record()));
    Count(entry);
  }
  if (last.empty()) return;
  console_->Tell(target.shown() + ": " + std::to_string(last.size()) +
                 (last.size() == 1 ? " object that ends" : " objects that end") +
                 " the reading of a file " + (last.size() == 1 ? "stands" : "stand") +
                 " at its end, behind all others");
}

// Each object was read back by itself; now the file as a whole.
bool Exporter::IsReadBack(const OutputFile& target) {
  InputFile input;
  std::string reason;
  if (!input.Open(platform::PathToNative(target.path()), Reading::kOnce, &reason)) {
    return Fail(target.shown(), "it cannot be read back: " + reason);
  }
  if (readable_ == 0) return true;
  Counter counter;
  const ReadOutcome outcome = READ_Objects(input, counter);
  if (outcome.objects >= readable_) return true;
  return Fail(target.shown(), "of " + std::to_string(readable_) + " objects " +
                                  std::to_string(outcome.objects) + " can be read back" +
                                  (outcome.problem ? ": " + outcome.problem->text : ""));
}

bool Exporter::WriteFolder(const std::vector<StoredKind>& kinds, const std::string& folder) {
  std::string problem;
  if (!read_back_.Prepare(&problem)) return Fail("", problem);
  std::error_code failure;
  std::filesystem::create_directories(folder, failure);
  if (failure && !std::filesystem::is_directory(folder)) {
    return Fail(DISPLAY_FileName(folder), "the folder cannot be made: " + failure.message());
  }
  const std::string base = folder.ends_with('/') ? folder : folder + "/";
  ExportNames names;
  const auto take = [&](const CatalogueEntry& entry) {
    return WriteOne(entry, base + names.Next(entry.id));
  };
  if (!CATALOGUE_List(device_, kinds, take, &problem)) return Fail("", problem);
  if (!FOLDER_BringToDisk(base, &problem)) {
    return Fail(DISPLAY_FileName(folder), "it cannot be brought to disk: " + problem);
  }
  return Finish(DISPLAY_FileName(folder), changed_ == 1 ? "its file" : "their files");
}

// False when there is no sense in going on.
bool Exporter::WriteOne(const CatalogueEntry& entry, const std::string& path) {
  FetchedObject object;
  if (!FetchOrTell(entry, &object)) return true;
  OutputFile target;
  std::string reason;
  const auto fail = [&] {
    ++failed_;
    return Fail(target.shown(), reason);
  };
  if (!target.Locate(path, &reason) || !target.Prepare(0, &reason)) return fail();
  ReadBack::Outcome outcome = read_back_.Try(object.kind(), object.record());
  outcome.differences.insert(outcome.differences.begin(), object.losses.begin(),
                             object.losses.end());
  File out;
  if (!out.Open(target.path(), u"a")) {
    reason = std::string("cannot open it: ") + platform::ErrorText(platform::GetLastError());
    return fail();
  }
  static_cast<void>(FORMAT_Write(object.kind(), &out, *object.record()));
  out.Close();
  if (out.error() != 0) {
    reason = std::string("writing failed: ") + platform::ErrorText(out.error());
    return fail();
  }
  if (!target.Commit(&reason, ToDisk::kLater)) return fail();
  Count(entry);
  TellChanges(target.shown(), entry, outcome.differences);
  return true;
}

bool Exporter::Finish(const std::string& where, const std::string& target) {
  console_->Tell(where + ": " + CountsText(written_) + " written" +
                 (failed_ != 0 ? ", not all that there are" : ""));
  if (changed_ != 0) {
    const bool one = changed_ == 1;
    console_->Tell(where + ": " + std::to_string(changed_) +
                   (one ? " object does not come back from " : " objects do not come back from ") +
                   target + " as " + (one ? "it is" : "they are") + " on the device (above)");
  }
  return changed_ == 0 && failed_ == 0;
}

}  // namespace tamu::tool
