#include "pipeline/gaussian_blur.h"

#include <gtest/gtest.h>

#include <opencv2/core/utility.hpp>
#include <opencv2/imgproc.hpp>

#include "support/instruction_sets.h"
#include "support/test_images.h"

namespace lumvik {
namespace {

constexpr double kTolerance = 2e-5;

cv::Mat Noise(cv::Size size, uint64_t seed = 5) {
  cv::Mat plane(size, CV_32F);
  cv::RNG(seed).fill(plane, cv::RNG::UNIFORM, 0, 1);
  return plane;
}

cv::Mat Expected(const cv::Mat& plane, double sigma) {
  cv::Mat blurred;
  cv::GaussianBlur(plane, blurred, cv::Size(), sigma);
  return blurred;
}

double LargestError(const cv::Mat& plane, double sigma) {
  return cv::norm(GaussianBlurred(plane, sigma), Expected(plane, sigma), cv::NORM_INF);
}

// Black and white in the rhythm of the strongest cosine that the window leaves out: the worst picture there
// is.
cv::Mat Worst(cv::Size size, double sigma) {
  const double period = (2 * cvRound(sigma * 4) + 1) / 6.0;
  cv::Mat plane(size, CV_32F);
  for (int y = 0; y < size.height; ++y) {
    for (int x = 0; x < size.width; ++x) {
      plane.at<float>(y, x) = std::cos(2 * CV_PI * x / period) > 0 ? 1.0F : 0.0F;
    }
  }
  return plane;
}

TEST(GaussianBlurred, SmallSigmasGiveOpenCvsBytes) {
  for (const cv::Size size : test::OddSizes()) {
    for (const double sigma : {0.3, 1.0, 3.0, 5.0, 7.9}) {
      const cv::Mat plane = Noise(size);
      EXPECT_TRUE(test::SameBytes(GaussianBlurred(plane, sigma), Expected(plane, sigma))) << size << sigma;
    }
  }
}

TEST(GaussianBlurred, AKernelOfAGivenSizeGivesOpenCvsBytes) {
  for (const int side : {3, 5, 13}) {
    const cv::Mat plane = Noise({123, 77});
    cv::Mat expected;
    cv::GaussianBlur(plane, expected, cv::Size(side, side), 0);
    EXPECT_TRUE(test::SameBytes(GaussianBlurred(plane, cv::Size(side, side)), expected)) << side;
  }
}

TEST(GaussianBlurred, LargeSigmasAreCloseToOpenCv) {
  for (const double sigma : {8.0, 11.3, 20.0, 57.0, 100.0}) {
    for (const cv::Size size : {cv::Size(640, 480), cv::Size(65, 64), cv::Size(63, 129)}) {
      EXPECT_LT(LargestError(Noise(size), sigma), kTolerance) << sigma << size;
    }
  }
}

TEST(GaussianBlurred, PicturesSmallerThanTheWindow) {
  for (const cv::Size size : test::OddSizes()) {
    EXPECT_LT(LargestError(Noise(size), 20.0), kTolerance) << size;
  }
}

TEST(GaussianBlurred, TheWorstPictureIsStillClose) {
  for (const double sigma : {8.0, 20.0, 40.0}) {
    EXPECT_LT(LargestError(Worst({900, 300}, sigma), sigma), kTolerance) << sigma;
    EXPECT_LT(LargestError(Worst({900, 300}, sigma).t(), sigma), kTolerance) << sigma;
  }
}

TEST(GaussianBlurred, TheSlidingSumsDoNotDrift) {
  const cv::Mat plane(4, 20000, CV_32F, cv::Scalar(1));
  EXPECT_LT(cv::norm(GaussianBlurred(plane, 20.0), plane, cv::NORM_INF), 2e-6);
  EXPECT_LT(LargestError(Noise({20000, 3}), 20.0), kTolerance);
}

TEST(GaussianBlurred, AnyNumberOfThreadsAndEveryInstructionSetGiveTheSameBytes) {
  const cv::Mat plane = Noise({331, 217});
  const int usual = cv::getNumThreads();
  for (const double sigma : {1.0, 20.0}) {
    const cv::Mat expected = GaussianBlurred(plane, sigma);
    for (const int threads : {1, 2, 3, 4}) {
      cv::setNumThreads(threads);
      EXPECT_TRUE(test::SameBytes(GaussianBlurred(plane, sigma), expected)) << threads;
    }
    cv::setNumThreads(usual);
    test::WithEachInstructionSet(
        [&] { EXPECT_TRUE(test::SameBytes(GaussianBlurred(plane, sigma), expected)); });
  }
}

}  // namespace
}  // namespace lumvik
