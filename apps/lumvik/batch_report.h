// What a batch came to.
#ifndef LUMVIK_APPS_BATCH_REPORT_H_
#define LUMVIK_APPS_BATCH_REPORT_H_

#include <string>
#include <vector>

#include "batch_run.h"

namespace lumvik {

struct BatchReport {
  const BatchWork& work;
  const std::vector<BatchOutcome>& outcomes;
  const std::vector<std::string>& failures;  // of what is not a photograph
  double seconds;
  bool interrupted;
};

bool HasFailures(const BatchReport& report);

// On standard output, as one JSON object.
void PrintBatchJson(const BatchReport& report);

// The failures one by one and how many photographs came to what, on standard error.
void ReportBatch(const BatchReport& report);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_REPORT_H_
