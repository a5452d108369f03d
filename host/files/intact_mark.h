// The marks of image files. A mark is a text in the XMP packet, followed by a digest of the whole file, so
// that no change of the file goes unnoticed.
#ifndef LUMVIK_HOST_FILES_INTACT_MARK_H_
#define LUMVIK_HOST_FILES_INTACT_MARK_H_

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "lumvik_host.h"

namespace lumvik::host {

// The properties in the packet: the text and the hexadecimal digits of the digest are between these.
inline constexpr std::string_view kMarkBegin = "<lumvik:Mark>";
inline constexpr std::string_view kMarkDigestBegin = "</lumvik:Mark><lumvik:Digest>";
inline constexpr std::string_view kMarkDigestEnd = "</lumvik:Digest>";
inline constexpr std::size_t kMarkDigits = 32;

// A mark has to be this close to either end of its file, so that files without one need not be read entirely.
inline constexpr std::size_t kMarkDistance = 1 << 20;

// Where a mark is in an image.
struct MarkPlace {
  std::string_view text;         // as XML
  std::size_t digits = 0;        // the offset of the digest
  std::string_view png_checked;  // see XmpPart
};

// The last mark, intact or not.
std::optional<MarkPlace> FindMark(std::string_view image, lumvik_host_format format);

// The digest of an image whose digest is not known: its digits, and the checksum of a PNG's chunk that
// depends on them, count as zeros.
std::string MarkDigest(std::string_view image, const MarkPlace& place);

// The mark of an image if it is intact.
std::optional<std::string> IntactMarkIn(std::string_view image);

// The same for a file. Throws Failure if it cannot be read.
std::optional<std::string> IntactMarkOf(const std::string& path);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_FILES_INTACT_MARK_H_
