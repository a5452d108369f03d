// The ending by which a file's name tells its format.
#ifndef LUMVIK_APPS_LOWER_ENDING_H_
#define LUMVIK_APPS_LOWER_ENDING_H_

#include <algorithm>
#include <filesystem>
#include <string>

namespace lumvik {

// ".jpg" of "Holiday.JPG"; only ASCII letters become small ones.
inline std::string LowerEnding(const std::filesystem::path& path) {
  std::string ending = path.extension().string();
  std::transform(ending.begin(), ending.end(), ending.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return ending;
}

}  // namespace lumvik

#endif  // LUMVIK_APPS_LOWER_ENDING_H_
