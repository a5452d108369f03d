// Develops the photographs of a batch, each in a process of its own.
#ifndef LUMVIK_APPS_BATCH_RUN_H_
#define LUMVIK_APPS_BATCH_RUN_H_

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "batch_plan.h"

namespace lumvik {

enum class BatchState { kPending, kSkipped, kDeveloped, kFailed };

// What became of a task.
struct BatchOutcome {
  BatchState state = BatchState::kPending;
  int width = 0;
  int height = 0;
  double seconds = 0;
  std::string failure;  // a sentence for the user
};

struct BatchWork {
  std::vector<BatchTask> tasks;
  std::vector<std::string> develop_options;  // for each of them
  unsigned workers = 1;
};

// Does the tasks whose outcomes are pending, and calls `done` with the index of each. An output appears under
// its name when it is complete; until then it is in a folder beside its place, which is removed also when
// this throws Interruption. A task whose process was killed together with this one removes what that left
// behind.
void RunBatch(const BatchWork& work, std::vector<BatchOutcome>& outcomes,
              const std::function<void(std::size_t)>& done);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_RUN_H_
