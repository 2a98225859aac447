// core/records.h - what object records own, and how it is freed.
//   The layout is include/tamu/tamu.h's; it is pinned here for C++ and by a C test.
//   Ownership  a record owns everything reachable from it, temporary files included.
//   Errors     freeing tolerates null everywhere; a temporary file that cannot be deleted is
//   logged.
#ifndef TAMU_CORE_RECORDS_H_
#define TAMU_CORE_RECORDS_H_

#include <cstdint>

#include "tamu/tamu.h"

namespace tamu {

// Appends a new, zeroed node to the chain that `field` heads and returns it; null for a null field,
// and, with the chain unchanged, when memory runs out. Walks the chain: who appends many nodes in a
// row keeps a `PropertyChainEnd`.
Property* PROP_Append(Ref<Property>* field) noexcept;

// The end of a chain that is being built, so that appending costs the same however long the chain
// is.
class PropertyChainEnd {
 public:
  // As PROP_Append. `field` must be the same in every call, and nobody else may append meanwhile.
  Property* Append(Ref<Property>* field) noexcept;

 private:
  Property* last_ = nullptr;
};

// Frees a chain with its parameters and values, the last node first; null does nothing.
void PROP_Free(Property* node) noexcept;

// Where an item's text lies when it shares the item's block.
[[nodiscard]] inline char* ITEM_OwnText(StringItem* item) noexcept {
  return reinterpret_cast<char*>(item + 1);
}

// Frees an item's text, unless it shares the item's block and goes with it. The item is left
// pointing to it.
void ITEM_FreeText(StringItem* item) noexcept;

// Frees a list of texts, the last one first; null does nothing.
void ITEM_FreeList(StringItem* item) noexcept;

// Frees the body of a message record: texts, further parts, and the temporary files that parts
// name.
void BODY_FreeParts(ObjectRecord* record) noexcept;

// Frees what a record of this kind owns and leaves all its bytes zero. An unknown kind, and a
// calendar item whose component is neither event nor to-do, own nothing. Of a calendar item the
// properties that its component has are freed: what else its reader filled, its reader frees.
void RECORD_Free(ObjectKind kind, ObjectRecord* record) noexcept;

// List nodes that appends have walked past since the program started; lets a test see that
// appending while reading does not depend on the length of the list.
inline std::uint64_t g_list_steps = 0;

}  // namespace tamu

#endif  // TAMU_CORE_RECORDS_H_
