#include "options/reporting.h"

#include <CLI/CLI.hpp>
#include <cstdint>

namespace lumvik {
namespace {

constexpr char kReporting[] = "Reporting";  // heading in the help

}  // namespace

void AddReportingOptions(CLI::App& command, Reporting& reporting) {
  command.add_flag("--quiet", reporting.quiet, "Print no messages but errors")->group(kReporting);
  // Options are read in this order.
  const auto be_verbose = [&reporting](std::int64_t /*count*/) {
    if (reporting.quiet) throw CLI::ExcludesError("--verbose", "--quiet");
    reporting.verbose = true;
  };
  command
      .add_flag_function("--verbose", be_verbose,
                         "Report what is read, and the seconds per step, on standard error")
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
