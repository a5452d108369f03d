#include "output_format.h"

#include <filesystem>

#include "lower_ending.h"

namespace lumvik {
namespace {

struct Ending {
  const char* text;
  OutputFormat format;
};

// The usual ending of a format stands before its others.
constexpr Ending kEndings[] = {
    {".jpg", OutputFormat::kJpeg}, {".jpeg", OutputFormat::kJpeg}, {".png", OutputFormat::kPng},
    {".tif", OutputFormat::kTiff}, {".tiff", OutputFormat::kTiff},
};

}  // namespace

std::optional<OutputFormat> OutputFormatOf(const std::string& path) {
  const std::string ending = LowerEnding(std::filesystem::u8path(path));
  for (const Ending& known : kEndings) {
    if (ending == known.text) return known.format;
  }
  return std::nullopt;
}

const char* EndingOf(OutputFormat format) {
  return std::find_if(std::begin(kEndings), std::end(kEndings),
                      [=](const Ending& ending) { return ending.format == format; })
      ->text;
}

}  // namespace lumvik
