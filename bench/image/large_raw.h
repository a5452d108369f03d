// The RAW file of the benchmarks.
#ifndef LUMVIK_BENCH_IMAGE_LARGE_RAW_H_
#define LUMVIK_BENCH_IMAGE_LARGE_RAW_H_

#include <cstdint>
#include <opencv2/imgproc.hpp>
#include <vector>

#include "support/raw_writer.h"
#include "support/test_images.h"

namespace lumvik::bench {

inline constexpr int kRawColumns = 6000;
inline constexpr int kRawRows = 4000;

// A compressed ARW file of 24 megapixels: a photograph, enlarged.
inline std::vector<uint8_t> LargeRaw() {
  cv::Mat rgb;
  test::Photograph("cat.jpg", 600).convertTo(rgb, CV_16U);
  cv::cvtColor(rgb, rgb, cv::COLOR_RGBA2RGB);
  cv::resize(rgb, rgb, cv::Size(kRawColumns, kRawRows), 0, 0, cv::INTER_CUBIC);
  return test::MakeRawFile(rgb);
}

}  // namespace lumvik::bench

#endif  // LUMVIK_BENCH_IMAGE_LARGE_RAW_H_
