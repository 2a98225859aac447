// formats/vmessage_multipart.h - the MIME multipart content of a mail in a vMessage (RFC 2046).
#ifndef TAMU_FORMATS_VMESSAGE_MULTIPART_H_
#define TAMU_FORMATS_VMESSAGE_MULTIPART_H_

#include <array>

#include "core/file.h"
#include "tamu/tamu.h"

namespace tamu {

// A boundary, as long as a content type that it stands in can be, with the terminator.
using VmsgBoundary = std::array<char, sizeof(BodyPart::content_type)>;

// The boundary that a content type of multipart names. Returns false when it is none: without
// "multipart" and, behind it, "boundary". The boundary is what follows the next "=": what stands in
// double quotes, or all up to ";" or a blank. It is empty when there is nothing of the kind.
[[nodiscard]] bool VMSG_FindBoundary(const char* content_type, VmsgBoundary* boundary) noexcept;

// Reads parts into the message's chain of parts, from the line after the mail's headers to
// END:VBODY. Every part has its headers (the first one's replace those of the mail), only the first
// has its content. Parts are divided by lines that begin with "--" and the boundary.
// Returns TAMU_PARSE_OK, also when the file ends outside of a part's content;
// TAMU_PARSE_WARNING for what is no header of a part, a header that has to be cut, or a warning
// of VMSG_ReadContent: nothing is read behind it; TAMU_PARSE_ERROR of VMSG_ReadContent; or
// TAMU_OUT_OF_MEMORY.
[[nodiscard]] TamuResult VMSG_ReadMultipart(File* file, MessageShape* message,
                                            const VmsgBoundary& boundary) noexcept;

}  // namespace tamu

#endif  // TAMU_FORMATS_VMESSAGE_MULTIPART_H_
