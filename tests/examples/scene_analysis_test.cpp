// Worked examples of the scene analysis.
#include "analysis/scene_analysis.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "examples/subject.h"
#include "reference/scene_analysis.h"

namespace lumvik {
namespace {

class AnalyzeSceneExample : public test::Example<Suggestions(const ImageBuffer& image)> {
 protected:
  // Of mid gray with `rows` of its 100 rows at a level of 0..1.
  Suggestions OfRows(int rows, double level) const {
    cv::Mat image(100, 512, CV_16UC4, cv::Scalar::all(32768));
    image.rowRange(0, rows).setTo(cv::Scalar::all(level * 65535));
    return GetParam().run(image);
  }
};

TEST_P(AnalyzeSceneExample, OfAUniformGray) {
  EXPECT_THAT(OfRows(0, 0),
              testing::ElementsAre(testing::FloatNear(-0.0553F, 5e-4F), 0, 22, 0, 15, 0, 5, 6500, 0, 5, 16, 6,
                                   0, 0, 35, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0));
}

TEST_P(AnalyzeSceneExample, ClippedPixels) {
  EXPECT_EQ(OfRows(1, 1)[3], 0);
  EXPECT_EQ(OfRows(2, 1)[3], -10);
  EXPECT_EQ(OfRows(10, 1)[3], -40);
  EXPECT_EQ(OfRows(5, 0)[4], 20);
  EXPECT_EQ(OfRows(10, 0)[4], 25);
}

INSTANTIATE_TEST_SUITE_P(Subjects, AnalyzeSceneExample,
                         test::ReferenceAndEngine(reference::AnalyzeScene, analyze_scene),
                         test::SubjectName());

}  // namespace
}  // namespace lumvik
