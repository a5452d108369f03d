#include "options/reporting.h"

#include <CLI/CLI.hpp>

namespace lumvik {
namespace {

constexpr char kReporting[] = "Reporting";  // heading in the help

}  // namespace

void AddReportingOptions(CLI::App& command, Reporting& reporting) {
  CLI::Option* const quiet =
      command.add_flag("--quiet", reporting.quiet, "Print no messages but errors")->group(kReporting);
  command
      .add_flag("--verbose", reporting.verbose,
                "Report what is read, and the seconds per step, on standard error")
      ->excludes(quiet)
      ->group(kReporting);
  command.add_flag("--json", reporting.json, "Print one JSON object instead of lines")->group(kReporting);
}

void AddDryRunOption(CLI::App& command, Reporting& reporting) {
  command
      .add_flag("--dry-run", reporting.dry_run,
                "Check everything that can be checked without decoding, and print what would be written")
      ->group(kReporting);
}

}  // namespace lumvik
