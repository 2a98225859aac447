// bench/synthetic_contacts.h - made-up contacts to measure with.
#ifndef TAMU_BENCH_SYNTHETIC_CONTACTS_H_
#define TAMU_BENCH_SYNTHETIC_CONTACTS_H_

#include <string>

namespace tamu::bench {

// `count` vCards of about 500 bytes each, CR LF, every fourth with a quoted-printable UTF-8 note of
// several lines joined by soft line breaks and an encoded name. The same text for the same count.
[[nodiscard]] std::string SyntheticContacts(unsigned count);

// A file of its own that goes with this object.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& content);
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  [[nodiscard]] const std::u16string& path() const { return path_; }

 private:
  std::u16string path_;
};

}  // namespace tamu::bench

#endif  // TAMU_BENCH_SYNTHETIC_CONTACTS_H_
