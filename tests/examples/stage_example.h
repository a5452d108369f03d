// Fixtures for worked examples of the pipeline's stages.
#ifndef LUMVIK_TESTS_EXAMPLES_STAGE_EXAMPLE_H_
#define LUMVIK_TESTS_EXAMPLES_STAGE_EXAMPLE_H_

#include <opencv2/core.hpp>

#include "base/adjustments.h"
#include "examples/subject.h"
#include "pipeline/develop_pipeline.h"
#include "reference/develop_pipeline.h"
#include "support/random_adjustments.h"
#include "support/test_images.h"

namespace lumvik::test {

inline cv::Mat Uniform(int columns, int rows, const cv::Vec4f& color) {
  return cv::Mat(rows, columns, CV_32FC4, cv::Scalar(color));
}

// Sizes on both sides of what the engine divides rows into: vectors, strips of 256 columns, parts of 1024,
// and, with the tall ones, chunks of rows.
inline const cv::Size kExampleSizes[] = {{1, 1},    {1, 70},   {33, 70},  {255, 2},  {256, 1}, {257, 3},
                                         {1023, 1}, {1024, 2}, {1025, 1}, {1300, 1}, {2049, 1}};

// Develops working images (CV_32FC4) with the adjustments of the stage alone.
class StageExample : public Example<cv::Mat(const cv::Mat& working, const Adjustments& adjustments)> {
 protected:
  cv::Mat Developed(const cv::Mat& working, const Adjustments& adjustments) const {
    return GetParam().run(working, adjustments);
  }

  cv::Vec4f OnePixelDeveloped(const cv::Vec4f& color, const Adjustments& adjustments) const {
    return Developed(Uniform(1, 1, color), adjustments).at<cv::Vec4f>(0, 0);
  }
};

// The result of a point stage depends neither on a pixel's surroundings nor on its position.
class PointStageExample : public StageExample {
 protected:
  cv::Vec4f Developed(const cv::Vec4f& color, const Adjustments& adjustments) const {
    const cv::Vec4f expected = OnePixelDeveloped(color, adjustments);
    for (const cv::Size size : kExampleSizes) {
      const cv::Mat developed = StageExample::Developed(AmidNoise(color, size), adjustments);
      EXPECT_TRUE(SameBytes(AmidNoise(expected, size, developed), developed)) << color << " in " << size;
    }
    return expected;
  }

 private:
  // `image`, by default noise, with the color on a checkerboard.
  static cv::Mat AmidNoise(const cv::Vec4f& color, cv::Size size, const cv::Mat& image = {}) {
    cv::Mat board = image.empty() ? WorkingNoise(size) : image.clone();
    for (int y = 0; y < size.height; ++y) {
      for (int x = y % 2; x < size.width; x += 2) board.at<cv::Vec4f>(y, x) = color;
    }
    return board;
  }
};

inline auto StageSubjects() {
  return ReferenceAndEngine(reference::DevelopWorkingImage, DevelopWorkingImage);
}

// Every sample, alpha included. A NaN equals nothing.
inline bool SamePixels(const cv::Mat& a, const cv::Mat& b) {
  return a.size() == b.size() && a.type() == b.type() && cv::norm(a, b, cv::NORM_INF) == 0;
}

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_EXAMPLES_STAGE_EXAMPLE_H_
