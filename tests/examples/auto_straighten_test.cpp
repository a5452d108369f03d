// Worked examples of the automatic straightening.
#include "analysis/auto_straighten.h"

#include <gtest/gtest.h>

#include <cmath>

#include "examples/subject.h"
#include "reference/auto_straighten.h"

namespace lumvik {
namespace {

class LeanExample : public test::Example<float(const std::vector<cv::Vec4i>& segments)> {};
class AutoStraightenExample : public test::Example<float(const ImageBuffer& image)> {};

TEST_P(LeanExample, OfOneEdge) {
  EXPECT_NEAR(GetParam().run({{0, 400, 799, 380}}), 1.434F, 1e-3F);
  EXPECT_NEAR(GetParam().run({{799, 380, 0, 400}}), 1.434F, 1e-3F) << "from right to left";
}

TEST_P(LeanExample, EndsAt30Degrees) {
  const auto lean_at = [](double degrees) {
    return GetParam().run({{0, 0, 1000000, cvRound(1000000 * std::tan(degrees * CV_PI / 180))}});
  };
  EXPECT_NEAR(lean_at(30), -30, 1e-4);
  EXPECT_EQ(lean_at(30.5), 0);
  EXPECT_EQ(lean_at(90), 0);
}

TEST_P(LeanExample, CountsLengthsOfMoreThan20) {
  EXPECT_EQ(GetParam().run({{0, 3, 19, 0}}), 0);
  EXPECT_EQ(GetParam().run({{0, 0, 20, 0}, {0, 3, 20, 0}}), GetParam().run({{0, 3, 20, 0}}));
  EXPECT_GT(GetParam().run({{0, 3, 20, 0}}), 8);
}

TEST_P(AutoStraightenExample, UprightStripesReportNothing) {
  cv::Mat image(533, 800, CV_16UC4, cv::Scalar::all(10000));
  for (int x = 100; x < 800; x += 150) image.colRange(x, x + 40).setTo(cv::Scalar::all(50000));
  EXPECT_EQ(GetParam().run(image), 0);
  cv::rotate(image, image, cv::ROTATE_90_CLOCKWISE);
  EXPECT_NEAR(GetParam().run(image), 0, 0.1);
}

INSTANTIATE_TEST_SUITE_P(Subjects, LeanExample, test::ReferenceAndEngine(reference::Vote, LeanOf),
                         test::SubjectName());
INSTANTIATE_TEST_SUITE_P(Subjects, AutoStraightenExample,
                         test::ReferenceAndEngine(reference::AutoStraighten, AutoStraighten),
                         test::SubjectName());

}  // namespace
}  // namespace lumvik
