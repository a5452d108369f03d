#include "reference/white_balance.h"

#include <algorithm>

#include "reference/clamp.h"

namespace lumvik::reference {

Chromaticity KelvinToChromaticity(float temperature) {
  const float t = Clamp(temperature, 1667.0F, 25000.0F);
  const float t2 = t * t;
  const float t3 = t2 * t;
  float x = 0;
  if (t <= 4000.0F) {
    x = -266123904.0F / t3 - 234358.9F / t2 + 877.6956F / t + 0.17991F;
  } else {
    x = -3025846784.0F / t3 + 2107038.0F / t2 + 222.6347F / t + 0.24039F;
  }
  const float x2 = x * x;
  const float x3 = x2 * x;
  float y = 0;
  if (t <= 2222.0F) {
    y = -1.1063814F * x3 - 1.3481102F * x2 + 2.1855583F * x - 0.20219684F;
  } else if (t <= 4000.0F) {
    y = -0.9549476F * x3 - 1.3741859F * x2 + 2.09137F * x - 0.16748866F;
  } else {
    y = 3.081758F * x3 - 5.873387F * x2 + 3.7511299F * x - 0.37001482F;
  }
  return {x, y};
}

WhiteBalanceGains ComputeWhiteBalanceGains(float temperature, float tint) {
  const Chromaticity scene = KelvinToChromaticity(temperature);
  const Chromaticity white = KelvinToChromaticity(6504.0F);
  const float a = (white.x / white.y) / (scene.x / scene.y);
  const float c = ((1.0F - white.x - white.y) / white.y) / ((1.0F - scene.x - scene.y) / scene.y);
  const float red = std::max(3.2406F * a - 1.5372F - 0.4986F * c, 0.01F);
  const float green = std::max(std::max(-0.9689F * a + 1.8758F + 0.0415F * c, 0.01F), 0.001F);
  const float blue = std::max(0.0557F * a - 0.204F + 1.057F * c, 0.01F);
  return {red / green, 1.0F - tint / 150.0F * 0.15F, blue / green};
}

void WhiteBalance(cv::Mat& working, float temperature, float tint) {
  const WhiteBalanceGains gains = ComputeWhiteBalanceGains(temperature, tint);
  if (gains.red == 1.0F && gains.green == 1.0F && gains.blue == 1.0F) return;
  for (int y = 0; y < working.rows; ++y) {
    auto* row = working.ptr<cv::Vec4f>(y);
    for (int x = 0; x < working.cols; ++x) {
      cv::Vec4f& pixel = row[x];
      pixel[0] = ClampUnit(gains.red * pixel[0]);
      pixel[1] = ClampUnit(gains.green * pixel[1]);
      pixel[2] = ClampUnit(gains.blue * pixel[2]);
    }
  }
}

}  // namespace lumvik::reference
