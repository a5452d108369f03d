// What a worker reports to its batch on standard output: one line of JSON.
#ifndef LUMVIK_APPS_BATCH_WORKER_REPORT_H_
#define LUMVIK_APPS_BATCH_WORKER_REPORT_H_

#include <optional>
#include <string>

namespace lumvik {

// The size of the developed image in pixels.
struct WorkerReport {
  int width = 0;
  int height = 0;
};

// The option of `lumvik develop` that asks for the report.
inline constexpr char kWorkerReportOption[] = "--worker-report";

// The line, without its end.
std::string LineOf(const WorkerReport& report);

// Finds the line among others, which libraries may have printed.
std::optional<WorkerReport> FindWorkerReport(const std::string& output);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_WORKER_REPORT_H_
