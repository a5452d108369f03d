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
  return cv::norm(WideGaussian(plane, Gaussian::OfSigma(sigma)).Plane(), OpenCvsGaussian(plane, sigma),
                  cv::NORM_INF);
}

TEST(WideGaussian, LargeSigmasAreCloseToOpenCv) {
  for (const double sigma : {16.0, 20.0, 57.0, 100.0}) {
    for (const cv::Size size : {cv::Size(640, 480), cv::Size(65, 64), cv::Size(63, 129)}) {
      EXPECT_LT(LargestWideError(NoisePlane(size), sigma), kWideTolerance) << sigma << size;
    }
  }
}

TEST(WideGaussian, ImagesSmallerThanTheKernel) {
  for (const cv::Size size : test::OddSizes()) {
    EXPECT_LT(LargestWideError(NoisePlane(size), 20.0), kWideTolerance) << size;
  }
}

TEST(WideGaussian, APartHoldsTheValuesOfThePlaneWhereverItBegins) {
  const cv::Mat plane = NoisePlane({331, 40});
  for (const double sigma : {16.0, 20.0, 57.0, 100.0}) {
    const WideGaussian blur(plane, Gaussian::OfSigma(sigma));
    const cv::Mat whole = blur.Plane();
    for (const cv::Range columns : {cv::Range(0, 331), {1, 101}, {7, 57}, {131, 331}, {330, 331}}) {
      cv::Mat part(1, columns.size(), CV_32F);
      blur.Read(columns.start, 21, PartColumns(columns.size()), part.ptr<float>());
      EXPECT_TRUE(test::SameBytes(part, whole(cv::Range(21, 22), columns))) << sigma << ' ' << columns.start;
    }
  }
}

// One white pixel shows the weights. The image that is white where they are too large and black where they
// are too small has the largest possible error.
TEST(WideGaussian, TheWorstImageIsStillClose) {
  for (const double sigma : {16.0, 20.0, 31.0, 57.0}) {
    const auto middle = static_cast<int>(5 * sigma);
    for (const int phase : {0, 1, 2, 3}) {
      cv::Mat plane(1, 2 * middle + 8, CV_32F, cv::Scalar(0));
      plane.at<float>(middle + phase) = 1;
      cv::Mat difference =
          WideGaussian(plane, Gaussian::OfSigma(sigma)).Plane() - OpenCvsGaussian(plane, sigma);
      cv::Mat too_large;
      cv::max(difference, 0.0, too_large);
      EXPECT_LT(cv::sum(too_large)[0], kWideTolerance) << sigma;
      EXPECT_LT(cv::sum(too_large)[0] - cv::sum(difference)[0], kWideTolerance) << sigma;
    }
  }
}

// OpenCV cuts the kernel of a given size off at 3.3 sigmas, an edge that the grid cannot represent.
TEST(WideGaussian, AKernelOfAGivenSizeIsCloseToOpenCv) {
  constexpr double kCutOffTolerance = 4e-4;
  for (const int size : {105, 203, 401, 1201}) {
    ASSERT_TRUE(Gaussian::OfSize(size).IsWide());
    for (const cv::Size frame : {cv::Size(640, 480), cv::Size(65, 64)}) {
      const cv::Mat plane = NoisePlane(frame);
      cv::Mat expected;
      cv::GaussianBlur(plane, expected, {size, size}, 0);
      const double error = cv::norm(Blurred(plane, Gaussian::OfSize(size)), expected, cv::NORM_INF);
      EXPECT_LT(error, kCutOffTolerance) << size << frame;
    }
    // One white pixel shows the kernel: half the sum of the differences is the largest possible error.
    cv::Mat point(1, 3 * size, CV_32F, cv::Scalar(0));
    point.at<float>(3 * size / 2) = 1;
    cv::Mat expected;
    cv::GaussianBlur(point, expected, {size, size}, 0);
    EXPECT_LT(cv::norm(Blurred(point, Gaussian::OfSize(size)), expected, cv::NORM_L1) / 2, kCutOffTolerance)
        << size;
  }
}

TEST(WideGaussian, AKernelFarWiderThanTheImageIsItsMean) {
  for (const cv::Size frame : {cv::Size(1, 1), cv::Size(2, 5), cv::Size(300, 7)}) {
    const cv::Mat plane = NoisePlane(frame);
    const cv::Mat blurred = Blurred(plane, Gaussian::OfSigma(1e30));
    // Mirrored at pixel centers, the outermost pixels count half.
    cv::Mat weights(frame, CV_32F, cv::Scalar(1));
    for (const int x : {0, frame.width - 1}) weights.col(x) *= frame.width > 1 ? 0.5 : 1.0;
    for (const int y : {0, frame.height - 1}) weights.row(y) *= frame.height > 1 ? 0.5 : 1.0;
    const double mean = plane.dot(weights) / cv::sum(weights)[0];
    EXPECT_LT(cv::norm(blurred, cv::Mat(frame, CV_32F, cv::Scalar(mean)), cv::NORM_INF), 2e-5) << frame;
  }
}

TEST(WideGaussian, AUniformImageStaysUniform) {
  const cv::Mat plane(4, 20000, CV_32F, cv::Scalar(1));
  EXPECT_LT(cv::norm(WideGaussian(plane, Gaussian::OfSigma(20.0)).Plane(), plane, cv::NORM_INF), 2e-6);
  EXPECT_LT(LargestWideError(NoisePlane({20000, 3}), 20.0), kWideTolerance);
}

TEST(WideGaussian, AnyNumberOfThreadsAndEveryInstructionSetGiveTheSameBytes) {
  const cv::Mat plane = NoisePlane({331, 217});
  const int usual = cv::getNumThreads();
  for (const double sigma : {16.0, 20.0}) {
    const cv::Mat expected = WideGaussian(plane, Gaussian::OfSigma(sigma)).Plane();
    for (const int threads : {1, 2, 3, 4}) {
      cv::setNumThreads(threads);
      EXPECT_TRUE(test::SameBytes(WideGaussian(plane, Gaussian::OfSigma(sigma)).Plane(), expected))
          << threads;
    }
    cv::setNumThreads(usual);
    test::WithEachInstructionSet([&] {
      EXPECT_TRUE(test::SameBytes(WideGaussian(plane, Gaussian::OfSigma(sigma)).Plane(), expected));
    });
  }
}

}  // namespace
}  // namespace lumvik
