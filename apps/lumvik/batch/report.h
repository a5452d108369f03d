// The results of a batch.
#ifndef LUMVIK_APPS_BATCH_REPORT_H_
#define LUMVIK_APPS_BATCH_REPORT_H_

#include <string>
#include <vector>

#include "batch/run.h"

namespace lumvik {

struct BatchReport {
  const BatchWork& work;
  const std::vector<BatchOutcome>& outcomes;
  const std::vector<std::string>& failures;  // of arguments and folders
  double seconds;
  bool interrupted;
};

bool HasFailures(const BatchReport& report);

// Prints one JSON object to standard output.
void PrintBatchJson(const BatchReport& report);

// Prints every failure and a summary to standard error.
void ReportBatch(const BatchReport& report);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_REPORT_H_
