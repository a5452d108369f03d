#include "pipeline/stages/contrast.h"

#include <gtest/gtest.h>

#include "pipeline/packed_rows.h"
#include "pipeline/row_steps.h"

namespace lumvik {
namespace {

cv::Vec4f Contrasted(const cv::Vec4f& pixel, float contrast) {
  cv::Mat image(1, 1, CV_32FC4, cv::Scalar(pixel));
  RunRowSteps(RowsOf(image), {Contrast(contrast)}, StoreIn(image));
  return image.at<cv::Vec4f>(0, 0);
}

TEST(Contrast, CompressesTheRangeForAnySettingButZero) {
  const cv::Vec4f result = Contrasted({0.0F, 0.5F, 1.0F, 0.25F}, 0.0001F);
  EXPECT_NEAR(result[0], 0.0833F, 5e-5F);
  EXPECT_EQ(result[1], 0.5F);
  EXPECT_NEAR(result[2], 0.9167F, 5e-5F);
  EXPECT_EQ(result[3], 0.25F);
}

TEST(Contrast, SteepensAndClamps) {
  // k = 1.8: 0.9 lies at t = 0.72, 0.72 / 1.288 + 0.5 = 1.059.
  EXPECT_EQ(Contrasted({0.9F, 0.1F, 0.5F, 1.0F}, 100), cv::Vec4f(1.0F, 0.0F, 0.5F, 1.0F));
}

TEST(Contrast, SlopeHasAFloor) {
  EXPECT_EQ(Contrasted({0.9F, 0.2F, 1.0F, 1.0F}, -100), Contrasted({0.9F, 0.2F, 1.0F, 1.0F}, -5000));
  // k = 0.2: 1.0 lies at t = 0.1, 0.1 / 1.04 + 0.5.
  EXPECT_NEAR(Contrasted({1.0F, 0, 0, 1}, -100)[0], 0.59615F, 1e-5F);
}

}  // namespace
}  // namespace lumvik
