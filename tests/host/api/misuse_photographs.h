// Small photographs for tests of the interface.
#ifndef LUMVIK_TESTS_HOST_API_MISUSE_PHOTOGRAPHS_H_
#define LUMVIK_TESTS_HOST_API_MISUSE_PHOTOGRAPHS_H_

#include <opencv2/imgcodecs.hpp>
#include <string>

#include "support/file_bytes.h"
#include "support/raw_writer.h"
#include "support/temp_dir.h"

namespace lumvik::host::test {

inline cv::Mat SmallNoise() {
  cv::Mat image(32, 48, CV_8UC3);
  cv::RNG(1).fill(image, cv::RNG::UNIFORM, 0, 256);
  return image;
}

inline const lumvik::test::TempDir& PhotographFolder() {
  static const lumvik::test::TempDir folder;
  return folder;
}

// A PNG of 48 x 32 pixels.
inline const std::string& PhotographPath() {
  static const std::string path = [] {
    const std::string written = PhotographFolder().File("small.png");
    cv::imwrite(written, SmallNoise());
    return written;
  }();
  return path;
}

// A RAW file of 48 x 32 pixels.
inline const std::string& RawPhotographPath() {
  static const std::string path =
      lumvik::test::WriteBytes(PhotographFolder().File("small.arw"), lumvik::test::MakeRawFile(SmallNoise()));
  return path;
}

}  // namespace lumvik::host::test

#endif  // LUMVIK_TESTS_HOST_API_MISUSE_PHOTOGRAPHS_H_
