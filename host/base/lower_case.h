// Lower case for names and extensions, whatever the locale.
#ifndef LUMVIK_HOST_BASE_LOWER_CASE_H_
#define LUMVIK_HOST_BASE_LOWER_CASE_H_

#include <algorithm>
#include <string>

namespace lumvik::host {

// Converts ASCII letters only.
inline std::string LowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return text;
}

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_BASE_LOWER_CASE_H_
