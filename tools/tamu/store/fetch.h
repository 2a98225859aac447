// store/fetch.h - objects of the device's stores as records.
//   Contacts, events and to-dos come through the library; notes and messages, which it does not give
//   back, from the documents and folders themselves, as records that the library takes again.
//   Errors     texts for people; std::bad_alloc.
#ifndef TAMU_TOOLS_STORE_FETCH_H_
#define TAMU_TOOLS_STORE_FETCH_H_

#include <cstdint>
#include <string>
#include <vector>

#include "store/device_session.h"
#include "store/stored_kind.h"
#include "tamu/tamu.h"

namespace tamu::tool {

// What names an object: the number of an item, the title of a note, the entry id of a message.
struct ObjectId {
  StoredKind kind = StoredKind::kContact;
  std::int32_t oid = 0;
  std::u16string title;
  std::vector<std::uint8_t> entry_id;

  // As people write it: "0000001a", the title, hexadecimal digits. UTF-8, not made safe to show.
  [[nodiscard]] std::string Text() const;
};

// Reads an id of the kind. False, with the reason, for a text that cannot be one.
[[nodiscard]] bool ID_Parse(StoredKind kind, const std::string& text, ObjectId* id,
                            std::string* problem);

// A record that is freed with it.
class FetchedObject {
 public:
  FetchedObject() = default;
  ~FetchedObject();
  FetchedObject(const FetchedObject&) = delete;
  FetchedObject& operator=(const FetchedObject&) = delete;

  [[nodiscard]] ObjectKind kind() const noexcept { return kind_; }
  [[nodiscard]] ObjectRecord* record() noexcept { return &record_; }
  // Empties it and says what it will hold.
  ObjectRecord* Reset(ObjectKind kind) noexcept;
  // The record belongs to somebody else now, who has freed it.
  void Forget() noexcept;
  // What the record could not take of what is stored, for people; empty when all is there.
  std::vector<std::string> losses;

 private:
  ObjectKind kind_ = KIND_CONTACT;
  ObjectRecord record_ = {{0}};
};

// Reads one object. False, with the reason, when it is not there or cannot be read.
[[nodiscard]] bool FETCH_Object(const DeviceSession& device, const ObjectId& id,
                                FetchedObject* object, std::string* problem);

// The two kinds that the library does not give back.
[[nodiscard]] bool FETCH_Note(const std::u16string& title, FetchedObject* object,
                              std::string* problem);
[[nodiscard]] bool FETCH_Message(const std::vector<std::uint8_t>& entry_id, FetchedObject* object,
                                 std::string* problem);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_STORE_FETCH_H_
