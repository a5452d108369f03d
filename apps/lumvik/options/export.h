// Options for writing a developed photograph.
#ifndef LUMVIK_APPS_OPTIONS_EXPORT_H_
#define LUMVIK_APPS_OPTIONS_EXPORT_H_

#include <CLI/App.hpp>
#include <optional>

#include "lumvik_host.hpp"

namespace lumvik {

// Their heading in the help.
inline constexpr char kOutputGroup[] = "Output";

struct ExportOptions {
  int jpeg_quality = 90;
  std::optional<int> bits;
  bool no_exif = false;
  bool strip_gps = false;
  bool overwrite = false;  // replace files that the command did not write
};

// `options` must outlive the command.
void AddExportOptions(CLI::App& command, ExportOptions& options);

// Throws CLI::ValidationError for a bit depth that the format does not support.
void CheckBits(const ExportOptions& options, lumvik_host_format format);

// The options for saving, which replaces existing files.
api::SaveOptions SaveOptionsOf(const ExportOptions& options);

}  // namespace lumvik

#endif  // LUMVIK_APPS_OPTIONS_EXPORT_H_
