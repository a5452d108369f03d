// Bounds what is handed to exiv2's XMP parser, whose time grows with the square of the number of properties.
#ifndef LUMVIK_HOST_MODULES_XMP_FENCE_H_
#define LUMVIK_HOST_MODULES_XMP_FENCE_H_

#include <cstddef>
#include <string>
#include <string_view>

namespace lumvik::metadata {

// Several times what sidecars with hundreds of masks have. A packet at all limits takes about a second.
constexpr std::size_t kMaxXmpBytes = std::size_t{16} << 20U;
constexpr std::size_t kMaxXmpDepth = 100;
constexpr std::size_t kMaxXmpProperties = 50000;
constexpr std::size_t kMaxXmpSiblings = 2000;  // properties of one structure
constexpr std::size_t kMaxXmpItems = 200000;   // of lists
constexpr std::size_t kMaxXmpLines = 2000000;
constexpr std::size_t kMaxXmpNamespaces = 256;
// Exiv2 names each nested property by the names of all that enclose it.
constexpr std::size_t kMaxXmpPathBytes = std::size_t{64} << 20U;

// Why a packet must not be parsed: it exceeds a limit, declares entities, or is not XML in UTF-8. "" if it
// may be. Takes linear time.
std::string XmpFault(std::string_view packet);

}  // namespace lumvik::metadata

#endif  // LUMVIK_HOST_MODULES_XMP_FENCE_H_
