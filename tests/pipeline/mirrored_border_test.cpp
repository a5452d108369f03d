#include "pipeline/mirrored_border.h"

#include <gtest/gtest.h>

#include <opencv2/core.hpp>

namespace lumvik {
namespace {

TEST(MirroredBorder, PositionsAreThoseOfOpenCv) {
  for (const int count : {1, 2, 3, 7, 64}) {
    for (int at = -300; at <= 300; ++at) {
      EXPECT_EQ(Mirrored(at, count), cv::borderInterpolate(at, count, cv::BORDER_REFLECT_101)) << at << count;
      EXPECT_EQ(MirroredAtEdge(at, count), cv::borderInterpolate(at, count, cv::BORDER_REFLECT))
          << at << ' ' << count;
    }
  }
}

TEST(MirroredBorder, FarPositionsAreMirroredTooAndWithoutALoop) {
  EXPECT_EQ(Mirrored(2'000'000'001, 3), 1);
  EXPECT_EQ(Mirrored(-2'000'000'000, 3), 0);
  EXPECT_EQ(MirroredAtEdge(2'000'000'005, 3), 1);
  EXPECT_EQ(MirroredAtEdge(-2'000'000'000, 1), 0);
}

}  // namespace
}  // namespace lumvik
