// Options on what a command prints.
#ifndef LUMVIK_APPS_OPTIONS_REPORTING_H_
#define LUMVIK_APPS_OPTIONS_REPORTING_H_

#include <CLI/App.hpp>

namespace lumvik {

struct Reporting {
  bool quiet = false;    // nothing but errors, and what a command is for
  bool verbose = false;  // also what was read, and seconds per step
  bool json = false;     // one JSON object instead of lines
  bool dry_run = false;  // only check, and name what would be written
};

// Adds --quiet, --verbose and --json.
void AddReportingOptions(CLI::App& command, Reporting& reporting);

// Adds --dry-run.
void AddDryRunOption(CLI::App& command, Reporting& reporting);

}  // namespace lumvik

#endif  // LUMVIK_APPS_OPTIONS_REPORTING_H_
