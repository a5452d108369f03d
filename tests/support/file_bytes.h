// Bytes of files and images.
#ifndef LUMVIK_TESTS_SUPPORT_FILE_BYTES_H_
#define LUMVIK_TESTS_SUPPORT_FILE_BYTES_H_

#include <cstdint>
#include <fstream>
#include <iterator>
#include <opencv2/core.hpp>
#include <stdexcept>
#include <string>
#include <vector>

namespace lumvik::test {

inline std::vector<uint8_t> ReadBytes(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// `image` must be continuous.
inline std::vector<uint8_t> BytesOf(const cv::Mat& image) {
  return {image.datastart, image.dataend};
}

// Returns the path.
inline std::string WriteBytes(const std::string& path, const std::vector<uint8_t>& bytes) {
  std::ofstream file(path, std::ios::binary);
  file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  file.close();
  if (!file) throw std::runtime_error("cannot write " + path);
  return path;
}

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_FILE_BYTES_H_
