#include "reference/auto_crop.h"

#include <gtest/gtest.h>

namespace lumvik::reference {
namespace {

TEST(AutoCrop, OfALandscapeTheFullScaleDoesNotFit) {
  const CropRectangle crop = BestCrop(cv::Mat::zeros(341, 512, CV_32F), 1.5F, 0.02F);
  EXPECT_EQ(crop.x, 10 / 512.0F);
  EXPECT_EQ(crop.y, 6 / 341.0F);
  EXPECT_EQ(crop.w, 484 / 512.0F);
  EXPECT_EQ(crop.h, 323 / 341.0F);
}

TEST(AutoCrop, OfAPortraitIsALandscapeBand) {
  const CropRectangle crop = BestCrop(cv::Mat::zeros(768, 512, CV_32F), 1.5F, 0.02F);
  EXPECT_EQ(crop.w, 486 / 512.0F);
  EXPECT_EQ(crop.h, 324 / 768.0F);
}

TEST(AutoCrop, WithoutRoomOrImageKeepsTheWholeFrame) {
  for (const CropRectangle& crop :
       {FindCrop({}, 1.5F, 0.02F), BestCrop(cv::Mat::zeros(341, 512, CV_32F), 1.5F, 0.2F)}) {
    EXPECT_EQ(crop.x, 0);
    EXPECT_EQ(crop.y, 0);
    EXPECT_EQ(crop.w, 1);
    EXPECT_EQ(crop.h, 1);
  }
}

TEST(ThirdsScore, SumsFourSquares) {
  EXPECT_EQ(ThirdsScore(cv::Mat::ones(100, 100, CV_32F), 10, 10, 60, 40), 64);
}

}  // namespace
}  // namespace lumvik::reference
