// Cards, events, to-dos and notes.
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "check/check_walk.h"
#include "check/record_format.h"
#include "check/value_check.h"
#include "tamu/tamu.h"
#include "text/version.h"

namespace tamu::tool {
namespace {

constexpr std::size_t kLuidKept = sizeof(ContactShape::luid) - 1;

class RecordWalk {
 public:
  RecordWalk(CheckWalk* walk, const RecordFormat& format, RecordUse use)
      : walk_(walk),
        format_(format),
        use_(use),
        begin_line_(walk->line().number()),
        missing_(format.mandatory()) {}

  void Run() {
    while (!ended_ && !walk_->AtEnd()) TakeLine();
    if (given_up_) return;
    if (!missing_.empty()) AddMissing();
    if (!ended_) walk_->AddMissingEnd(format_.words, begin_line_, format_.begin_value);
  }

 private:
  void TakeLine() {
    if (!walk_->NextLine(format_.words)) return;
    SourceLine& line = walk_->line();
    char* const name = line.name.data();
    format_.trims_name ? LINE_TrimLeadingBlanks(name) : LINE_StripBlanks(name);
    format_.trims_name ? LINE_TrimLeadingBlanks(line.params.data())
                       : LINE_StripBlanks(line.params.data());
    const LineTraits traits = format_.find(name);
    if (depth_ == 1 || format_.nested_counts) Erase(name);
    switch (traits.role) {
      case LineRole::kUnknown:
        UNKNOWN_Add(walk_);
        break;
      case LineRole::kBegin:
        if (depth_++ == 1) {
          walk_->Add(FindingKind::kNestedObject,
                     {std::string(format_.words), std::to_string(begin_line_)});
        }
        break;
      case LineRole::kEnd:
        if (--depth_ == 0) ended_ = true;
        break;
      default:
        if (depth_ == 1) TakeKnown(traits);
    }
  }

  void TakeKnown(const LineTraits& traits) {
    const char* const value = walk_->line().value;
    const std::string name = SHOWN_Text(walk_->line().name.data());
    switch (traits.role) {
      case LineRole::kVersion:
        TakeVersion();
        break;
      case LineRole::kLuid:
        HEAD_Check(walk_);
        LENGTH_Check(walk_, value, kLuidKept);
        if (luid_seen_) walk_->Add(FindingKind::kRepeatedValue, {name});
        luid_seen_ = true;
        break;
      case LineRole::kAllDay:
        HEAD_Check(walk_);
        if (std::strcmp(value, "TRUE") != 0 && std::strcmp(value, "FALSE") != 0) {
          walk_->Add(FindingKind::kAllDayValue, {SHOWN_Text(value)});
        }
        break;
      case LineRole::kNoPlace:
        walk_->Add(FindingKind::kNoPlace, {name, "the " + std::string(format_.words)});
        break;
      default:
        VALUE_Check(walk_, traits);
    }
  }

  void TakeVersion() {
    HEAD_Check(walk_);
    const bool dropped = use_ == RecordUse::kDropped;
    const FindingKind finding = dropped ? FindingKind::kCardGivenUp : FindingKind::kWrongVersion;
    if (VERSION_Check(walk_,
                      {format_.words, format_.highest_version, TAMU_VERSION_WIDTH, finding})) {
      return;
    }
    if (dropped) {
      // The message goes on right behind this line.
      given_up_ = ended_ = true;
    } else {
      walk_->Stop(format_.begin_value);
    }
  }

  void Erase(std::string_view name) {
    missing_.erase(std::remove(missing_.begin(), missing_.end(), name), missing_.end());
  }

  // "VERSION and N".
  void AddMissing() {
    std::string names;
    for (std::size_t i = 0; i < missing_.size(); ++i) {
      if (i != 0) names += i + 1 == missing_.size() ? " and " : ", ";
      names += missing_[i];
    }
    // Nobody misses a card of a message.
    const FindingKind kind =
        use_ == RecordUse::kDropped ? FindingKind::kMissingMandatory : format_.missing;
    walk_->Add(
        kind, {std::string(format_.words), std::to_string(begin_line_), std::move(names), "it is"});
    if (kind == FindingKind::kMissingProperty) walk_->Stop();
  }

  CheckWalk* walk_;
  const RecordFormat& format_;
  RecordUse use_;
  std::uint32_t begin_line_;
  std::vector<std::string_view> missing_;
  std::uint64_t depth_ = 1;
  bool luid_seen_ = false;
  bool given_up_ = false;
  bool ended_ = false;
};

}  // namespace

void UNKNOWN_Add(CheckWalk* walk) {
  const SourceLine& line = walk->line();
  if (line.name_length >= kNameSize) {
    walk->Add(FindingKind::kNameCut, {std::to_string(line.name_length)});
  } else {
    walk->Add(FindingKind::kUnknownProperty, {SHOWN_Text(line.name.data())});
  }
}

bool VERSION_Check(CheckWalk* walk, const VersionRule& rule) {
  std::array<char, TAMU_VERSION_WIDTH + 1> version;
  STR_CopyBounded(version.data(), walk->line().value, rule.kept);
  if (VERSION_IsSupported(version.data(), rule.highest)) return true;
  std::array<char, 8> limit;
  std::snprintf(limit.data(), limit.size(), "%.1f", rule.highest);
  walk->Add(rule.finding, {std::string(rule.words), SHOWN_Text(version.data()), limit.data()});
  return false;
}

void RECORD_Walk(CheckWalk* walk, const RecordFormat& format, RecordUse use) {
  RecordWalk(walk, format, use).Run();
}

}  // namespace tamu::tool
