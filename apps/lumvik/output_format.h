// The formats a photograph can be written in, told by the ending of the file's name.
#ifndef LUMVIK_APPS_OUTPUT_FORMAT_H_
#define LUMVIK_APPS_OUTPUT_FORMAT_H_

#include <optional>
#include <string>

namespace lumvik {

enum class OutputFormat { kJpeg, kPng, kTiff };

// The format that the ending of `path` names, in any case; none for another ending or a name without one.
std::optional<OutputFormat> OutputFormatOf(const std::string& path);

// The usual ending of a file in this format, dot included.
const char* EndingOf(OutputFormat format);

}  // namespace lumvik

#endif  // LUMVIK_APPS_OUTPUT_FORMAT_H_
