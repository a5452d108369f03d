// Sony's lossy RAW compression of one byte per pixel.
#ifndef LUMVIK_TESTS_SUPPORT_SONY_ARW2_H_
#define LUMVIK_TESTS_SUPPORT_SONY_ARW2_H_

#include <array>
#include <cstdint>
#include <opencv2/core.hpp>
#include <vector>

namespace lumvik::test {

// The knees of the tone curve, in units of a quarter of its 12-bit code: the slope doubles after each.
inline constexpr std::array<uint16_t, 4> kArw2CurveKnees = {8000, 10400, 12900, 14100};

// Columns encoded together; a row must consist of whole groups.
inline constexpr int kArw2GroupColumns = 32;

// `sensor`: CV_16UC1 of linear 14-bit samples, columns a multiple of kArw2GroupColumns.
std::vector<uint8_t> EncodeArw2(const cv::Mat& sensor);

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_SONY_ARW2_H_
