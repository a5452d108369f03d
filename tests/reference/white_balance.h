// Reference white balance: channel gains from a color temperature and a tint.
#ifndef LUMVIK_TESTS_REFERENCE_WHITE_BALANCE_H_
#define LUMVIK_TESTS_REFERENCE_WHITE_BALANCE_H_

#include <opencv2/core.hpp>

namespace lumvik::reference {

struct Chromaticity {
  float x;
  float y;
};

struct WhiteBalanceGains {
  float red;
  float green;
  float blue;
};

// Kim's cubic approximation of the Planckian locus, for temperatures clamped to 1667..25000 K.
Chromaticity KelvinToChromaticity(float temperature);

WhiteBalanceGains ComputeWhiteBalanceGains(float temperature, float tint);

void WhiteBalance(cv::Mat& working, float temperature, float tint);

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_WHITE_BALANCE_H_
