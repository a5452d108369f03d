// What the outputs of a batch are called.
#ifndef LUMVIK_APPS_BATCH_NAMES_H_
#define LUMVIK_APPS_BATCH_NAMES_H_

#include <string>
#include <vector>

#include "batch_inputs.h"
#include "output_format.h"

namespace lumvik {

inline constexpr char kUsualNamePattern[] = "{stem}.{ext}";

// What is wrong with a pattern, in a sentence for the user; empty when nothing is.
std::string NamePatternFault(const std::string& pattern, OutputFormat format);

// The path within the output folder for each photograph, in their order, by a pattern without a fault.
std::vector<std::string> NamesByPattern(const std::string& pattern,
                                        const std::vector<BatchInput>& photographs, OutputFormat format);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_NAMES_H_
