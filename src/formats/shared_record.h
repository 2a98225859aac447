// formats/shared_record.h - the one record that all readers fill, object after object.
//   Between objects it is all zero: a reader frees it after each callback, at the end of a calendar,
//   whose last lines may belong to no component, and whenever it gives up, and RECORD_Free leaves it
//   so. It is not cleared again, as that costs as much as reading a card.
//   It makes reading non-re-entrant: a callback must not read another file.
#ifndef TAMU_FORMATS_SHARED_RECORD_H_
#define TAMU_FORMATS_SHARED_RECORD_H_

#include <cstdint>

#include "tamu/tamu.h"

namespace tamu {

// The record.
[[nodiscard]] ObjectRecord* SHARED_Record() noexcept;

// The physical line of the file on which the object in the record begins, from 1.
[[nodiscard]] std::uint32_t SHARED_BeginLine() noexcept;

// Starts an object: notes where it begins.
void SHARED_BeginObject(std::uint32_t begin_line) noexcept;

}  // namespace tamu

#endif  // TAMU_FORMATS_SHARED_RECORD_H_
