#include "platform/linux/registry_file.h"

#include <algorithm>

#include "platform/linux/registry_names.h"
#include "platform/paths.h"

namespace tamu::platform {
namespace {

constexpr std::u16string_view kHeader = u"Windows Registry Editor Version 5.00";
constexpr std::u16string_view kOldHeader = u"REGEDIT4";
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kLittleMark = "\xFF\xFE";
constexpr std::string_view kBigMark = "\xFE\xFF";

// The line's text without its line end.
std::u16string_view LineAt(std::u16string_view text, std::size_t begin) {
  std::u16string_view line = text.substr(begin, LineFeedFrom(text, begin) - begin);
  if (line.ends_with(u'\r')) line.remove_suffix(1);
  return line;
}

bool HasUndecodedBytes(std::u16string_view line) {
  for (std::size_t at = 0; at < line.size(); ++at) {
    if (IsLoneSurrogate(line, at)) return true;
  }
  return false;
}

}  // namespace

RegistryFile::RegistryFile(std::string_view bytes) : nodes_(kRegistryRoots) {
  Decode(bytes);
  ParseText();
}

void RegistryFile::Decode(std::string_view bytes) {
  if (bytes.starts_with(kLittleMark) || bytes.starts_with(kBigMark)) {
    const bool little = bytes.starts_with(kLittleMark);
    encoding_ = little ? Encoding::kUtf16Little : Encoding::kUtf16Big;
    bytes.remove_prefix(kLittleMark.size());
    text_.reserve(bytes.size() / 2);
    for (; bytes.size() >= 2; bytes.remove_prefix(2)) {
      const auto low = static_cast<std::uint8_t>(bytes[little ? 0 : 1]);
      const auto high = static_cast<std::uint8_t>(bytes[little ? 1 : 0]);
      text_.push_back(static_cast<char16_t>(high << 8 | low));
    }
    if (!bytes.empty()) tail_.push_back(bytes.front());  // half a unit
  } else {
    encoding_ = bytes.starts_with(kUtf8Mark) ? Encoding::kUtf8Mark : Encoding::kUtf8;
    if (encoding_ == Encoding::kUtf8Mark) bytes.remove_prefix(kUtf8Mark.size());
    text_ = PathFromNative(bytes);  // bytes that are not UTF-8 come back as they were
  }
  const std::size_t feed = text_.find(u'\n');
  if (feed != std::u16string::npos && feed > 0 && text_[feed - 1] == u'\r') newline_ = u"\r\n";
}

std::string RegistryFile::Encode(std::u16string_view text) const {
  if (encoding_ == Encoding::kUtf8) return PathToNative(text);
  if (encoding_ == Encoding::kUtf8Mark) return std::string(kUtf8Mark) + PathToNative(text);
  const bool little = encoding_ == Encoding::kUtf16Little;
  std::string bytes(little ? kLittleMark : kBigMark);
  bytes.reserve(text.size() * 2 + 3);
  for (const char16_t unit : text) {
    const char low = static_cast<char>(unit & 0xFF);
    const char high = static_cast<char>(unit >> 8);
    bytes.push_back(little ? low : high);
    bytes.push_back(little ? high : low);
  }
  return bytes + tail_;
}

void RegistryFile::Report(const char* reason) {
  if (problems_.size() > kMaxRegistryProblems) return;
  problems_.push_back(
      {line_, problems_.size() < kMaxRegistryProblems ? reason : "and more damaged lines"});
}

void RegistryFile::ParseText() {
  std::size_t current = kNone;
  bool first = true;
  for (std::size_t begin = 0; begin < text_.size();) {
    std::size_t end = begin;
    if (first && !RestIsBlank(text_, begin)) {
      first = false;
      end = ParseHeader(begin);
    }
    if (end == begin) end = ParseLine(begin, current);
    line_ += static_cast<std::uint32_t>(
        std::count(text_.begin() + static_cast<std::ptrdiff_t>(begin),
                   text_.begin() + static_cast<std::ptrdiff_t>(end), u'\n'));
    begin = end;
  }
  if (!tail_.empty()) Report("half a character at the end of the file");
}

// The first line that is neither blank nor a comment names the form. Returns where the next line
// starts, or `begin` for a line to be read like any other.
std::size_t RegistryFile::ParseHeader(std::size_t begin) {
  const std::u16string_view line = LineAt(text_, begin);
  const std::u16string_view trimmed = line.substr(0, line.find_last_not_of(u" \t") + 1);
  if (trimmed == kHeader || trimmed == kOldHeader) {
    return std::min(LineFeedFrom(text_, begin) + 1, text_.size());
  }
  Report("the file does not start with \"Windows Registry Editor Version 5.00\"");
  return begin;
}

// Reads what starts in this line and returns where the next line starts.
std::size_t RegistryFile::ParseLine(std::size_t begin, std::size_t& current) {
  std::size_t last = begin;  // a place in the last line that was read
  if (!RestIsBlank(text_, begin)) {
    const std::size_t start = SkipBlanks(text_, begin);
    if (encoding_ != Encoding::kUtf16Little && encoding_ != Encoding::kUtf16Big &&
        HasUndecodedBytes(LineAt(text_, begin))) {
      Report("not UTF-8");
      if (text_[start] == u'[') current = kNone;
    } else if (text_[start] == u'[') {
      ParseSection(start, current);
    } else if (text_[start] == u'"' || text_[start] == u'@') {
      last = ParseValue(start, current);
    } else {
      Report("neither a key nor a value");
    }
  }
  return std::min(LineFeedFrom(text_, last) + 1, text_.size());
}

// "[HKEY_LOCAL_MACHINE\Software]" or, to remove the key and all below it,
// "[-HKEY_LOCAL_MACHINE\Software]". Values below a section that cannot be read, or that removes a
// key, belong to no key.
void RegistryFile::ParseSection(std::size_t bracket, std::size_t& current) {
  current = kNone;
  const std::u16string_view line = LineAt(text_, bracket);
  std::size_t close = line.find(u']');
  while (close != std::u16string_view::npos && !RestIsBlank(line, close + 1))
    close = line.find(u']', close + 1);
  if (close == std::u16string_view::npos) return Report("a key has no closing bracket");
  std::u16string_view name = line.substr(1, close - 1);
  const bool removal = name.starts_with(u'-');
  if (removal) name.remove_prefix(1);

  const std::size_t root_end = std::min(name.find(u'\\'), name.size());
  const auto root = RootFromName(name.substr(0, root_end));
  if (!root) return Report("the key is below no root that is known here");
  const bool only_root = root_end == name.size();
  auto segments = SplitKeyPath(only_root ? std::u16string_view{} : name.substr(root_end + 1));
  if (!segments || name.find(u'\0') != std::u16string_view::npos ||
      (segments->empty() && (removal || !only_root))) {
    return Report("the key's name is not allowed");
  }
  const RegistryKeyPath path{*root, std::move(*segments)};
  if (removal) return Remove(path);
  current = Make(path);
  nodes_[current].insert_at = std::min(LineFeedFrom(text_, bracket) + 1, text_.size());
}

std::size_t RegistryFile::ParseValue(std::size_t begin, std::size_t current) {
  RegistryEntry entry;
  if (const char* error = ParseRegistryEntry(text_, begin, entry)) {
    Report(error);
    return entry.end;
  }
  if (current == kNone) return entry.end;
  Node& node = nodes_[current];
  node.insert_at = std::min(LineFeedFrom(text_, entry.end) + 1, text_.size());
  std::u16string folded = FoldName(entry.name);
  if (entry.removal) {
    node.values.erase(folded);
  } else {
    node.values[std::move(folded)] = Value{std::move(entry.data), begin, entry.end};
  }
  return entry.end;
}

std::size_t RegistryFile::Find(const RegistryKeyPath& path) const {
  std::size_t at = path.root;
  for (const std::u16string& segment : path.segments) {
    const auto child = nodes_[at].children.find(FoldName(segment));
    if (child == nodes_[at].children.end()) return kNone;
    at = child->second;
  }
  return at;
}

std::size_t RegistryFile::Make(const RegistryKeyPath& path) {
  std::size_t at = path.root;
  for (const std::u16string& segment : path.segments) {
    std::u16string folded = FoldName(segment);
    const auto child = nodes_[at].children.find(folded);
    if (child != nodes_[at].children.end()) {
      at = child->second;
      continue;
    }
    Node node;
    node.name = segment;
    nodes_.push_back(std::move(node));
    nodes_[at].children.emplace(std::move(folded), nodes_.size() - 1);
    at = nodes_.size() - 1;
  }
  return at;
}

void RegistryFile::Remove(const RegistryKeyPath& path) {
  RegistryKeyPath parent = path;
  parent.segments.pop_back();
  const std::size_t at = Find(parent);
  if (at != kNone) nodes_[at].children.erase(FoldName(path.segments.back()));
}

const RegistryData* RegistryFile::FindValue(const RegistryKeyPath& path,
                                            std::u16string_view name) const {
  const std::size_t key = Find(path);
  if (key == kNone) return nullptr;
  const auto value = nodes_[key].values.find(FoldName(name));
  return value == nodes_[key].values.end() ? nullptr : &value->second.data;
}

// The text that a section added at the end of the file starts with; names above it keep the
// spelling they have.
std::u16string RegistryFile::NewSection(const RegistryKeyPath& path) const {
  std::u16string section;
  if (text_.empty()) {
    section.append(kHeader).append(newline_);
  } else if (!text_.ends_with(u'\n')) {
    section.append(newline_);
  }
  section.append(newline_).append(u"[").append(RootName(path.root));
  std::size_t at = path.root;
  for (const std::u16string& segment : path.segments) {
    const Node* node = at == kNone ? nullptr : &nodes_[at];
    at = kNone;
    if (node) {
      const auto child = node->children.find(FoldName(segment));
      if (child != node->children.end()) at = child->second;
    }
    section.append(u"\\").append(at == kNone ? segment : nodes_[at].name);
  }
  return section.append(u"]").append(newline_);
}

std::string RegistryFile::WithKey(const RegistryKeyPath& path) const {
  return Encode(text_ + NewSection(path));
}

std::string RegistryFile::WithValue(const RegistryKeyPath& path, std::u16string_view name,
                                    const RegistryData& data) const {
  const std::u16string entry = FormatRegistryEntry(name, data, newline_);
  const std::size_t key = Find(path);
  if (key == kNone || nodes_[key].insert_at == kNone) {
    return Encode(text_ + NewSection(path) + entry + newline_);
  }
  std::u16string text = text_;
  const auto value = nodes_[key].values.find(FoldName(name));
  if (value != nodes_[key].values.end()) {
    text.replace(value->second.begin, value->second.end - value->second.begin, entry);
    return Encode(text);
  }
  const std::size_t at = nodes_[key].insert_at;
  const bool inside_line = at > 0 && text[at - 1] != u'\n';  // the file ends without a line end
  text.insert(at, inside_line ? newline_ + entry : entry + newline_);
  return Encode(text);
}

}  // namespace tamu::platform
