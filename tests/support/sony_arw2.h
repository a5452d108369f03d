// Sony's lossy RAW compression of one byte a pixel, as its cameras write it.
#ifndef LUMVIK_TESTS_SUPPORT_SONY_ARW2_H_
#define LUMVIK_TESTS_SUPPORT_SONY_ARW2_H_

#include <array>
#include <cstdint>
#include <opencv2/core.hpp>
#include <vector>

namespace lumvik::test {

// The knees of the tone curve in four times its 12-bit code: beyond each the curve climbs twice as fast.
inline constexpr std::array<uint16_t, 4> kArw2CurveKnees = {8000, 10400, 12900, 14100};

// The columns coded together; a row must hold whole groups.
inline constexpr int kArw2GroupColumns = 32;

// `sensor`: CV_16UC1 of linear 14-bit samples, columns a multiple of kArw2GroupColumns.
std::vector<uint8_t> EncodeArw2(const cv::Mat& sensor);

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_SONY_ARW2_H_
