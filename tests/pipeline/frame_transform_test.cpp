#include "pipeline/frame_transform.h"

#include <gtest/gtest.h>

#include <cmath>

#include "pipeline/bilinear_sampler.h"
#include "pipeline/packed_rows.h"
#include "pipeline/row_steps.h"
#include "pipeline/stages/geometry.h"
#include "pipeline/stages/lens_geometry.h"
#include "support/instruction_sets.h"
#include "support/test_images.h"

namespace lumvik {
namespace {

cv::Mat StoredAfter(const RowSource& source, const RowSteps& steps) {
  cv::Mat stored(SizeAfter(source.size, steps), CV_32FC4);
  RunRowSteps(source, steps, StoreIn(stored));
  return stored;
}

// Moves pixels up, down and aside, by up to the size of the image and beyond its edges.
FrameTransform Waves(cv::Size frame) {
  const auto locate = [frame](const RowPart& part, SamplePositions& positions) {
    const float dx = 0.4F * static_cast<float>(frame.width) * std::sin(0.05F * static_cast<float>(part.y));
    for (int i = 0; i < part.columns; ++i) {
      const auto x = static_cast<float>(part.x + i);
      const float dy = 1.2F * static_cast<float>(frame.height) * std::sin(0.03F * x);
      positions.x[i] = NearestPosition((x + dx) * kPositionsPerPixel);
      positions.y[i] = NearestPosition((static_cast<float>(part.y) + dy) * kPositionsPerPixel);
    }
  };
  return BilinearSampling(frame, locate);
}

std::vector<cv::Size> TransformedSizes() {
  std::vector<cv::Size> sizes = test::OddSizes();
  sizes.emplace_back(700, 90);
  sizes.emplace_back(90, 300);
  return sizes;
}

TEST(StreamedFrame, ATileThatIsTooSmallGivesTheSameBytes) {
  for (const cv::Size size : TransformedSizes()) {
    const cv::Mat image = test::NoiseImage(size, 4);
    const cv::Mat expected = StoredAfter(Transformed(image, Waves(size)), {});
    for (const int rows : {1, 5, 40}) {
      EXPECT_TRUE(test::SameBytes(StoredAfter(RowsOf(image), {StreamedFrame{Waves(size), rows}}), expected))
          << size << ' ' << rows;
    }
  }
}

TEST(StreamedFrame, SeesTheStepsBeforeIt) {
  const RowTransform halve = {[](const RowPart& part) {
    for (int i = 0; i < part.columns; ++i) part.green[i] *= 0.5F;
  }};
  for (const cv::Size size : TransformedSizes()) {
    const cv::Mat image = test::NoiseImage(size, 6);
    const FrameView flipped = Flip(size, true, true);
    const FrameTransform rotation = Rotation(size, 1.5F);
    const cv::Mat before = StoredAfter(RowsOf(image), {halve, flipped});
    const cv::Mat expected = StoredAfter(Transformed(before, rotation), {flipped});
    EXPECT_TRUE(test::SameBytes(
        StoredAfter(RowsOf(image), {halve, flipped, StreamedFrame{rotation, 20}, flipped}), expected))
        << size;
  }
}

TEST(StreamedFrame, TwoInARowGiveTheBytesOfTwoPasses) {
  for (const cv::Size size : TransformedSizes()) {
    const cv::Mat image = test::NoiseImage(size, 7);
    const FrameTransform aberration = AberrationCorrection(size, 400);
    const FrameTransform perspective = Perspective(size, 20, -30);
    const cv::Mat corrected = StoredAfter(Transformed(image, aberration), {});
    const cv::Mat expected = StoredAfter(Transformed(corrected, perspective), {});
    EXPECT_TRUE(test::SameBytes(
        StoredAfter(RowsOf(image), {StreamedFrame{aberration, 8}, StreamedFrame{perspective, 16}}), expected))
        << size;
  }
}

// The three sources of a pixel are further apart than a tile is wide.
TEST(Streamed, RefusesAnAberrationAcrossAWideFrame) {
  const cv::Size frame(3000, 16);
  EXPECT_FALSE(Streamed(AberrationCorrection(frame, 2e4F), frame));
  EXPECT_TRUE(Streamed(AberrationCorrection(frame, 1000), frame));
}

TEST(Streamed, TakesTransformsThatReadFewRowsFromTopToBottom) {
  const cv::Size frame(2000, 1333);
  for (const float degrees : {0.3F, -2.0F, 4.0F})
    EXPECT_TRUE(Streamed(Rotation(frame, degrees), frame)) << degrees;
  for (const float degrees : {30.0F, 90.0F, 180.0F}) EXPECT_FALSE(Streamed(Rotation(frame, degrees), frame));
  EXPECT_TRUE(Streamed(AberrationCorrection(frame, 100), frame));
  EXPECT_TRUE(Streamed(DistortionCorrection(frame, 10), frame));
  EXPECT_TRUE(Streamed(Perspective(frame, 10, 0), frame));
}

TEST(Transformed, GivesTheSameBytesFromEitherTypeOfImage) {
  for (const cv::Size size : TransformedSizes()) {
    const cv::Mat image = test::NoiseImage(size, 5);
    const cv::Mat working = StoredAfter(RowsOf(image), {});
    for (const FrameTransform& transform : {Waves(size), AberrationCorrection(size, 100)}) {
      const cv::Mat expected = StoredAfter(Transformed(working, transform), {});
      test::WithEachInstructionSet([&] {
        EXPECT_TRUE(test::SameBytes(StoredAfter(Transformed(image, transform), {}), expected)) << size;
        EXPECT_TRUE(test::SameBytes(StoredAfter(Transformed(working, transform), {}), expected)) << size;
      });
    }
  }
}

}  // namespace
}  // namespace lumvik
