#include "pipeline/gaussian_blur.h"

#include <gtest/gtest.h>

#include <limits>
#include <opencv2/core/utility.hpp>
#include <opencv2/imgproc.hpp>

#include "support/instruction_sets.h"
#include "support/test_images.h"

namespace lumvik {
namespace {

using test::NoisePlane;

constexpr double kTolerance = 1e-6;

cv::Mat OpenCvsBlur(const cv::Mat& plane, double sigma) {
  cv::Mat blurred;
  cv::GaussianBlur(plane, blurred, cv::Size(), sigma);
  return blurred;
}

double LargestError(const cv::Mat& plane, double sigma) {
  return cv::norm(Blurred(plane, Gaussian::OfSigma(sigma).Kernel()), OpenCvsBlur(plane, sigma), cv::NORM_INF);
}

TEST(Blurred, IsOpenCvsBlur) {
  for (const cv::Size size : test::OddSizes()) {
    for (const double sigma : {0.1, 0.3, 1.0, 3.0, 5.0, 7.9, 30.0}) {
      EXPECT_LT(LargestError(NoisePlane(size), sigma), kTolerance) << size << sigma;
    }
  }
}

TEST(Blurred, AKernelOfAGivenSizeIsOpenCvs) {
  for (const int side : {1, 3, 5, 7, 9, 13}) {
    const cv::Mat plane = NoisePlane({123, 77});
    cv::Mat expected;
    cv::GaussianBlur(plane, expected, cv::Size(side, side), 0);
    EXPECT_LT(cv::norm(Blurred(plane, Gaussian::OfSize(side).Kernel()), expected, cv::NORM_INF), kTolerance)
        << side;
  }
}

TEST(Gaussian, RefusesASigmaThatIsNotPositive) {
  for (const double sigma : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_THROW(Gaussian::OfSigma(sigma), cv::Exception) << sigma;
  }
}

TEST(Blurred, AnyNumberOfThreadsAndEveryInstructionSetGiveTheSameBytes) {
  const cv::Mat plane = NoisePlane({331, 217});
  const int usual = cv::getNumThreads();
  const cv::Mat expected = Blurred(plane, Gaussian::OfSigma(1.0).Kernel());
  for (const int threads : {1, 2, 3, 4}) {
    cv::setNumThreads(threads);
    EXPECT_TRUE(test::SameBytes(Blurred(plane, Gaussian::OfSigma(1.0).Kernel()), expected)) << threads;
  }
  cv::setNumThreads(usual);
  test::WithEachInstructionSet(
      [&] { EXPECT_TRUE(test::SameBytes(Blurred(plane, Gaussian::OfSigma(1.0).Kernel()), expected)); });
}

}  // namespace
}  // namespace lumvik
