// Why a worker failed.
#ifndef LUMVIK_APPS_BATCH_WORKER_FAILURE_H_
#define LUMVIK_APPS_BATCH_WORKER_FAILURE_H_

#include <chrono>
#include <string>

#include "batch/worker_process.h"

namespace lumvik {

// A message for the user about the photograph `input`: the worker's own, or how it ended.
std::string FailureOf(const WorkerEnd& end, const std::string& input, std::chrono::seconds time_limit);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_WORKER_FAILURE_H_
