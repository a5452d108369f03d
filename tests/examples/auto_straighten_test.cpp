#include "reference/auto_straighten.h"

#include <gtest/gtest.h>

#include <cmath>

namespace lumvik::reference {
namespace {

TEST(Vote, OfOneEdge) {
  EXPECT_NEAR(Vote({{0, 400, 799, 380}}), 1.434F, 1e-3F);
  EXPECT_NEAR(Vote({{799, 380, 0, 400}}), 1.434F, 1e-3F) << "from right to left";
}

TEST(Vote, EndsAt30Degrees) {
  const auto vote_at = [](double degrees) {
    return Vote({{0, 0, 1000000, cvRound(1000000 * std::tan(degrees * CV_PI / 180))}});
  };
  EXPECT_NEAR(vote_at(30), -30, 1e-4);
  EXPECT_EQ(vote_at(30.5), 0);
  EXPECT_EQ(vote_at(90), 0);
}

TEST(Vote, CountsLengthsOfMoreThan20) {
  EXPECT_EQ(Vote({{0, 3, 19, 0}}), 0);
  EXPECT_GT(Vote({{0, 3, 20, 0}}), 8);
}

TEST(AutoStraighten, UprightStripesReportNothing) {
  cv::Mat image(533, 800, CV_16UC4, cv::Scalar::all(10000));
  for (int x = 100; x < 800; x += 150) image.colRange(x, x + 40).setTo(cv::Scalar::all(50000));
  EXPECT_EQ(AutoStraighten(image), 0);
  cv::rotate(image, image, cv::ROTATE_90_CLOCKWISE);
  EXPECT_NEAR(AutoStraighten(image), 0, 0.1);
}

}  // namespace
}  // namespace lumvik::reference
