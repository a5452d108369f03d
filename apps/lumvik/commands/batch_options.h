// The options of `lumvik batch`.
#ifndef LUMVIK_APPS_COMMANDS_BATCH_OPTIONS_H_
#define LUMVIK_APPS_COMMANDS_BATCH_OPTIONS_H_

#include <CLI/App.hpp>
#include <optional>
#include <string>
#include <vector>

#include "batch/names.h"
#include "lumvik_host.hpp"
#include "options/export.h"
#include "options/jobs.h"
#include "options/output_format.h"
#include "options/photograph.h"
#include "options/reporting.h"

namespace lumvik {

struct BatchOptions {
  std::vector<std::string> inputs;
  std::optional<std::string> files_from;
  std::string output_folder;
  std::string name_pattern = NamePattern().text;
  std::string format = "jpg";
  std::string shard = "1/1";
  unsigned jobs = DefaultJobs();
  unsigned time_limit = 300;  // seconds
  bool resume = false;
  Reporting reporting;
  Photograph photograph;  // applies to every input
  ExportOptions how;
  std::vector<const CLI::Option*> develop_options;

  lumvik_host_format Format() const { return FormatNamed(format); }
  NamePattern Names() const { return {name_pattern, Format()}; }
};

// `options` must outlive the command.
void AddOptionsOfBatch(CLI::App& command, BatchOptions& options);

// Throws CLI::Error for options that do not fit together.
void CheckUsage(const BatchOptions& options);

}  // namespace lumvik

#endif  // LUMVIK_APPS_COMMANDS_BATCH_OPTIONS_H_
