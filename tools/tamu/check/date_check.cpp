// Dates: whether they are read, and in full.
#include <algorithm>
#include <cstring>
#include <string_view>

#include "check/value_check.h"
#include "text/date.h"

namespace tamu::tool {
namespace {

constexpr const char* kBlanks = " \t";
constexpr const char* kIsoForm = "20031231 or 20031231T235959";
constexpr const char* kMailForm = "Wed, 31 Dec 2003 23:59:59 +0100";

bool Reads(const DateValue& date) noexcept { return date.valid && !DATE_IsNone(date); }

// Whether a text has the shape of "dddd-dd": "d" stands for a digit, anything else for itself.
bool HasShape(std::string_view text, std::string_view pattern) noexcept {
  if (text.size() != pattern.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool digit = text[i] >= '0' && text[i] <= '9';
    if (pattern[i] == 'd' ? !digit : text[i] != pattern[i]) return false;
  }
  return true;
}

// The texts of which nothing is ignored.
constexpr std::string_view kDays[] = {"dddddddd", "dddd-dd-dd"};
constexpr std::string_view kTimes[] = {"", "T", "Tdd", "Tdddd", "Tdddddd", "TddddddZ"};

bool IsReadInFull(std::string_view text) noexcept {
  for (const std::string_view day : kDays) {
    for (const std::string_view time : kTimes) {
      if (HasShape(text.substr(0, day.size()), day) &&
          HasShape(text.substr(std::min(day.size(), text.size())), time)) {
        return true;
      }
    }
  }
  return false;
}

}  // namespace

void ISODATE_Check(CheckWalk* walk, const char* text) {
  if (text == nullptr) return;
  const char* const behind_blanks = text + std::strspn(text, kBlanks);
  if (*behind_blanks == '\0') return;
  if (!Reads(DATE_FromIso8601(text))) {
    walk->Add(Reads(DATE_FromIso8601(behind_blanks)) ? FindingKind::kDateBehindBlank
                                                     : FindingKind::kBadDate,
              {SHOWN_Text(behind_blanks), kIsoForm});
  } else if (!IsReadInFull(behind_blanks)) {
    walk->Add(FindingKind::kDatePartlyRead, {SHOWN_Text(behind_blanks), kIsoForm});
  }
}

void MAILDATE_Check(CheckWalk* walk, const char* text) {
  const char* const behind_blanks = text + std::strspn(text, kBlanks);
  if (*behind_blanks == '\0' || Reads(DATE_FromMailText(text))) return;
  walk->Add(Reads(DATE_FromMailText(behind_blanks)) ? FindingKind::kDateBehindBlank
                                                    : FindingKind::kBadDate,
            {SHOWN_Text(behind_blanks), kMailForm});
}

}  // namespace tamu::tool
