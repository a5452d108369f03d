#include "analysis/arc_tangent.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace lumvik {
namespace {

constexpr int kMaxDifference = 800;  // of the columns of two points in the image that is analyzed

template <typename Check>
void ForAllDifferences(const Check& check) {
  for (int dx = -kMaxDifference; dx <= kMaxDifference; ++dx) {
    for (int dy = -kMaxDifference; dy <= kMaxDifference; ++dy) {
      check(static_cast<float>(dy), static_cast<float>(dx));
    }
  }
}

TEST(ArcTangent, IsWithinALastPlaceOfTheExactValue) {
  constexpr double kMaxError = 1.4e-7;  // relative
  double largest = 0;
  ForAllDifferences([&](float y, float x) {
    const double exact = std::atan2(static_cast<double>(y), static_cast<double>(x));
    const double error = std::fabs(static_cast<double>(ArcTangent(y, x)) - exact);
    if (error > 0) largest = std::max(largest, error / std::fabs(exact));
  });
  EXPECT_LT(largest, kMaxError);
}

// Computed with atan2f of glibc 2.36.
TEST(ArcTangent, HasTheBitsOfGlibc) {
  constexpr uint64_t kOfGlibc = 10516493165227106114U;
  uint64_t digest = 0;
  ForAllDifferences([&](float y, float x) {
    const float angle = ArcTangent(y, x);
    uint32_t bits = 0;
    std::memcpy(&bits, &angle, sizeof(bits));
    digest = digest * 6364136223846793005 + bits;
  });
  EXPECT_EQ(digest, kOfGlibc);
}

TEST(ArcTangent, OfLongSegments) {
  EXPECT_EQ(ArcTangent(32767, 1), 1.57076585F);
  EXPECT_EQ(ArcTangent(-32767, 1), -1.57076585F);
  EXPECT_EQ(ArcTangent(1, 1000000), 1e-6F);
}

}  // namespace
}  // namespace lumvik
