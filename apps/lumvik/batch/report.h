// The results of a batch.
#ifndef LUMVIK_APPS_BATCH_REPORT_H_
#define LUMVIK_APPS_BATCH_REPORT_H_

#include <optional>
#include <string>
#include <vector>

#include "batch/run.h"
#include "options/reporting.h"
#include "terminal/exit_status.h"

namespace lumvik {

struct BatchReport {
  const BatchWork& work;
  const std::vector<BatchOutcome>& outcomes;
  const std::vector<std::string>& failures;  // of arguments and folders
  Reporting reporting;
  double seconds = 0;
  bool interrupted = false;
  std::optional<std::string> full_disk = std::nullopt;  // a folder on it
};

// That of the command, unless it was interrupted.
ExitStatus StatusOf(const BatchReport& report);

// Prints one JSON object to standard output.
void PrintBatchJson(const BatchReport& report);

// Prints what would be done, one line per photograph, to standard output.
void PrintDryRun(const BatchReport& report);

// Prints every failure, warning and damaged photograph, and a summary, to standard error.
void ReportBatch(const BatchReport& report);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_REPORT_H_
