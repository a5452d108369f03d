#include "develop/output_format.h"

#include <filesystem>

#include "files/lower_extension.h"

namespace lumvik {
namespace {

struct Extension {
  const char* text;
  OutputFormat format;
};

// The preferred extension of a format comes first.
constexpr Extension kExtensions[] = {
    {".jpg", OutputFormat::kJpeg}, {".jpeg", OutputFormat::kJpeg}, {".png", OutputFormat::kPng},
    {".tif", OutputFormat::kTiff}, {".tiff", OutputFormat::kTiff},
};

}  // namespace

std::optional<OutputFormat> OutputFormatOf(const std::string& path) {
  const std::string extension = LowerExtension(std::filesystem::u8path(path));
  for (const Extension& known : kExtensions) {
    if (extension == known.text) return known.format;
  }
  return std::nullopt;
}

const char* ExtensionOf(OutputFormat format) {
  return std::find_if(std::begin(kExtensions), std::end(kExtensions),
                      [=](const Extension& extension) { return extension.format == format; })
      ->text;
}

}  // namespace lumvik
