// lumvik.hpp and the engine's own headers can be included together, although both define these names.
#include <gtest/gtest.h>

#include <type_traits>

#include "analysis/histogram.h"
#include "base/adjustments.h"
#include "lumvik.hpp"

namespace lumvik::test {
namespace {

TEST(InternalNamesTest, DoNotCollideWithTheCppInterface) {
  EXPECT_FALSE((std::is_same_v<Histogram, engine::Histogram>));
  EXPECT_FALSE((std::is_same_v<CurvePoint, engine::CurvePoint>));
}

}  // namespace
}  // namespace lumvik::test
