// Lines on standard output about a written image.
#ifndef LUMVIK_APPS_TERMINAL_RESULT_LINE_H_
#define LUMVIK_APPS_TERMINAL_RESULT_LINE_H_

#include <iostream>
#include <optional>
#include <string>

#include "lumvik_host.hpp"
#include "terminal/printable.h"

namespace lumvik {

inline void PrintResult(const std::string& file, api::Size size) {
  std::cout << Printable(file) << ' ' << size.width << 'x' << size.height << '\n';
}

// The user may be unaware of the file.
inline void PrintSidecar(const std::optional<std::string>& file) {
  if (file) std::cout << "settings from " << Printable(*file) << '\n';
}

}  // namespace lumvik

#endif  // LUMVIK_APPS_TERMINAL_RESULT_LINE_H_
