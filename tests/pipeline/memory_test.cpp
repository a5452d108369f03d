// The memory that a render needs besides its source and its result.
#include <gtest/gtest.h>

#include <opencv2/core.hpp>

#include "pipeline/develop_pipeline.h"
#include "support/counting_allocator.h"
#include "support/random_adjustments.h"
#include "support/test_images.h"

namespace lumvik {
namespace {

constexpr size_t kMegabyte = 1 << 20;

// As wide as a large photograph, and high enough to tell an image from a few rows.
const cv::Size kWide(4096, 700);

// In bytes, of a render into an existing image.
size_t PeakOf(const Adjustments& adjustments, const cv::Mat& source) {
  cv::Mat rendered;
  DevelopPipeline(source, adjustments, rendered);
  const test::CountingAllocator memory;
  DevelopPipeline(source, adjustments, rendered);
  return memory.Peak();
}

TEST(RenderMemory, PointStagesNeedNoImage) {
  const cv::Mat source = test::ResizedPhotograph("cat.jpg", kWide);
  Adjustments a;
  a.exposure = 0.5F;
  a.brightness = 10;
  a.highlights = -30;
  a.blacks = 10;
  a.contrast = 20;
  test::SetToneCurves(a, 1);
  a.saturation = 10;
  test::SetHslBands(a, 15);
  test::SetSplitToning(a, 20);
  a.lens_vignette = 30;
  a.defringe = 30;
  a.vignette_amount = 20;
  EXPECT_LT(PeakOf(a, source), 16 * kMegabyte);
}

TEST(RenderMemory, AreaStagesKeepOnlyTheRowsOfTheirKernels) {
  const cv::Mat source = test::ResizedPhotograph("cat.jpg", kWide);
  Adjustments a;
  a.texture = 20;
  a.nr_luminance = 30;
  a.nr_color = 30;
  a.sharpening_amount = 40;
  EXPECT_LT(PeakOf(a, source), 16 * kMegabyte);
}

TEST(RenderMemory, FlipsACropAndOneTransformNeedNoImage) {
  const cv::Mat source = test::ResizedPhotograph("cat.jpg", kWide);
  Adjustments a = test::NeutralAdjustments();
  a.flip_h = 1;
  a.flip_v = 1;
  a.crop = {0.1F, 0.1F, 0.8F, 0.8F};
  EXPECT_LT(PeakOf(a, source), 16 * kMegabyte);
  for (float Adjustments::*transform : {&Adjustments::distortion, &Adjustments::ca_correction,
                                        &Adjustments::rotation, &Adjustments::perspective_h}) {
    Adjustments alone = test::NeutralAdjustments();
    alone.*transform = 2;
    EXPECT_LT(PeakOf(alone, source), 16 * kMegabyte);
  }
}

TEST(RenderMemory, PointStagesAndStraighteningNeedNoImage) {
  const cv::Mat source = test::ResizedPhotograph("cat.jpg", kWide);
  Adjustments a;
  a.exposure = 0.5F;
  a.flip_h = 1;
  a.rotation = 1.5F;
  a.crop = {0.1F, 0.1F, 0.8F, 0.8F};
  EXPECT_LT(PeakOf(a, source), 16 * kMegabyte);
}

TEST(RenderMemory, EverythingTakesAtMostThreeWorkingImages) {
  const cv::Mat source = test::ResizedPhotograph("cat.jpg", {1000, 667});
  Adjustments a;
  test::SetEverything(a);
  EXPECT_LT(PeakOf(a, source), 3 * source.total() * sizeof(cv::Vec4f));
}

}  // namespace
}  // namespace lumvik
