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
#include "pipeline/working_image.h"

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

using IsAwake = bool (*)(const A&);
using MakeFromSettings = RowKernel (*)(const A&, cv::Size frame);
using MakeFromLuminance = RowKernel (*)(const A&, const cv::Mat& luminance);
using MakeFromColors = RowKernel (*)(const A&, const ColorPlanes& image);
using ChangeImage = void (*)(const A&, cv::Mat& working);

// A step is one of three kinds: each pixel depends on itself alone, and the settings give the kernel for the
// rows of a frame (no kernel: it sleeps); it depends on the pixels around too, and the kernel is made from
// the luminance or the colours of the image that it will change; or the whole working image is made anew, its
// size included.
struct Stage {
  const char* name = nullptr;
  IsAwake wakes = nullptr;
  MakeFromSettings point = nullptr;
  MakeFromLuminance luminance_area = nullptr;
  MakeFromColors color_area = nullptr;
  ChangeImage frame = nullptr;
};

constexpr Stage PointStage(const char* name, MakeFromSettings point) {
  return {name, nullptr, point};
}

constexpr Stage AreaStage(const char* name, IsAwake wakes, MakeFromLuminance area) {
  return {name, wakes, nullptr, area};
}

constexpr Stage AreaStage(const char* name, IsAwake wakes, MakeFromColors area) {
  return {name, wakes, nullptr, nullptr, area};
}

constexpr Stage FrameStage(const char* name, IsAwake wakes, ChangeImage frame) {
  return {name, wakes, nullptr, nullptr, nullptr, frame};
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
    AreaStage(
        "clarity, texture", [](const A& a) { return a.clarity != 0 || a.texture != 0; },
        [](const A& a, const cv::Mat& luminance) { return ClarityTexture(luminance, a.clarity, a.texture); }),
    AreaStage(
        "dehaze", [](const A& a) { return !(a.dehaze <= 0); },
        [](const A& a, const ColorPlanes& image) { return Dehaze(image, a.dehaze); }),
    PointStage("saturation, vibrance",
               [](const A& a, cv::Size) { return SaturationVibrance(a.saturation, a.vibrance); }),
    PointStage("HSL bands", [](const A& a, cv::Size) { return HslBands(a.hsl); }),
    PointStage("split toning", [](const A& a, cv::Size) { return SplitToning(a.split_toning); }),
    AreaStage(
        "noise reduction: luminance", [](const A& a) { return a.nr_luminance > 0; },
        [](const A& a, const cv::Mat& luminance) {
          return LuminanceNoiseReduction(luminance, a.nr_luminance);
        }),
    AreaStage(
        "noise reduction: colour", [](const A& a) { return a.nr_color > 0; },
        [](const A& a, const ColorPlanes& image) { return ColorNoiseReduction(image, a.nr_color); }),
    AreaStage(
        "sharpening", [](const A& a) { return !(a.sharpening_amount <= 0); },
        [](const A& a, const ColorPlanes& image) {
          return Sharpening(image, a.sharpening_amount, a.sharpening_radius, a.sharpening_threshold);
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
    PointStage("film grain",
               [](const A& a, cv::Size frame) {
                 return a.grain_amount <= 0 ? RowKernel() : FilmGrain(frame, a.grain_amount, a.grain_size);
               }),
};
// clang-format on

// One run. Kernels wait until a stage that looks around, or the end, needs their result and then pass over
// the rows together; as long as no such stage is awake there is no working image. Area stages work on planes,
// frame stages on packed pixels.
class Run {
 public:
  explicit Run(ImageBuffer source) : packed_(std::move(source)) {}

  void Pass(const Stage& stage, const A& adjustments) {
    if (stage.point != nullptr) {
      if (RowKernel kernel = stage.point(adjustments, Frame())) waiting_.push_back(std::move(kernel));
    } else if (!stage.wakes(adjustments)) {
      return;
    } else if (stage.luminance_area != nullptr) {
      const cv::Mat luminance = LargeImage(Frame(), CV_32F);
      waiting_.push_back(StoreLuminance(luminance));
      RunIntoPlanes();
      waiting_.push_back(stage.luminance_area(adjustments, luminance));
    } else if (stage.color_area != nullptr) {
      RunIntoPlanes();
      waiting_.push_back(stage.color_area(adjustments, planes_));
    } else {
      RunIntoPixels();
      stage.frame(adjustments, packed_);
    }
  }

  // Writes over the earlier render where it can, as fresh memory is slow. Everything that can fail lies
  // behind.
  void Finish(ImageBuffer& rendered) const {
    if (!CanHold(rendered)) rendered = LargeImage(Frame(), CV_16UC4);
    RunInto(rendered);
  }

 private:
  cv::Size Frame() const { return packed_.size(); }

  // Of the right size, and nobody else's pixels.
  bool CanHold(const ImageBuffer& rendered) const {
    return rendered.size() == Frame() && rendered.type() == CV_16UC4 && rendered.u != nullptr &&
           rendered.u->refcount == 1;
  }

  void RunInto(cv::Mat& packed) const {
    if (planes_.Empty()) {
      RunRowKernels(packed_, waiting_, packed);
    } else {
      RunRowKernels(planes_, packed_, waiting_, packed);
    }
  }

  void RunIntoPlanes() {
    if (!planes_.Empty()) {
      if (!waiting_.empty()) RunRowKernels(planes_, waiting_);
    } else {
      planes_ = LargePlanes(Frame());
      RunRowKernels(packed_, waiting_, planes_);
    }
    waiting_.clear();
  }

  void RunIntoPixels() {
    const bool is_working = planes_.Empty() && packed_.depth() == CV_32F;
    if (is_working && waiting_.empty()) return;
    cv::Mat working = is_working ? packed_ : LargeImage(Frame(), CV_32FC4);
    RunInto(working);
    packed_ = std::move(working);
    planes_ = ColorPlanes();
    waiting_.clear();
  }

  cv::Mat packed_;      // the source, then the working image
  ColorPlanes planes_;  // the working image's colours; packed_ then has the alpha alone
  RowKernels waiting_;
};

}  // namespace

void DevelopPipeline(const ImageBuffer& source, const Adjustments& adjustments, ImageBuffer& rendered) {
  if (source.empty()) return;
  Run run(source);
  for (const Stage& stage : kStages) run.Pass(stage, adjustments);
  run.Finish(rendered);
}

}  // namespace lumvik
