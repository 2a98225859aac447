#include "losses.h"

#include <string_view>

#include "card_scan.h"
#include "display_text.h"
#include "formats/vmessage_multipart.h"
#include "message_scan.h"
#include "object_scan.h"
#include "object_view.h"

namespace tamu::tool {
namespace {

constexpr std::size_t kMostNames = 1000;
constexpr std::size_t kMostNamesShown = 20;

struct ScanRow {
  std::string_view object_name;
  // Looks one object through, from its BEGIN line to its END.
  void (*scan)(File* file, Losses* losses);
};
constexpr ScanRow kScans[] = {
    {"VCARD", [](File* file, Losses* losses) { static_cast<void>(CARD_Scan(file, losses)); }},
    {"VCALENDAR",
     [](File* file, Losses* losses) { static_cast<void>(CALENDAR_Scan(file, losses)); }},
    {"VNOTE", [](File* file, Losses* losses) { static_cast<void>(NOTE_Scan(file, losses)); }},
    {"VMSG", [](File* file, Losses* losses) { static_cast<void>(MESSAGE_Scan(file, losses)); }},
};

void AddText(std::string_view what, const std::string& names, std::vector<std::string>* texts) {
  if (!names.empty()) texts->push_back(std::string(what) + names);
}

void AddCount(std::uint64_t count, const KindWords& words, std::vector<std::string>* texts) {
  if (count != 0) texts->push_back(KIND_Count(count, words));
}

}  // namespace

void NameCounts::Add(const std::string& name) {
  const auto found = counts_.find(name);
  if (found != counts_.end()) {
    ++found->second;
  } else if (counts_.size() < kMostNames) {
    counts_.emplace(name, 1);
  } else {
    ++others_;
  }
}

std::string NameCounts::Text() const {
  std::string text;
  std::size_t shown = 0;
  std::uint64_t hidden = others_;
  for (const auto& [name, count] : counts_) {
    if (shown++ >= kMostNamesShown) {
      hidden += count;
      continue;
    }
    if (!text.empty()) text += ", ";
    text += name.empty() ? "a line without a name" : DISPLAY_Bytes(name);
    if (count > 1) text += " (" + std::to_string(count) + ")";
  }
  if (hidden != 0) text += " and " + std::to_string(hidden) + " of other names";
  return text;
}

std::vector<std::string> Losses::Texts() const {
  std::vector<std::string> texts;
  AddText("", unknown.Text(), &texts);
  AddText("not written where it stands: ", misplaced.Text(), &texts);
  AddCount(nested, {"object inside another", "objects inside others"}, &texts);
  AddCount(cards, {"card of a sender or recipient", "cards of senders and recipients"}, &texts);
  AddCount(mails, {"mail behind the first of its message", "mails behind the first of a message"},
           &texts);
  AddCount(parts, {"part behind the first of a mail", "parts behind the first of a mail"}, &texts);
  AddCount(frames,
           {"content type of a mail that is multipart no more",
            "content types of mails that are multipart no more"},
           &texts);
  AddCount(attachments, {"attachment", "attachments"}, &texts);
  AddText("parts of the value beyond those that are kept: ", components.Text(), &texts);
  AddText("parameters beyond 127 characters: ", parameters.Text(), &texts);
  AddText("the ends of values that are too long: ", values.Text(), &texts);
  return texts;
}

void LOSSES_AddFile(const ObjectName& object_name, File* file, std::uint64_t end_offset,
                    Losses* losses) {
  for (const ScanRow& row : kScans) {
    if (row.object_name != object_name.data()) continue;
    while (!file->AtEnd() && file->Tell().offset < end_offset) row.scan(file, losses);
  }
}

bool MESSAGE_SaysMultipart(const MessageShape& message) noexcept {
  VmsgBoundary boundary;
  return VMSG_FindBoundary(message.body.content_type, &boundary);
}

void LOSSES_AddMessage(const MessageShape& message, Losses* losses) {
  if (message.mime_version[0] != '\0') losses->misplaced.Add("Mime-Version");
  if (MESSAGE_SaysMultipart(message)) ++losses->frames;
  for (const BodyPart* part = &message.body; part != nullptr; part = part->next) {
    if (part->temp_file[0] != 0) ++losses->attachments;
    if (part != &message.body) ++losses->parts;
  }
}

}  // namespace tamu::tool
