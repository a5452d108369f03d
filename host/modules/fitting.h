// What an image cannot hold.
#ifndef LUMVIK_HOST_MODULES_FITTING_H_
#define LUMVIK_HOST_MODULES_FITTING_H_

#include <string>
#include <vector>

#include "modules/metadata_copy.h"

namespace lumvik::metadata {

// Removes the kinds of metadata that exiv2 cannot write. Returns their names, such as "XMP".
std::vector<std::string> RemoveUnwritable(KeptMetadata& metadata);

enum class ImageKind { kJpeg, kPng, kTiff };

// Removes the longest values until EXIF has the size that exiv2 writes to a JPEG or PNG, and XMP fits one
// segment of a JPEG. `copyright`: the notices stay. Returns the keys of what was removed.
std::vector<std::string> RemoveTooLong(KeptMetadata& metadata, ImageKind kind, bool copyright);

}  // namespace lumvik::metadata

#endif  // LUMVIK_HOST_MODULES_FITTING_H_
