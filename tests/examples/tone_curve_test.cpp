// Worked examples of the tone curve.
#include "pipeline/stages/tone_curve.h"

#include <gtest/gtest.h>

#include <cmath>

#include "examples/stage_example.h"
#include "reference/tone_curve.h"

namespace lumvik {
namespace {

using test::NeutralAdjustments;

const ToneCurve kReset = {{0, 0}, {1, 1}};

class CurveTableExample : public test::Example<std::vector<float>(const ToneCurve& points)> {
 protected:
  // The table's value at `u`, which must be a multiple of 1 / 65535 to the digits required.
  float At(const ToneCurve& points, double u) const {
    return GetParam().run(points)[static_cast<size_t>(std::lround(u * 65535))];
  }
};

class ToneCurveExample : public test::PointStageExample {};

Adjustments WithCurve(ToneCurveChannel channel, const ToneCurve& points) {
  Adjustments adjustments = NeutralAdjustments();
  adjustments.tone_curves[channel] = points;
  return adjustments;
}

TEST_P(CurveTableExample, FewerThanTwoPointsAreTheIdentity) {
  for (const ToneCurve& points : {ToneCurve{}, ToneCurve{{0.3F, 0.9F}}}) {
    const std::vector<float> table = GetParam().run(points);
    ASSERT_EQ(table.size(), 65536U);
    for (size_t i = 0; i < table.size(); ++i) ASSERT_EQ(table[i], static_cast<float>(i) / 65535.0F);
  }
}

TEST_P(CurveTableExample, ResetCurveIsAMildS) {
  EXPECT_NEAR(At(kReset, 0.25), 0.2031, 5e-5);
  EXPECT_NEAR(At(kReset, 0.5), 0.5, 2e-5);
  EXPECT_NEAR(At(kReset, 0.75), 0.7969, 5e-5);
  EXPECT_EQ(At(kReset, 0), 0.0F);
  EXPECT_EQ(At(kReset, 1), 1.0F);
}

TEST_P(CurveTableExample, InvertedCurveIsTheNegativeOfTheS) {
  const ToneCurve inverted = {{0, 1}, {1, 0}};
  EXPECT_NEAR(At(inverted, 0.25), 0.797, 5e-4);
  EXPECT_NEAR(At(inverted, 0.75), 0.203, 5e-4);
  EXPECT_EQ(At(inverted, 0), 1.0F);
  EXPECT_EQ(At(inverted, 1), 0.0F);
}

TEST_P(CurveTableExample, PassesThroughItsPoints) {
  const ToneCurve points = {{0, 0.1F}, {0.2F, 0.15F}, {0.6F, 0.75F}, {1, 0.95F}};
  for (const CurvePoint& point : points) EXPECT_NEAR(At(points, point.x), point.y, 5e-5);
}

TEST_P(CurveTableExample, InnerSegmentTakesItsNeighbors) {
  // t = 0.5 on the segment from 0.25 to 0.75: (9 (p1 + p2) - p0 - p3) / 16.
  const ToneCurve points = {{0, 0.3F}, {0.25F, 0.1F}, {0.75F, 0.6F}, {1, 0.5F}};
  EXPECT_NEAR(At(points, 0.5), (9 * 0.7 - 0.3 - 0.5) / 16, 5e-5);
}

TEST_P(CurveTableExample, BeyondTheEndsTheEndValuesHold) {
  const ToneCurve points = {{0.25F, 0.2F}, {0.75F, 0.7F}};
  EXPECT_EQ(At(points, 0.1), 0.2F);
  EXPECT_NEAR(At(points, 0.9), 0.7F, 1e-6);
}

TEST_P(CurveTableExample, ValuesAreClamped) {
  const ToneCurve points = {{0, -0.5F}, {1, 1.5F}};
  EXPECT_EQ(At(points, 0.1), 0.0F);
  EXPECT_EQ(At(points, 0.9), 1.0F);
  // The overshoot of a spline between points inside 0..1 is cut off too.
  const ToneCurve overshoot = {{0, 0}, {0.5F, 1}, {1, 1}};
  EXPECT_EQ(At(overshoot, 0.75), 1.0F);
}

TEST_P(CurveTableExample, SameXGivesTheLeftPoint) {
  const ToneCurve vertical = {{0.5F, 0.2F}, {0.5F, 0.8F}};
  EXPECT_EQ(At(vertical, 0.1), 0.2F);
  EXPECT_EQ(At(vertical, 0.9), 0.2F);
}

// A segment of a millionth or less counts as vertical.
TEST_P(CurveTableExample, NarrowestSegment) {
  constexpr float kWidth = 1e-6F;
  EXPECT_EQ(At({{0, 0.2F}, {kWidth, 0.8F}}, 1), 0.2F);
  EXPECT_NEAR(At({{0, 0.2F}, {std::nextafter(kWidth, 1.0F), 0.8F}}, 1), 0.8F, 1e-6);
}

// An input equal to a point's x belongs to the segment that ends there.
TEST_P(CurveTableExample, SegmentsIncludeTheirEnd) {
  constexpr float kX = 32768 / 65535.0F;
  const std::vector<float> table = GetParam().run({{0, 0}, {kX, 0.25F}, {kX, 0.75F}, {1, 1}});
  EXPECT_NEAR(table[32768], 0.25F, 1e-6);
  EXPECT_NEAR(table[32769], 0.75F, 1e-4);
}

TEST_P(CurveTableExample, UnsortedPointsKeepTheirOrder) {
  // 0.8 comes first, so every input up to it takes segment 0, whose width is negative: t is 0.
  const ToneCurve points = {{0.8F, 0.3F}, {0.2F, 0.6F}, {1, 0.9F}};
  EXPECT_EQ(At(points, 0.1), 0.3F);
  EXPECT_NEAR(At(points, 0.2), 0.3F, 1e-3);
  EXPECT_NEAR(At(points, 1), 0.9F, 1e-6);
}

TEST_P(ToneCurveExample, IdentityListsSkipTheStage) {
  Adjustments adjustments = NeutralAdjustments();
  const cv::Vec4f over(1.5F, -0.5F, 0.123456F, 1);
  EXPECT_EQ(Developed(over, adjustments), over);
  adjustments.tone_curves.fill(kReset);
  EXPECT_EQ(Developed(over, adjustments), over);
  adjustments.tone_curves.fill({{0.4F, 0.9F}});
  EXPECT_EQ(Developed(over, adjustments), over);
}

TEST_P(ToneCurveExample, AnyOtherListEnablesIt) {
  const cv::Vec4f over(1.5F, -0.5F, 0.5F, 1.5F);
  for (const ToneCurve& points : {ToneCurve{{0, 0}, {0.5F, 0.5F}, {1, 1}}, ToneCurve{{0, 0}, {1, 0.999F}}}) {
    const cv::Vec4f pixel = Developed(over, WithCurve(kGreenCurve, points));
    EXPECT_EQ(pixel[0], 1.0F);
    EXPECT_EQ(pixel[1], 0.0F);
    EXPECT_EQ(pixel[3], 1.5F) << "alpha is unchanged";
  }
}

TEST_P(ToneCurveExample, IdentityIsExact) {
  const cv::Vec4f over(1.5F, 1.5F, 1.5F, 1);
  for (const ToneCurve& points : {ToneCurve{{0, 0.001F}, {1, 1}}, ToneCurve{{0.001F, 0}, {1, 1}},
                                  ToneCurve{{0, 0}, {0.999F, 1}}, ToneCurve{{0, 0}, {1, 0.999F}}}) {
    for (const ToneCurveChannel channel : {kMasterCurve, kRedCurve, kGreenCurve, kBlueCurve}) {
      EXPECT_LE(Developed(over, WithCurve(channel, points))[1], 1.0F);
    }
  }
}

TEST_P(ToneCurveExample, EachCurveActsOnItsChannel) {
  const ToneCurve negative = {{0, 1}, {1, 0}};
  const cv::Vec4f dark(0.25F, 0.25F, 0.25F, 1);
  const cv::Vec4f red = Developed(dark, WithCurve(kRedCurve, negative));
  EXPECT_NEAR(red[0], 0.797, 5e-4);
  EXPECT_NEAR(red[1], 0.25, 1e-5);
  EXPECT_NEAR(red[2], 0.25, 1e-5);
  const cv::Vec4f green = Developed(dark, WithCurve(kGreenCurve, negative));
  EXPECT_NEAR(green[0], 0.25, 1e-5);
  EXPECT_NEAR(green[1], 0.797, 5e-4);
  const cv::Vec4f blue = Developed(dark, WithCurve(kBlueCurve, negative));
  EXPECT_NEAR(blue[1], 0.25, 1e-5);
  EXPECT_NEAR(blue[2], 0.797, 5e-4);
  const cv::Vec4f master = Developed(dark, WithCurve(kMasterCurve, negative));
  for (int c = 0; c < 3; ++c) EXPECT_NEAR(master[c], 0.797, 5e-4);
}

TEST_P(ToneCurveExample, MasterComesFirst) {
  Adjustments adjustments = WithCurve(kMasterCurve, {{0, 0.5F}, {1, 0.5F}});
  adjustments.tone_curves[kRedCurve] = {{0, 0.2F}, {1, 0.4F}};
  const cv::Vec4f pixel = Developed({0.9F, 0.9F, 0.9F, 1}, adjustments);
  EXPECT_NEAR(pixel[0], 0.3, 1e-5) << "the red curve at 0.5";
  EXPECT_NEAR(pixel[1], 0.5, 1e-5);
}

TEST_P(ToneCurveExample, ResetChannelsBendOnceTheMasterIsActive) {
  Adjustments adjustments = WithCurve(kMasterCurve, {{0, 0.25F}, {1, 0.25F}});
  adjustments.tone_curves[kBlueCurve] = kReset;
  const cv::Vec4f pixel = Developed({0.9F, 0.9F, 0.9F, 1}, adjustments);
  EXPECT_NEAR(pixel[0], 0.25, 1e-5) << "an empty list is the exact identity";
  EXPECT_NEAR(pixel[2], 0.2031, 5e-5);
}

TEST_P(ToneCurveExample, RoundsToTheNearestEntry) {
  const Adjustments adjustments = WithCurve(kRedCurve, {{0, 0}, {1, 0.999F}});
  const auto green = [&](double codes) {
    const auto value = static_cast<float>(codes / 65535);
    return Developed({0, value, 0, 1}, adjustments)[1] * 65535;
  };
  EXPECT_NEAR(green(1000.4), 1000, 1e-2);
  EXPECT_NEAR(green(1000.6), 1001, 1e-2);
}

TEST_P(ToneCurveExample, NanTakesTheFirstEntry) {
  const Adjustments adjustments = WithCurve(kMasterCurve, {{0, 0.4F}, {1, 1}});
  EXPECT_NEAR(Developed({NAN, 1, 1, 1}, adjustments)[0], 0.4, 1e-5);
}

INSTANTIATE_TEST_SUITE_P(Subjects, CurveTableExample,
                         test::ReferenceAndEngine(reference::BuildCurveTable, BuildCurveTable),
                         test::SubjectName());
INSTANTIATE_TEST_SUITE_P(Subjects, ToneCurveExample, test::StageSubjects(), test::SubjectName());

}  // namespace
}  // namespace lumvik
