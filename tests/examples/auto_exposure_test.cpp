// Worked examples of the automatic exposure.
#include "analysis/auto_exposure.h"

#include <gtest/gtest.h>

#include "examples/subject.h"
#include "reference/auto_exposure.h"

namespace lumvik {
namespace {

class HistogramExposureExample : public test::Example<float(const Histogram& luminance)> {};

class AutoExposureExample : public test::Example<float(const ImageBuffer& image)> {
 protected:
  float OfUniform(double level) const {
    return GetParam().run(ImageBuffer(9, 5, CV_16UC4, cv::Scalar::all(level * 65535)));
  }
};

TEST_P(AutoExposureExample, OfUniformImages) {
  EXPECT_NEAR(OfUniform(0.45), -0.0011F, 5e-5F);
  EXPECT_EQ(OfUniform(0), 1.0F);
  EXPECT_EQ(OfUniform(1), -0.25F);
  EXPECT_NEAR(OfUniform(0.25), 0.2948F, 5e-4F);
}

TEST_P(HistogramExposureExample, WithoutPixelsTheMedianIsInTheMiddle) {
  EXPECT_NEAR(GetParam().run({}), -0.0532F, 5e-5F);
}

INSTANTIATE_TEST_SUITE_P(Subjects, AutoExposureExample,
                         test::ReferenceAndEngine(reference::AutoExposure, AutoExposure),
                         test::SubjectName());
INSTANTIATE_TEST_SUITE_P(Subjects, HistogramExposureExample,
                         test::ReferenceAndEngine(reference::ExposureFromHistogram, exposure_from_histogram),
                         test::SubjectName());

}  // namespace
}  // namespace lumvik
