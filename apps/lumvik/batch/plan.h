// The tasks of a batch, planned before any of them starts.
#ifndef LUMVIK_APPS_BATCH_PLAN_H_
#define LUMVIK_APPS_BATCH_PLAN_H_

#include <string>
#include <vector>

#include "batch/inputs.h"
#include "batch/shard.h"

namespace lumvik {

enum class BatchState { kPending, kSkipped, kDeveloped, kDamaged, kFailed };

struct BatchTask {
  std::string input;
  std::string output;       // empty for what is not a photograph to develop
  bool is_current = false;  // the output was up to date before the run
};

struct BatchOutcome {
  BatchState state = BatchState::kPending;
  int width = 0;
  int height = 0;
  double seconds = 0;
  std::string failure;                // message for the user; of a damaged photograph as well
  std::string reason;                 // why it was skipped
  std::string damage;                 // of a damaged photograph that was developed nevertheless
  std::vector<std::string> warnings;  // of the worker
};

// Photographs that would be written to the same output.
struct BatchClash {
  std::string output;
  std::vector<std::string> inputs;
};

struct BatchPlan {
  std::vector<BatchTask> tasks;
  std::vector<BatchClash> clashes;
  bool extensions_differ = false;  // {source_ext} in the names would resolve all clashes
};

// One task per photograph of the shard. `names` are those of the photographs, relative to the output folder.
BatchPlan PlanBatch(const BatchInputs& inputs, const std::vector<std::string>& names,
                    const std::string& output_folder, const Shard& shard);

// "'a.ARW' and 'a.JPG' would both be written to 'web/a.jpg'"
std::string MessageOf(const BatchClash& clash);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_PLAN_H_
