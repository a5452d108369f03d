// What is already there when a batch begins.
#ifndef LUMVIK_APPS_BATCH_SURVEY_H_
#define LUMVIK_APPS_BATCH_SURVEY_H_

#include <set>
#include <string>
#include <vector>

#include "batch/run.h"

namespace lumvik {

// The outcomes that are certain before any photograph is developed: with `resume`, those with a current
// output are skipped; those whose output cannot be written fail. The others are pending. Notes in the tasks
// which outputs are current. `input_paths` are the canonical paths of all inputs.
std::vector<BatchOutcome> Survey(BatchWork& work, const std::set<std::string>& input_paths, bool resume);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_SURVEY_H_
