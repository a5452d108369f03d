// Writes PNG files.
#ifndef LUMVIK_APPS_DEVELOP_PNG_FILE_H_
#define LUMVIK_APPS_DEVELOP_PNG_FILE_H_

#include <cstdint>
#include <filesystem>
#include <vector>

namespace lumvik {

struct Pixels {
  int width = 0;
  int height = 0;
  int channels = 0;           // 1: gray, 3: RGB, 4: RGBA
  std::vector<uint8_t> data;  // row-major from the top, no padding
};

// Writes an 8-bit PNG atomically. Throws std::runtime_error on failure.
void WritePng(const Pixels& pixels, const std::filesystem::path& target);

}  // namespace lumvik

#endif  // LUMVIK_APPS_DEVELOP_PNG_FILE_H_
