#include "segmentation/subject_cutout.h"

#include <gtest/gtest.h>

#include "support/test_images.h"

namespace lumvik {
namespace {

TEST(SubjectCutout, TakesColorsFromTheImageAndAlphaFromTheMask) {
  const cv::Mat rendered(1, 2, CV_16UC4, cv::Scalar(65535, 128, 129, 700));
  const cv::Mat mask = (cv::Mat_<uint8_t>(1, 2) << 200, 3);
  const cv::Mat cutout = SubjectCutout(rendered, mask);
  ASSERT_EQ(cutout.type(), CV_8UC4);
  EXPECT_EQ(cutout.at<cv::Vec4b>(0, 0), cv::Vec4b(1, 0, 255, 200));
  EXPECT_EQ(cutout.at<cv::Vec4b>(0, 1), cv::Vec4b(1, 0, 255, 3));
}

TEST(SubjectCutout, ThrowsIfMaskAndImageDifferInSize) {
  const cv::Mat mask(4, 5, CV_8U, cv::Scalar(255));
  EXPECT_THROW(SubjectCutout(test::NoiseImage({5, 5}, 1), mask), cv::Exception);
  EXPECT_THROW(SubjectCutout(test::NoiseImage({4, 5}, 1), mask), cv::Exception);
  EXPECT_THROW(SubjectCutout(ImageBuffer(), mask), cv::Exception);
}

}  // namespace
}  // namespace lumvik
