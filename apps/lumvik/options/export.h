// Options for writing a developed photograph.
#ifndef LUMVIK_APPS_OPTIONS_EXPORT_H_
#define LUMVIK_APPS_OPTIONS_EXPORT_H_

#include <CLI/App.hpp>
#include <optional>
#include <string>

#include "lumvik_host.hpp"
#include "options/output_size.h"

namespace lumvik {

// Their heading in the help.
inline constexpr char kOutputGroup[] = "Output";

struct ExportOptions {
  int jpeg_quality = 90;
  std::optional<int> bits;
  bool no_exif = false;
  bool strip_gps = false;
  OutputSize size;
  std::string profile = "srgb";  // or keep, none
  std::optional<std::string> copyright;
  bool keep_times = false;
  bool overwrite = false;  // replace files that the command did not write
};

// `options` must outlive the command.
void AddExportOptions(CLI::App& command, ExportOptions& options);

// Throws CLI::ValidationError for a bit depth that the format does not support.
void CheckBits(const ExportOptions& options, lumvik_host_format format);

// Whether to leave the colors of the photograph as they are, with its profile.
bool KeepsColors(const ExportOptions& options);

// How to save an image that was developed at this size. `options` and `mark` must outlive the result.
api::SaveOptions SaveOptionsOf(const ExportOptions& options, api::Size developed, const std::string& mark);

}  // namespace lumvik

#endif  // LUMVIK_APPS_OPTIONS_EXPORT_H_
