// The formats of photographs.
#ifndef LUMVIK_HOST_FILES_FORMAT_H_
#define LUMVIK_HOST_FILES_FORMAT_H_

#include <string>
#include <string_view>

#include "lumvik_host.h"

namespace lumvik::host {

// The image format that a file starts as, LUMVIK_HOST_FORMAT_UNKNOWN for any other. Most RAW formats start as
// a TIFF.
lumvik_host_format FormatOfBeginning(std::string_view beginning);

// Recognizes the format of a file by its content. `shown` names the file in messages. Throws Failure.
lumvik_host_format IdentifyFormat(const std::string& path, const std::string& shown);

// For a person: "JPEG".
const char* NameOfFormat(lumvik_host_format format);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_FILES_FORMAT_H_
