// Develops the photographs of a batch, each in its own process.
#ifndef LUMVIK_APPS_BATCH_RUN_H_
#define LUMVIK_APPS_BATCH_RUN_H_

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "batch/plan.h"
#include "files/mark.h"

namespace lumvik {

struct BatchWork {
  std::vector<BatchTask> tasks;
  std::vector<std::string> develop_options;  // passed to every `lumvik develop`
  std::function<std::optional<Mark>(const std::string& input)> expected_mark;
  bool overwrite = false;  // replace files that the command did not write
  unsigned workers = 1;
  std::chrono::seconds time_limit{0};  // per photograph; 0 for none
};

// Runs the tasks whose outcomes are pending and calls `done` with the index of each as it finishes. An output
// appears under its name only when complete; until then it is in the work folder of its folder, where nothing
// is left even when this throws Interruption. What a killed run left there is removed. Outputs that other
// runs are writing come last and are not developed again. Returns why it stopped early: the disk is full.
std::optional<std::string> RunBatch(const BatchWork& work, std::vector<BatchOutcome>& outcomes,
                                    const std::function<void(std::size_t)>& done,
                                    const std::function<void(const std::string&)>& notify);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_RUN_H_
