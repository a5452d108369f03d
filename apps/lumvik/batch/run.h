// Develops the photographs of a batch, each in its own process.
#ifndef LUMVIK_APPS_BATCH_RUN_H_
#define LUMVIK_APPS_BATCH_RUN_H_

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "batch/plan.h"

namespace lumvik {

enum class BatchState { kPending, kSkipped, kDeveloped, kFailed };

struct BatchOutcome {
  BatchState state = BatchState::kPending;
  int width = 0;
  int height = 0;
  double seconds = 0;
  std::string failure;  // message for the user
};

struct BatchWork {
  std::vector<BatchTask> tasks;
  std::vector<std::string> develop_options;  // passed to every `lumvik develop`
  unsigned workers = 1;
};

// Runs the tasks whose outcomes are pending and calls `done` with the index of each as it finishes. An output
// appears under its name only when complete; until then it is in a staging folder next to it, which is
// removed even when this throws Interruption. What a killed batch leaves behind is removed when the same
// output is written again.
void RunBatch(const BatchWork& work, std::vector<BatchOutcome>& outcomes,
              const std::function<void(std::size_t)>& done);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_RUN_H_
