// Worked examples of the automatic crop.
#include "analysis/auto_crop.h"

#include <gtest/gtest.h>

#include "examples/subject.h"
#include "reference/auto_crop.h"

namespace lumvik {
namespace {

using CropSearch = CropRectangle(const cv::Mat& image, float aspect, float margin);

class BestCropExample : public test::Example<CropSearch> {};
class FindCropExample : public test::Example<CropSearch> {};
class ThirdsScoreExample : public test::Example<float(const cv::Mat& interest, const cv::Rect& candidate)> {};

void ExpectWholeFrame(const CropRectangle& crop) {
  EXPECT_EQ(crop.x, 0);
  EXPECT_EQ(crop.y, 0);
  EXPECT_EQ(crop.w, 1);
  EXPECT_EQ(crop.h, 1);
}

TEST_P(BestCropExample, OfALandscapeTheFullScaleDoesNotFit) {
  const CropRectangle crop = GetParam().run(cv::Mat::zeros(341, 512, CV_32F), 1.5F, 0.02F);
  EXPECT_EQ(crop.x, 10 / 512.0F);
  EXPECT_EQ(crop.y, 6 / 341.0F);
  EXPECT_EQ(crop.w, 484 / 512.0F);
  EXPECT_EQ(crop.h, 323 / 341.0F);
}

TEST_P(BestCropExample, OfAPortraitIsALandscapeBand) {
  const CropRectangle crop = GetParam().run(cv::Mat::zeros(768, 512, CV_32F), 1.5F, 0.02F);
  EXPECT_EQ(crop.w, 486 / 512.0F);
  EXPECT_EQ(crop.h, 324 / 768.0F);
}

TEST_P(BestCropExample, WithoutRoomKeepsTheWholeFrame) {
  ExpectWholeFrame(GetParam().run(cv::Mat::zeros(341, 512, CV_32F), 1.5F, 0.2F));
}

TEST_P(FindCropExample, OfAnEmptyImageKeepsTheWholeFrame) {
  ExpectWholeFrame(GetParam().run({}, 1.5F, 0.02F));
}

TEST_P(ThirdsScoreExample, SumsFourSquares) {
  EXPECT_EQ(GetParam().run(cv::Mat::ones(100, 100, CV_32F), cv::Rect(10, 10, 60, 40)), 64);
}

float ReferenceThirdsScore(const cv::Mat& interest, const cv::Rect& candidate) {
  return reference::ThirdsScore(interest, candidate.x, candidate.y, candidate.width, candidate.height);
}

float EngineThirdsScore(const cv::Mat& interest, const cv::Rect& candidate) {
  return thirds_score(RectangleSums(interest), candidate);
}

INSTANTIATE_TEST_SUITE_P(Subjects, BestCropExample, test::ReferenceAndEngine(reference::BestCrop, BestCrop),
                         test::SubjectName());
INSTANTIATE_TEST_SUITE_P(Subjects, FindCropExample, test::ReferenceAndEngine(reference::FindCrop, find_crop),
                         test::SubjectName());
INSTANTIATE_TEST_SUITE_P(Subjects, ThirdsScoreExample,
                         test::ReferenceAndEngine(ReferenceThirdsScore, EngineThirdsScore),
                         test::SubjectName());

}  // namespace
}  // namespace lumvik
