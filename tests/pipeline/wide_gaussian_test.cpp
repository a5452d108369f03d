#include "pipeline/wide_gaussian.h"

#include <gtest/gtest.h>

#include <opencv2/core/utility.hpp>
#include <opencv2/imgproc.hpp>

#include "support/instruction_sets.h"
#include "support/test_images.h"

namespace lumvik {
namespace {

using test::NoisePlane;

constexpr double kWideTolerance = 2e-5;

cv::Mat OpenCvsGaussian(const cv::Mat& plane, double sigma) {
  cv::Mat blurred;
  cv::GaussianBlur(plane, blurred, cv::Size(), sigma);
  return blurred;
}

double LargestWideError(const cv::Mat& plane, double sigma) {
  return cv::norm(WideGaussian(plane, sigma).Plane(), OpenCvsGaussian(plane, sigma), cv::NORM_INF);
}

TEST(WideGaussian, LargeSigmasAreCloseToOpenCv) {
  for (const double sigma : {16.0, 20.0, 57.0, 100.0}) {
    for (const cv::Size size : {cv::Size(640, 480), cv::Size(65, 64), cv::Size(63, 129)}) {
      EXPECT_LT(LargestWideError(NoisePlane(size), sigma), kWideTolerance) << sigma << size;
    }
  }
}

TEST(WideGaussian, PicturesSmallerThanTheWindow) {
  for (const cv::Size size : test::OddSizes()) {
    EXPECT_LT(LargestWideError(NoisePlane(size), 20.0), kWideTolerance) << size;
  }
}

// One white pixel shows the weights themselves. The picture that is white where they are too large and black
// where they are too small has the largest error there is.
TEST(WideGaussian, TheWorstPictureIsStillClose) {
  for (const double sigma : {16.0, 20.0, 31.0, 57.0}) {
    const auto middle = static_cast<int>(5 * sigma);
    for (const int phase : {0, 1, 2, 3}) {
      cv::Mat plane(1, 2 * middle + 8, CV_32F, cv::Scalar(0));
      plane.at<float>(middle + phase) = 1;
      cv::Mat difference = WideGaussian(plane, sigma).Plane() - OpenCvsGaussian(plane, sigma);
      cv::Mat too_large;
      cv::max(difference, 0.0, too_large);
      EXPECT_LT(cv::sum(too_large)[0], kWideTolerance) << sigma;
      EXPECT_LT(cv::sum(too_large)[0] - cv::sum(difference)[0], kWideTolerance) << sigma;
    }
  }
}

TEST(WideGaussian, AnEvenPictureStaysEven) {
  const cv::Mat plane(4, 20000, CV_32F, cv::Scalar(1));
  EXPECT_LT(cv::norm(WideGaussian(plane, 20.0).Plane(), plane, cv::NORM_INF), 2e-6);
  EXPECT_LT(LargestWideError(NoisePlane({20000, 3}), 20.0), kWideTolerance);
}

TEST(WideGaussian, AnyNumberOfThreadsAndEveryInstructionSetGiveTheSameBytes) {
  const cv::Mat plane = NoisePlane({331, 217});
  const int usual = cv::getNumThreads();
  for (const double sigma : {16.0, 20.0}) {
    const cv::Mat expected = WideGaussian(plane, sigma).Plane();
    for (const int threads : {1, 2, 3, 4}) {
      cv::setNumThreads(threads);
      EXPECT_TRUE(test::SameBytes(WideGaussian(plane, sigma).Plane(), expected)) << threads;
    }
    cv::setNumThreads(usual);
    test::WithEachInstructionSet(
        [&] { EXPECT_TRUE(test::SameBytes(WideGaussian(plane, sigma).Plane(), expected)); });
  }
}

}  // namespace
}  // namespace lumvik
