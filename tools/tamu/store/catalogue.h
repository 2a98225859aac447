// store/catalogue.h - what is on the device, object by object.
//   Objects come in the order of their ids, notes by title, messages by folder and arrival; memory
//   does not grow with their number.
//   Errors     texts for people; std::bad_alloc.
#ifndef TAMU_TOOLS_STORE_CATALOGUE_H_
#define TAMU_TOOLS_STORE_CATALOGUE_H_

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "store/device_session.h"
#include "store/fetch.h"
#include "store/stored_kind.h"

namespace tamu::tool {

// One object as a list shows it.
struct CatalogueEntry {
  ObjectId id;
  std::u16string title;        // name, subject or title; may be empty
  std::optional<double> when;  // local: the start, the due date, the delivery, the last change
  std::u16string detail;       // company, place, sender; may be empty
  std::string_view state;      // "done", "unread", "all day", "repeats" or nothing
  std::string_view folder;     // of a message
};

// What messages call it, safe to show: `contact 8000001a "Nia Okafor"`, `note "Shopping list"`.
[[nodiscard]] std::string CATALOGUE_Label(const CatalogueEntry& entry);

// Called for each object; false ends the listing.
using CatalogueTaker = std::function<bool(const CatalogueEntry& entry)>;

// Lists the kinds in the given order. False, with the reason, when a store cannot be read.
[[nodiscard]] bool CATALOGUE_List(const DeviceSession& device, const std::vector<StoredKind>& kinds,
                                  const CatalogueTaker& taker, std::string* problem);

// The number of objects of a kind. False, with the reason, as above.
[[nodiscard]] bool CATALOGUE_Count(const DeviceSession& device, StoredKind kind,
                                   std::uint64_t* count, std::string* problem);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_STORE_CATALOGUE_H_
