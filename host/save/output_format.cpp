#include "save/output_format.h"

#include <algorithm>
#include <iterator>

#include "base/lower_case.h"
#include "files/file_reading.h"

namespace lumvik::host {
namespace {

struct OutputExtension {
  const char* text;
  lumvik_host_format format;
};

// The preferred extension of a format comes first.
constexpr OutputExtension kOutputExtensions[] = {
    {".jpg", LUMVIK_HOST_FORMAT_JPEG}, {".jpeg", LUMVIK_HOST_FORMAT_JPEG}, {".png", LUMVIK_HOST_FORMAT_PNG},
    {".tif", LUMVIK_HOST_FORMAT_TIFF}, {".tiff", LUMVIK_HOST_FORMAT_TIFF},
};

}  // namespace

lumvik_host_format OutputFormatOf(const std::string& path) {
  const std::string extension = LowerCase(PathOf(path).extension().u8string());
  for (const OutputExtension& known : kOutputExtensions) {
    if (extension == known.text) return known.format;
  }
  return LUMVIK_HOST_FORMAT_UNKNOWN;
}

const char* ExtensionOf(int format) {
  const auto* const known =
      std::find_if(std::begin(kOutputExtensions), std::end(kOutputExtensions),
                   [=](const OutputExtension& extension) { return extension.format == format; });
  return known == std::end(kOutputExtensions) ? nullptr : known->text;
}

}  // namespace lumvik::host
