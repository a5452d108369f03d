// Pixels as a PNG file.
#ifndef LUMVIK_APPS_PNG_FILE_H_
#define LUMVIK_APPS_PNG_FILE_H_

#include <cstdint>
#include <filesystem>
#include <vector>

namespace lumvik {

struct Pixels {
  int width = 0;
  int height = 0;
  int channels = 0;           // 1: gray, 3: red, green, blue, 4: and alpha
  std::vector<uint8_t> data;  // rows from top to bottom without padding
};

// Writes a PNG that appears whole or not at all. Throws std::runtime_error when that fails.
void WritePng(const Pixels& pixels, const std::filesystem::path& target);

}  // namespace lumvik

#endif  // LUMVIK_APPS_PNG_FILE_H_
