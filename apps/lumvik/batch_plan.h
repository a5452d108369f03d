// What a batch is to do, settled before it does anything.
#ifndef LUMVIK_APPS_BATCH_PLAN_H_
#define LUMVIK_APPS_BATCH_PLAN_H_

#include <string>
#include <vector>

#include "batch_inputs.h"
#include "output_format.h"

namespace lumvik {

struct BatchTask {
  std::string input;
  std::string output;
};

// A task for each photograph. Throws std::runtime_error with a sentence for the user when two outputs, or an
// output and a photograph, would be the same file.
std::vector<BatchTask> PlanBatch(const BatchInputs& inputs, const std::string& output_folder,
                                 const std::string& name_pattern, OutputFormat format);

// Whether the output is there, whole, and newer than the photograph and the files of its settings.
bool IsDone(const BatchTask& task, const std::vector<std::string>& settings, OutputFormat format);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_PLAN_H_
