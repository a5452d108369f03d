// The numbers {n} of a batch.
#ifndef LUMVIK_APPS_BATCH_NUMBERS_H_
#define LUMVIK_APPS_BATCH_NUMBERS_H_

#include <cstddef>
#include <string>
#include <vector>

#include "batch/inputs.h"
#include "batch/names.h"

namespace lumvik {

// 1 to `count`, padded with zeros to the same width.
std::vector<std::string> CountedNumbers(std::size_t count);

// For a batch that is continued: photographs with an output in the folder keep the number of that output, and
// the others, in order, get those that are free. `fields` are those of the photographs.
std::vector<std::string> ContinuedNumbers(const std::vector<BatchInput>& photographs,
                                          const std::vector<NameFields>& fields, const NamePattern& pattern,
                                          const std::string& output_folder);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_NUMBERS_H_
