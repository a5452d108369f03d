// Output formats, chosen by the filename extension.
#ifndef LUMVIK_APPS_DEVELOP_OUTPUT_FORMAT_H_
#define LUMVIK_APPS_DEVELOP_OUTPUT_FORMAT_H_

#include <optional>
#include <string>

namespace lumvik {

enum class OutputFormat { kJpeg, kPng, kTiff };

// The format for the extension of `path`, ignoring case; none for an unknown or missing extension.
std::optional<OutputFormat> OutputFormatOf(const std::string& path);

// The preferred extension of the format, with its dot.
const char* ExtensionOf(OutputFormat format);

}  // namespace lumvik

#endif  // LUMVIK_APPS_DEVELOP_OUTPUT_FORMAT_H_
