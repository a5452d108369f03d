// lumvik_get_histogram: when it renders, and its four arrays.
#include "reference/histogram.h"

#include <gmock/gmock.h>

#include <array>
#include <numeric>

#include "api_test.h"

namespace lumvik::test {
namespace {

using ::testing::Each;
using ::testing::ElementsAreArray;

constexpr uint32_t kUntouched = 123456;

struct Arrays {
  Arrays() {
    for (Histogram& array : all) array.fill(kUntouched);
  }
  std::array<Histogram, 4> all{};
  int Fill(EngineContext* context) {
    return lumvik_get_histogram(context, all[0].data(), all[1].data(), all[2].data(), all[3].data());
  }
};

class HistogramTest : public ApiTest {
 protected:
  void ExpectOfRender(const Arrays& arrays) const {
    const Histograms expected = reference::CountLevels(ctx()->rendered);
    EXPECT_THAT(arrays.all[0], ElementsAreArray(expected.red));
    EXPECT_THAT(arrays.all[1], ElementsAreArray(expected.green));
    EXPECT_THAT(arrays.all[2], ElementsAreArray(expected.blue));
    EXPECT_THAT(arrays.all[3], ElementsAreArray(expected.luminance));
  }
};

TEST_F(HistogramTest, CountsTheRenderAndMakesItCurrent) {
  LoadNeutral();
  lumvik_set_exposure(ctx(), 0.5F);
  Arrays arrays;
  ASSERT_EQ(arrays.Fill(ctx()), LUMVIK_OK);
  EXPECT_TRUE(ctx()->render_valid);
  ExpectOfRender(arrays);
  for (const Histogram& array : arrays.all)
    EXPECT_EQ(std::accumulate(array.begin(), array.end(), 0), 48 * 32);
}

TEST_F(HistogramTest, EachArrayCountsItsChannel) {
  const std::string path = WritePicture("flat.png", cv::Mat(8, 8, CV_8UC3, cv::Scalar(30, 20, 10)));
  ASSERT_EQ(lumvik_load_arw(ctx(), path.c_str(), 1), LUMVIK_OK);
  lumvik_set_temperature(ctx(), 6500);
  Arrays arrays;
  ASSERT_EQ(arrays.Fill(ctx()), LUMVIK_OK);
  EXPECT_EQ(arrays.all[0][10], 64U);
  EXPECT_EQ(arrays.all[1][20], 64U);
  EXPECT_EQ(arrays.all[2][30], 64U);
  EXPECT_EQ(arrays.all[3][19], 64U);
}

TEST_F(HistogramTest, AfterASetterItStillCountsTheLastRender) {
  LoadNeutral();
  Arrays before;
  ASSERT_EQ(before.Fill(ctx()), LUMVIK_OK);
  lumvik_set_exposure(ctx(), 1);
  Arrays after;
  ASSERT_EQ(after.Fill(ctx()), LUMVIK_OK);
  EXPECT_EQ(after.all, before.all);
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  ASSERT_EQ(after.Fill(ctx()), LUMVIK_OK);
  EXPECT_NE(after.all, before.all);
  ExpectOfRender(after);
}

TEST_F(HistogramTest, AStaleRenderIsRenderedAgain) {
  LoadNeutral();
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  Arrays neutral;
  ASSERT_EQ(neutral.Fill(ctx()), LUMVIK_OK);
  lumvik_reset_adjustments(ctx());
  Arrays arrays;
  ASSERT_EQ(arrays.Fill(ctx()), LUMVIK_OK);
  EXPECT_NE(arrays.all, neutral.all) << "the default temperature is not neutral";
  ExpectOfRender(arrays);
}

TEST_F(HistogramTest, WithoutAnImageItFailsAndWritesNothing) {
  Arrays arrays;
  EXPECT_EQ(arrays.Fill(ctx()), kFailed);
  EXPECT_EQ(LastError(), kNoImage);
  for (const Histogram& array : arrays.all) EXPECT_THAT(array, Each(kUntouched));
}

TEST_F(HistogramTest, ANullArgumentStoresNoTextAndDoesNotRender) {
  LoadNeutral();
  ctx()->last_error = "another";
  Arrays a;
  uint32_t* const pointers[] = {a.all[0].data(), a.all[1].data(), a.all[2].data(), a.all[3].data()};
  EXPECT_EQ(a.Fill(nullptr), kFailed);
  for (int null = 0; null < 4; ++null) {
    const auto at = [&](int i) { return i == null ? nullptr : pointers[i]; };
    EXPECT_EQ(lumvik_get_histogram(ctx(), at(0), at(1), at(2), at(3)), kFailed) << null;
  }
  EXPECT_EQ(LastError(), "another");
  EXPECT_FALSE(ctx()->render_valid);
  for (const Histogram& array : a.all) EXPECT_THAT(array, Each(kUntouched));
}

TEST_F(HistogramTest, SettingsThatThrowLeaveTheArraysUntouched) {
  LoadNeutral();
  lumvik_set_sharpening_amount(ctx(), 50);
  lumvik_set_sharpening_radius(ctx(), 0);
  Arrays arrays;
  EXPECT_THROW(arrays.Fill(ctx()), cv::Exception);
  EXPECT_FALSE(ctx()->render_valid);
  for (const Histogram& array : arrays.all) EXPECT_THAT(array, Each(kUntouched));
}

}  // namespace
}  // namespace lumvik::test
