// The options of `lumvik develop`.
#ifndef LUMVIK_APPS_COMMANDS_DEVELOP_OPTIONS_H_
#define LUMVIK_APPS_COMMANDS_DEVELOP_OPTIONS_H_

#include <CLI/App.hpp>
#include <optional>
#include <string>
#include <vector>

#include "lumvik_host.hpp"
#include "options/export.h"
#include "options/outputs.h"
#include "options/photograph.h"
#include "options/reporting.h"
#include "options/subject.h"

namespace lumvik {

struct DevelopOptions {
  Photograph photograph;
  std::optional<std::string> output;         // "-" is standard output
  std::optional<std::string> format;         // of standard output
  std::optional<std::string> save_settings;  // file to write all settings to
  ExportOptions how;
  std::optional<std::string> preview;
  float background_blur = 0;
  SubjectPoint subject;
  Reporting reporting;
  bool worker_report = false;

  bool ToStandardOutput() const;
  lumvik_host_format Format() const;  // of the output
};

// `options` must outlive the command.
void AddOptionsOfDevelop(CLI::App& command, DevelopOptions& options);

// Throws CLI::ParseError for options that do not go together.
void CheckUsage(const DevelopOptions& options);

// The files to write.
std::vector<Output> OutputsOf(const DevelopOptions& options);

}  // namespace lumvik

#endif  // LUMVIK_APPS_COMMANDS_DEVELOP_OPTIONS_H_
