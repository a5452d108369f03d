#include "pipeline/scaled_blur.h"

#include <gtest/gtest.h>

#include <opencv2/core/utility.hpp>
#include <opencv2/imgproc.hpp>

#include "base/vectorized.h"
#include "support/instruction_sets.h"
#include "support/test_images.h"

namespace lumvik {
namespace {

constexpr LinearScale kDarkening = {-0.37 / 0.83, 1};

cv::Mat UniformPlane(cv::Size size) {
  cv::Mat plane(size, CV_32F);
  cv::RNG(11).fill(plane, cv::RNG::UNIFORM, 0, 1);
  return plane;
}

cv::Mat BlurredByOpenCv(const cv::Mat& plane, double sigma) {
  cv::Mat blurred;
  plane.convertTo(blurred, CV_32F, kDarkening.factor, kDarkening.offset);
  cv::GaussianBlur(blurred, blurred, cv::Size(), sigma);
  return blurred;
}

cv::Mat BlurredByUs(const cv::Mat& plane, double sigma) {
  cv::Mat overwritten = plane.clone();
  cv::Mat blurred(plane.size(), CV_32F);
  ScaleAndBlur(overwritten, kDarkening, sigma, blurred);
  return blurred;
}

TEST(ScaledBlur, HasOpenCvsBytes) {
  std::vector<cv::Size> sizes = test::OddSizes();
  sizes.emplace_back(331, 217);
  sizes.emplace_back(1100, 90);  // more than one tile
  for (const cv::Size size : sizes) {
    const cv::Mat plane = UniformPlane(size);
    for (const double sigma : {1.5, 5.0, 9.0}) {
      const cv::Mat expected = BlurredByOpenCv(plane, sigma);
      test::WithEachInstructionSet(
          [&] { EXPECT_TRUE(test::SameBytes(BlurredByUs(plane, sigma), expected)) << size << sigma; });
    }
  }
}

TEST(ScaledBlur, DoesNotDependOnTheNumberOfThreads) {
  const cv::Mat plane = UniformPlane({331, 217});
  const cv::Mat expected = BlurredByOpenCv(plane, 5);
  const int usual = cv::getNumThreads();
  for (const int threads : {1, 2, 3, 4}) {
    cv::setNumThreads(threads);
    EXPECT_TRUE(test::SameBytes(BlurredByUs(plane, 5), expected)) << threads;
  }
  cv::setNumThreads(usual);
}

// So that calling OpenCV everywhere does not pass.
TEST(ScaledBlur, IsFusedWhereOpenCvIs) {
  if (BestInstructionSet() == InstructionSet::kBaseline) GTEST_SKIP() << "needs AVX2";
  EXPECT_EQ(CanBlurFused(), cv::checkHardwareSupport(CV_CPU_AVX2));
}

}  // namespace
}  // namespace lumvik
