#include "pipeline/develop_pipeline.h"

#include <cmath>
#include <utility>
#include <vector>

#include "image/large_image.h"
#include "pipeline/brightness.h"
#include "pipeline/clarity_texture.h"
#include "pipeline/contrast.h"
#include "pipeline/defringe.h"
#include "pipeline/dehaze.h"
#include "pipeline/exposure.h"
#include "pipeline/film_grain.h"
#include "pipeline/geometry.h"
#include "pipeline/highlights_shadows.h"
#include "pipeline/hsl_bands.h"
#include "pipeline/lens_geometry.h"
#include "pipeline/lens_vignetting.h"
#include "pipeline/noise_reduction.h"
#include "pipeline/post_crop_vignette.h"
#include "pipeline/row_kernel.h"
#include "pipeline/saturation_vibrance.h"
#include "pipeline/sharpening.h"
#include "pipeline/split_toning.h"
#include "pipeline/tone_curve.h"
#include "pipeline/white_balance.h"
#include "pipeline/whites_blacks.h"

namespace lumvik {
namespace {

using A = Adjustments;

// Neither the default temperature (5500) nor the white balance's own reference (6504), deliberately.
constexpr float kNeutralTemperature = 6500.0F;
constexpr float kTemperatureTolerance = 1.0F;
constexpr float kTintTolerance = 0.1F;

// Negated so that a NaN setting is never taken for neutral.
bool WakesWhiteBalance(const A& a) {
  return !(std::fabs(a.temperature - kNeutralTemperature) < kTemperatureTolerance &&
           std::fabs(a.tint) < kTintTolerance);
}

bool WakesGeometry(const A& a) {
  return a.flip_h != 0 || a.flip_v != 0 || a.rotation != 0 || a.perspective_h != 0 || a.perspective_v != 0 ||
         (a.crop.w > 0 && a.crop.h > 0);
}

// A step either makes a kernel for the rows of a frame, when each pixel depends on itself alone (no kernel:
// it sleeps), or is awake or not and changes the whole working image, its size included.
struct Stage {
  const char* name;
  RowKernel (*point)(const A&, cv::Size frame);
  bool (*wakes)(const A&);
  void (*whole)(const A&, cv::Mat& working);
};

constexpr Stage PointStage(const char* name, RowKernel (*point)(const A&, cv::Size)) {
  return {name, point, nullptr, nullptr};
}

constexpr Stage FrameStage(const char* name, bool (*wakes)(const A&), void (*whole)(const A&, cv::Mat&)) {
  return {name, nullptr, wakes, whole};
}

// clang-format off: one row a stage, in the order of execution
constexpr Stage kStages[] = {
    PointStage("white balance",
               [](const A& a, cv::Size) {
                 return WakesWhiteBalance(a) ? WhiteBalance(a.temperature, a.tint) : RowKernel();
               }),
    PointStage("exposure", [](const A& a, cv::Size) { return Exposure(a.exposure); }),
    PointStage("brightness", [](const A& a, cv::Size) { return Brightness(a.brightness); }),
    PointStage("highlights, shadows",
               [](const A& a, cv::Size) { return HighlightsShadows(a.highlights, a.shadows); }),
    PointStage("whites, blacks", [](const A& a, cv::Size) { return WhitesBlacks(a.whites, a.blacks); }),
    PointStage("contrast", [](const A& a, cv::Size) { return Contrast(a.contrast); }),
    PointStage("tone curve", [](const A& a, cv::Size) { return ToneCurveStage(a.tone_curves); }),
    FrameStage(
        "clarity, texture", [](const A& a) { return a.clarity != 0 || a.texture != 0; },
        [](const A& a, cv::Mat& working) { ClarityTexture(working, a.clarity, a.texture); }),
    FrameStage(
        "dehaze", [](const A& a) { return !(a.dehaze <= 0); },
        [](const A& a, cv::Mat& working) { Dehaze(working, a.dehaze); }),
    PointStage("saturation, vibrance",
               [](const A& a, cv::Size) { return SaturationVibrance(a.saturation, a.vibrance); }),
    PointStage("HSL bands", [](const A& a, cv::Size) { return HslBands(a.hsl); }),
    PointStage("split toning", [](const A& a, cv::Size) { return SplitToning(a.split_toning); }),
    FrameStage(
        "noise reduction", [](const A& a) { return a.nr_luminance > 0 || a.nr_color > 0; },
        [](const A& a, cv::Mat& working) { NoiseReduction(working, a.nr_luminance, a.nr_color); }),
    FrameStage(
        "sharpening", [](const A& a) { return !(a.sharpening_amount <= 0); },
        [](const A& a, cv::Mat& working) {
          Sharpening(working, a.sharpening_amount, a.sharpening_radius, a.sharpening_threshold);
        }),
    FrameStage(
        "lens: distortion", [](const A& a) { return a.distortion != 0; },
        [](const A& a, cv::Mat& working) { CorrectDistortion(working, a.distortion); }),
    FrameStage(
        "lens: chromatic aberration", [](const A& a) { return a.ca_correction > 0; },
        [](const A& a, cv::Mat& working) { CorrectChromaticAberration(working, a.ca_correction); }),
    PointStage("lens: vignetting",
               [](const A& a, cv::Size frame) { return LensVignetting(a.lens_vignette, frame); }),
    PointStage("lens: defringe", [](const A& a, cv::Size) { return Defringe(a.defringe); }),
    FrameStage("geometry", WakesGeometry, [](const A& a, cv::Mat& working) { Geometry(working, a); }),
    PointStage(
        "post-crop vignette",
        [](const A& a, cv::Size frame) {
          return PostCropVignette({a.vignette_amount, a.vignette_midpoint, a.vignette_roundness}, frame);
        }),
    FrameStage(
        "film grain", [](const A& a) { return !(a.grain_amount <= 0); },
        [](const A& a, cv::Mat& working) { FilmGrain(working, a.grain_amount, a.grain_size); }),
};
// clang-format on

// One run. Neighbouring point stages wait until a frame stage, or the end, needs their result and then pass
// over the rows together; as long as no frame stage is awake there is no working image.
class Run {
 public:
  explicit Run(ImageBuffer source) : image_(std::move(source)) {}

  void Pass(const Stage& stage, const A& adjustments) {
    if (stage.point != nullptr) {
      if (RowKernel kernel = stage.point(adjustments, image_.size())) waiting_.push_back(std::move(kernel));
    } else if (stage.wakes(adjustments)) {
      RunWaiting();
      stage.whole(adjustments, image_);
    }
  }

  // Writes over the earlier render where it can, as fresh memory is slow. Everything that can fail lies
  // behind.
  void Finish(ImageBuffer& rendered) const {
    if (!CanHold(rendered)) rendered = LargeImage(image_.size(), CV_16UC4);
    RunRowKernels(image_, waiting_, rendered);
  }

 private:
  // Of the right size, and nobody else's pixels.
  bool CanHold(const ImageBuffer& rendered) const {
    return rendered.size() == image_.size() && rendered.type() == CV_16UC4 && rendered.u != nullptr &&
           rendered.u->refcount == 1;
  }

  void RunWaiting() {
    cv::Mat working = image_.depth() == CV_32F ? image_ : LargeImage(image_.size(), CV_32FC4);
    if (working.data != image_.data || !waiting_.empty()) RunRowKernels(image_, waiting_, working);
    image_ = std::move(working);
    waiting_.clear();
  }

  cv::Mat image_;  // the source, then the working image
  std::vector<RowKernel> waiting_;
};

}  // namespace

void DevelopPipeline(const ImageBuffer& source, const Adjustments& adjustments, ImageBuffer& rendered) {
  if (source.empty()) return;
  Run run(source);
  for (const Stage& stage : kStages) run.Pass(stage, adjustments);
  run.Finish(rendered);
}

}  // namespace lumvik
