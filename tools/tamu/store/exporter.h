// store/exporter.h - objects of the device as object files.
//   What is written is read back, and what does not come back as it was is told.
//   Errors     told; std::bad_alloc.
#ifndef TAMU_TOOLS_STORE_EXPORTER_H_
#define TAMU_TOOLS_STORE_EXPORTER_H_

#include <array>
#include <cstdint>
#include <iterator>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "console.h"
#include "core/file.h"
#include "store/catalogue.h"
#include "store/read_back.h"
#include "system/output_file.h"

namespace tamu::tool {

// Names for the files of a folder that tell what is in them: "contact-0000001a.vcf",
// "note-Shopping list.vnt". No name is given twice, also for those who do not look at case.
class ExportNames {
 public:
  [[nodiscard]] std::string Next(const ObjectId& id);

 private:
  std::set<std::u16string> given_;  // of kinds whose ids do not make names that differ
};

class Exporter {
 public:
  Exporter(const DeviceSession& device, Console* console) : device_(device), console_(console) {}

  // Each gives true when all objects of the kinds were written, and come back as they are.
  // All into one file, of which a reader gets them; kinds that share a format.
  [[nodiscard]] bool WriteFile(const std::vector<StoredKind>& kinds, const std::string& argument);
  // A file for each object in a folder, which is made when it is missing.
  [[nodiscard]] bool WriteFolder(const std::vector<StoredKind>& kinds, const std::string& folder);

 private:
  using Counts = std::array<std::uint64_t, std::size(kStoredKinds)>;

  [[nodiscard]] bool Fail(const std::string& where, const std::string& reason);
  [[nodiscard]] bool FetchOrTell(const CatalogueEntry& entry, FetchedObject* object);
  void TellChanges(const std::string& where, const CatalogueEntry& entry,
                   const std::vector<std::string>& texts);
  [[nodiscard]] bool WriteAll(const std::vector<StoredKind>& kinds, const OutputFile& target);
  void WriteLast(const std::vector<CatalogueEntry>& last, const OutputFile& target, File* out);
  [[nodiscard]] bool IsReadBack(const OutputFile& target);
  [[nodiscard]] bool WriteOne(const CatalogueEntry& entry, const std::string& path);
  void Count(const CatalogueEntry& entry);
  [[nodiscard]] bool Finish(const std::string& where, const std::string& target);

  const DeviceSession& device_;
  Console* console_;
  ReadBack read_back_;
  Counts written_{};
  std::uint64_t readable_ = 0;  // written, and what stands behind them can be read
  std::uint64_t changed_ = 0;
  std::uint64_t failed_ = 0;
};

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_STORE_EXPORTER_H_
