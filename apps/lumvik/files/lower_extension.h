// Filename extensions, ignoring case.
#ifndef LUMVIK_APPS_FILES_LOWER_EXTENSION_H_
#define LUMVIK_APPS_FILES_LOWER_EXTENSION_H_

#include <algorithm>
#include <filesystem>
#include <string>

namespace lumvik {

// Converts ASCII letters only.
inline std::string LowerAscii(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return text;
}

// ".jpg" for "Holiday.JPG".
inline std::string LowerExtension(const std::filesystem::path& path) {
  return LowerAscii(path.extension().string());
}

}  // namespace lumvik

#endif  // LUMVIK_APPS_FILES_LOWER_EXTENSION_H_
