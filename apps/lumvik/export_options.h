// How a developed photograph is written, whatever its name.
#ifndef LUMVIK_APPS_EXPORT_OPTIONS_H_
#define LUMVIK_APPS_EXPORT_OPTIONS_H_

#include <CLI/App.hpp>
#include <optional>

#include "lumvik.h"
#include "output_format.h"

namespace lumvik {

// The heading of the options in the help.
inline constexpr char kOutputGroup[] = "Output";

struct ExportOptions {
  int jpeg_quality = 90;
  std::optional<int> bits;
  bool no_exif = false;
  bool strip_gps = false;
};

// `options` must outlive the command.
void AddExportOptions(CLI::App& command, ExportOptions& options);

// Refuses a depth that the format cannot hold, rather than writing another one than was asked for: throws
// CLI::ValidationError.
void CheckBits(const ExportOptions& options, OutputFormat format);

// Writes what was developed to `path`, without metadata, and returns the engine's status.
int Export(EngineContext* context, const ExportOptions& options, OutputFormat format, const char* path);

}  // namespace lumvik

#endif  // LUMVIK_APPS_EXPORT_OPTIONS_H_
