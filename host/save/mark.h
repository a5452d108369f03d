// Marking images, see files/intact_mark.h.
#ifndef LUMVIK_HOST_SAVE_MARK_H_
#define LUMVIK_HOST_SAVE_MARK_H_

#include <optional>
#include <string>

#include "lumvik_host.h"

namespace lumvik::host {

// The mark of a struct of options, which may be null. Throws Failure with LUMVIK_HOST_INVALID_ARGUMENT.
std::optional<std::string> MarkOf(const char* mark);

// The JPEG, PNG or TIFF with a mark, in the XMP packet that it has or a new one. Whatever changes the image
// later makes the mark void. Throws Failure: LUMVIK_HOST_UNSUPPORTED if the packet becomes too long, or if
// the image is so damaged that the mark could not be read back.
std::string WithMark(std::string image, lumvik_host_format format, const std::string& mark);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_SAVE_MARK_H_
