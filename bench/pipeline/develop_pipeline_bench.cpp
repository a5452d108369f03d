// Full renders: each stage alone, typical settings and all stages, against the reference pipeline.
#include <memory>

#include "alternating.h"
#include "base/large_image.h"
#include "instruction_set.h"
#include "pipeline/develop_pipeline.h"
#include "reference/develop_pipeline.h"
#include "support/random_adjustments.h"
#include "support/test_images.h"

namespace lumvik::bench {
namespace {

struct Setting {
  const char* name;
  void (*set)(Adjustments&);
};

constexpr Setting kSettings[] = {
    {"default", [](Adjustments& a) { a = Adjustments(); }},
    {"typical", test::SetTypical},
    {"everything", test::SetEverything},
    {"white_balance", [](Adjustments& a) { a.temperature = 5000; }},
    {"exposure", [](Adjustments& a) { a.exposure = 0.5F; }},
    {"brightness", [](Adjustments& a) { a.brightness = 20; }},
    {"highlights_shadows", [](Adjustments& a) { a.highlights = -30, a.shadows = 30; }},
    {"whites_blacks", [](Adjustments& a) { a.whites = -20, a.blacks = 20; }},
    {"contrast", [](Adjustments& a) { a.contrast = 20; }},
    {"tone_curve", [](Adjustments& a) { test::SetToneCurves(a, 1); }},
    {"clarity", [](Adjustments& a) { a.clarity = 50; }},
    {"texture", [](Adjustments& a) { a.texture = 50; }},
    {"dehaze", [](Adjustments& a) { a.dehaze = 40; }},
    {"saturation_vibrance", [](Adjustments& a) { a.saturation = 10, a.vibrance = 30; }},
    {"hsl_bands", [](Adjustments& a) { test::SetHslBands(a, 30); }},
    {"split_toning", [](Adjustments& a) { test::SetSplitToning(a, 30); }},
    {"noise_reduction", [](Adjustments& a) { a.nr_luminance = 40, a.nr_color = 40; }},
    {"sharpening", [](Adjustments& a) { a.sharpening_amount = 40; }},
    {"distortion", [](Adjustments& a) { a.distortion = 20; }},
    {"ca_correction", [](Adjustments& a) { a.ca_correction = 30; }},
    {"lens_vignette", [](Adjustments& a) { a.lens_vignette = 40; }},
    {"defringe", [](Adjustments& a) { a.defringe = 40; }},
    {"flips", [](Adjustments& a) { a.flip_h = 1, a.flip_v = 1; }},
    {"flip_and_crop",
     [](Adjustments& a) {
       a.flip_h = 1, a.crop = {0.1F, 0.1F, 0.8F, 0.8F};
     }},
    {"rotation", [](Adjustments& a) { a.rotation = 2; }},
    {"perspective", [](Adjustments& a) { a.perspective_h = 10; }},
    {"geometry",
     [](Adjustments& a) {
       a.rotation = 2, a.perspective_h = 10, a.crop = {0.1F, 0.1F, 0.8F, 0.8F};
     }},
    {"vignette", [](Adjustments& a) { a.vignette_amount = 40; }},
    {"grain", [](Adjustments& a) { a.grain_amount = 30; }},
};

Comparison Render(cv::Size size, const Setting& setting) {
  const cv::Mat source = test::ResizedPhotograph("cat.jpg", size);
  Adjustments adjustments = test::NeutralAdjustments();
  setting.set(adjustments);
  const auto rendered = std::make_shared<cv::Mat>();
  const auto bytes = static_cast<int64_t>(source.total() * source.elemSize());
  return {
      [=, reuse = std::make_shared<LargeImageReuse>()] { DevelopPipeline(source, adjustments, *rendered); },
      [=] { reference::DevelopPipeline(source, adjustments); }, static_cast<int64_t>(source.total()),
      2 * bytes};
}

const bool kRegistered = [] {
  const cv::Size small(2000, 1333);
  for (const NarrowerSet& narrower : kNarrowerSets) {
    RegisterComparison(std::string("instruction_set/") + narrower.name, [narrower, small] {
      return WithInstructionSet(narrower.set, Render(small, {"typical", test::SetTypical}));
    });
  }
  for (const cv::Size size : {small, cv::Size(4096, 2731)}) {
    for (const Setting& setting : kSettings) {
      RegisterComparison(std::string("render/") + setting.name + "/" + std::to_string(size.width),
                         [size, setting] { return Render(size, setting); });
    }
  }
  return true;
}();

}  // namespace
}  // namespace lumvik::bench
