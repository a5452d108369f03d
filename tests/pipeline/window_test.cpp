#include "pipeline/window.h"

#include <gtest/gtest.h>

namespace lumvik {
namespace {

TEST(Mirrored, IsWhatOpenCvGives) {
  for (const int count : {1, 2, 3, 17}) {
    for (int at = -40; at <= 40; ++at) {
      EXPECT_EQ(Mirrored(at, count), cv::borderInterpolate(at, count, cv::BORDER_REFLECT_101))
          << at << " of " << count;
    }
  }
}

}  // namespace
}  // namespace lumvik
