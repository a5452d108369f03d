// What a command says of a picture it has written.
#ifndef LUMVIK_APPS_RESULT_LINE_H_
#define LUMVIK_APPS_RESULT_LINE_H_

#include <iostream>
#include <string>

namespace lumvik {

inline void PrintResult(const std::string& file, int width, int height) {
  std::cout << file << ' ' << width << 'x' << height << '\n';
}

}  // namespace lumvik

#endif  // LUMVIK_APPS_RESULT_LINE_H_
