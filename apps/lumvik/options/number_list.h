// Comma-separated numbers of an option.
#ifndef LUMVIK_APPS_OPTIONS_NUMBER_LIST_H_
#define LUMVIK_APPS_OPTIONS_NUMBER_LIST_H_

#include <string>
#include <vector>

#include "options/range.h"

namespace lumvik {

// Reads one number per range, separated by commas, each within its range. Throws std::invalid_argument with a
// message for the user.
std::vector<float> ReadNumbers(const std::string& text, const std::vector<Range<float>>& ranges);

}  // namespace lumvik

#endif  // LUMVIK_APPS_OPTIONS_NUMBER_LIST_H_
