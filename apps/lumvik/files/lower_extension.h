// Filename extensions, ignoring case.
#ifndef LUMVIK_APPS_FILES_LOWER_EXTENSION_H_
#define LUMVIK_APPS_FILES_LOWER_EXTENSION_H_

#include <algorithm>
#include <filesystem>
#include <string>

namespace lumvik {

// ".jpg" for "Holiday.JPG". Converts ASCII letters only.
inline std::string LowerExtension(const std::filesystem::path& path) {
  std::string extension = path.extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return extension;
}

}  // namespace lumvik

#endif  // LUMVIK_APPS_FILES_LOWER_EXTENSION_H_
