// Numbers of a list, as an option with several values takes them.
#ifndef LUMVIK_APPS_NUMBER_LIST_H_
#define LUMVIK_APPS_NUMBER_LIST_H_

#include <string>
#include <vector>

#include "range.h"

namespace lumvik {

// Reads as many numbers as there are ranges, parted by commas, each in its own range. Throws
// std::invalid_argument with a sentence for the user.
std::vector<float> ReadNumbers(const std::string& text, const std::vector<Range<float>>& ranges);

}  // namespace lumvik

#endif  // LUMVIK_APPS_NUMBER_LIST_H_
