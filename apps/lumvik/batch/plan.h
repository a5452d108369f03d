// The tasks of a batch, planned before any of them starts.
#ifndef LUMVIK_APPS_BATCH_PLAN_H_
#define LUMVIK_APPS_BATCH_PLAN_H_

#include <string>
#include <vector>

#include "batch/inputs.h"
#include "lumvik_host.hpp"

namespace lumvik {

struct BatchTask {
  std::string input;
  std::string output;
};

// One task per photograph. Throws std::runtime_error with a message for the user when two outputs, or an
// output and an input, would be the same file.
std::vector<BatchTask> PlanBatch(const BatchInputs& inputs, const std::string& output_folder,
                                 const std::string& name_pattern, lumvik_host_format format);

// Whether the output exists, is whole, and is newer than the photograph and its settings files.
bool IsDone(const BatchTask& task, const std::vector<std::string>& settings);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_PLAN_H_
