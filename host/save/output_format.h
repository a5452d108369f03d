// The formats that can be written.
#ifndef LUMVIK_HOST_SAVE_OUTPUT_FORMAT_H_
#define LUMVIK_HOST_SAVE_OUTPUT_FORMAT_H_

#include <string>

#include "lumvik_host.h"

namespace lumvik::host {

// By the extension of a path, in any case; LUMVIK_HOST_FORMAT_UNKNOWN for any other.
lumvik_host_format OutputFormatOf(const std::string& path);

// The preferred extension with its dot; null for a format that cannot be written.
const char* ExtensionOf(int format);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_SAVE_OUTPUT_FORMAT_H_
