// The output names of a batch.
#ifndef LUMVIK_APPS_BATCH_NAMES_H_
#define LUMVIK_APPS_BATCH_NAMES_H_

#include <string>
#include <vector>

#include "batch/inputs.h"
#include "lumvik_host.hpp"

namespace lumvik {

inline constexpr char kDefaultNamePattern[] = "{stem}.{ext}";

// An error message for an invalid pattern; empty for a valid one.
std::string NamePatternFault(const std::string& pattern, lumvik_host_format format);

// The output path of each photograph relative to the output folder. The pattern must be valid.
std::vector<std::string> NamesByPattern(const std::string& pattern,
                                        const std::vector<BatchInput>& photographs,
                                        lumvik_host_format format);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_NAMES_H_
