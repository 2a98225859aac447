// Logical lines against a second implementation, which takes one byte after the other as the
// formats tell it.
//   The first byte says how many bytes the file gives at a time, so that lines are cut by the
//   window everywhere.
#include <cstring>
#include <vector>

#include "core/file.h"
#include "fuzz_check.h"
#include "platform/files.h"
#include "text/logical_line.h"

namespace tamu::fuzz {
namespace {

std::uint32_t g_bytes_at_a_time = 0;

std::int32_t ReadLittle(platform::FileHandle file, void* buffer, std::uint32_t size,
                        std::uint32_t* done, void* overlapped) {
  return platform::ReadFile.system_function()(file, buffer, std::min(size, g_bytes_at_a_time), done,
                                              overlapped);
}

struct Line {
  std::string text;
  bool met_end = false;
  std::size_t next = 0;  // where the next line starts
};

// The rules, a byte at a time. Nothing is looked up behind the byte in hand.
class Reference {
 public:
  Reference(std::string_view file, std::size_t start) : file_(file), position_(start) {}

  Line Read() {
    enum class State { kNormal, kLineEnd, kAfterEquals, kFinished };
    State state = State::kNormal;
    Line line;
    while (state != State::kFinished) {
      const int byte = Next();
      if (byte < 0) {
        line.met_end = true;
        line.next = position_;
        break;
      }
      switch (state) {
        case State::kNormal:
          if (byte == '=') {
            state = State::kAfterEquals;
          } else if (PassesLineEnd(byte)) {
            line.next = position_;
            state = State::kLineEnd;
          } else {
            line.text.push_back(static_cast<char>(byte));
          }
          break;
        case State::kLineEnd:
          if (byte == ' ' || byte == '\t') {
            line.text.push_back(' ');
            state = State::kNormal;
          } else {
            state = State::kFinished;
          }
          break;
        case State::kAfterEquals:
          if (!PassesLineEnd(byte)) {
            line.text.push_back('=');
            line.text.push_back(static_cast<char>(byte));
          }
          state = State::kNormal;
          break;
        case State::kFinished:
          break;
      }
    }
    line.text = UpToNul(line.text);
    return line;
  }

 private:
  int Next() {
    return position_ < file_.size() ? static_cast<std::uint8_t>(file_[position_++]) : -1;
  }
  // CR takes the byte after it along, whatever it is.
  bool PassesLineEnd(int byte) {
    if (byte == '\r') (void)Next();
    return byte == '\r' || byte == '\n';
  }

  std::string_view file_;
  std::size_t position_;
};

void CompareAllLines(const std::string& content) {
  const MemoryFile memory(content);
  File file;
  FUZZ_CHECK(file.Open(memory.path(), u"rb"));
  std::size_t place = 0;
  for (;;) {
    const Line expected = Reference(content, place).Read();
    const MemPtr<char> line = FileLine(&file);
    FUZZ_CHECK(line != nullptr);
    const std::size_t length = std::strlen(line.get());
    FUZZ_CHECK(expected.text == std::string_view(line.get(), length));
    FUZZ_CHECK(line.get()[length + 1] == '\0' || content.find('\0') != std::string::npos);
    FUZZ_CHECK(file.AtEnd() == expected.met_end);
    FUZZ_CHECK(file.Tell().offset == expected.next);
    if (expected.met_end) break;
    FUZZ_CHECK(expected.next > place);
    place = expected.next;
  }
  // At the end there is nothing but empty lines.
  const MemPtr<char> line = FileLine(&file);
  FUZZ_CHECK(line != nullptr && line.get()[0] == '\0' && line.get()[1] == '\0');
  FUZZ_CHECK(file.AtEnd());
  FUZZ_CHECK(file.error() == 0);
  FUZZ_CHECK(file.Close());
}

}  // namespace
}  // namespace tamu::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tamu::fuzz;
  const NothingLeaks leaks;
  Input input(data, size);
  const std::uint8_t step = input.Byte();
  g_bytes_at_a_time = step == 0 || step > 64 ? 65536 : step;
  const tamu::platform::ScopedOverride override(tamu::platform::ReadFile, &ReadLittle);
  CompareAllLines(input.Rest());
  return 0;
}
