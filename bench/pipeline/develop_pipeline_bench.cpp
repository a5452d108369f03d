// Whole renders: each stage alone and all together, beside the plain version of the pipeline.
#include "alternating.h"
#include "pipeline/develop_pipeline.h"
#include "reference/develop_pipeline.h"
#include "support/test_images.h"

namespace lumvik::bench {
namespace {

Adjustments With(float Adjustments::*field, float value) {
  Adjustments adjustments;
  adjustments.temperature = 6500;
  adjustments.*field = value;
  return adjustments;
}

Adjustments Everything() {
  Adjustments adjustments;
  adjustments.tint = 10;
  adjustments.exposure = 0.5F;
  adjustments.brightness = 15;
  adjustments.contrast = 20;
  return adjustments;
}

Comparison Render(cv::Size size, const Adjustments& adjustments) {
  const cv::Mat source = test::NoiseImage(size, 1);
  const auto rendered = std::make_shared<cv::Mat>();
  const auto bytes = static_cast<int64_t>(source.total() * source.elemSize());
  return {[=] { DevelopPipeline(source, adjustments, *rendered); },
          [=] { reference::DevelopPipeline(source, adjustments); }, static_cast<int64_t>(source.total()),
          2 * bytes};
}

const bool kRegistered = [] {
  for (const cv::Size size : {cv::Size(2000, 1333), cv::Size(4096, 2731)}) {
    const auto add = [size](const std::string& name, const Adjustments& adjustments) {
      RegisterComparison("render/" + name + "/" + std::to_string(size.width),
                         [=] { return Render(size, adjustments); });
    };
    add("default", Adjustments());
    add("white_balance", With(&Adjustments::temperature, 5000));
    add("exposure", With(&Adjustments::exposure, 0.5F));
    add("brightness", With(&Adjustments::brightness, 20));
    add("contrast", With(&Adjustments::contrast, 20));
    add("everything", Everything());
  }
  return true;
}();

}  // namespace
}  // namespace lumvik::bench
