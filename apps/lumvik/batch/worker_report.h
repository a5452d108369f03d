// What a worker reports to its batch on standard output: one line of JSON.
#ifndef LUMVIK_APPS_BATCH_WORKER_REPORT_H_
#define LUMVIK_APPS_BATCH_WORKER_REPORT_H_

#include <optional>
#include <string>
#include <vector>

namespace lumvik {

struct WorkerReport {
  int width = 0;  // of the developed image in pixels
  int height = 0;
  std::string damage = {};                 // why the photograph is not whole; empty for a whole one
  std::vector<std::string> warnings = {};  // about metadata that was left out
};

// The option of `lumvik develop` that asks for the report.
inline constexpr char kWorkerReportOption[] = "--worker-report";

// The line, without its end. Bytes that are not UTF-8 become U+FFFD.
std::string LineOf(const WorkerReport& report);

// Finds the line among others, which libraries may have printed.
std::optional<WorkerReport> FindWorkerReport(const std::string& output);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_WORKER_REPORT_H_
