#include "pipeline/develop_pipeline.h"

#include <cmath>
#include <future>
#include <utility>

#include "base/large_image.h"
#include "pipeline/row_steps.h"
#include "pipeline/stages/brightness.h"
#include "pipeline/stages/clarity_texture.h"
#include "pipeline/stages/contrast.h"
#include "pipeline/stages/defringe.h"
#include "pipeline/stages/dehaze.h"
#include "pipeline/stages/exposure.h"
#include "pipeline/stages/film_grain.h"
#include "pipeline/stages/geometry.h"
#include "pipeline/stages/highlights_shadows.h"
#include "pipeline/stages/hsl_bands.h"
#include "pipeline/stages/lens_geometry.h"
#include "pipeline/stages/lens_vignetting.h"
#include "pipeline/stages/noise_reduction.h"
#include "pipeline/stages/post_crop_vignette.h"
#include "pipeline/stages/saturation_vibrance.h"
#include "pipeline/stages/sharpening.h"
#include "pipeline/stages/split_toning.h"
#include "pipeline/stages/tone_curve.h"
#include "pipeline/stages/white_balance.h"
#include "pipeline/stages/whites_blacks.h"
#include "pipeline/wide_gaussian.h"

namespace lumvik {
namespace {

using A = Adjustments;

// Neither the default temperature (5500) nor the white balance's own reference (6504), deliberately.
constexpr float kNeutralTemperature = 6500.0F;
constexpr float kTemperatureTolerance = 1.0F;
constexpr float kTintTolerance = 0.1F;
constexpr auto kWideRadius = static_cast<float>(WideGaussian::kMinSigma);

// Negated so that a NaN setting is never taken for neutral.
bool WakesWhiteBalance(const A& a) {
  return !(std::fabs(a.temperature - kNeutralTemperature) < kTemperatureTolerance &&
           std::fabs(a.tint) < kTintTolerance);
}

bool WakesGrain(const A& a) {
  return !(a.grain_amount <= 0);
}

using IsAwake = bool (*)(const A&);

// A stage is one of six kinds. Each pixel depends on itself alone: the settings give the kernel for the rows
// of a frame (no kernel: it sleeps).
using MakePoint = RowKernel (*)(const A&, cv::Size frame);
// It depends on the pixels around it.
using MakeArea = AreaKernel (*)(const A&);
// It depends on the whole image, stored in a matrix of the type that it takes.
using MakeWhole = RowStep (*)(const A&, const cv::Mat& stored);
using StoreWhole = RowKernel (*)(const cv::Mat& stored);
// It moves the pixels.
using MakeFrame = RowImage (*)(const A&, cv::Mat& working);
// It keeps a part of them.
using MakeCrop = RowImage (*)(const A&, const RowImage& image);
// It adds what was drawn beside the others.
using MakeDrawn = RowKernel (*)(const A&, const GrainNoise& drawn);

struct Stage {
  const char* name = nullptr;
  IsAwake wakes = nullptr;
  MakePoint point = nullptr;
  MakeArea area = nullptr;
  MakeWhole whole = nullptr;
  StoreWhole store = nullptr;
  int stored_type = 0;
  MakeFrame frame = nullptr;
  MakeCrop crop = nullptr;
  MakeDrawn drawn = nullptr;
};

constexpr Stage PointStage(const char* name, MakePoint point) {
  return {name, nullptr, point};
}

constexpr Stage AreaStage(const char* name, IsAwake wakes, MakeArea area) {
  return {name, wakes, nullptr, area};
}

constexpr Stage WholeStage(const char* name, IsAwake wakes, StoreWhole store, int stored_type,
                           MakeWhole whole) {
  return {name, wakes, nullptr, nullptr, whole, store, stored_type};
}

constexpr Stage FrameStage(const char* name, IsAwake wakes, MakeFrame frame) {
  return {name, wakes, nullptr, nullptr, nullptr, nullptr, 0, frame};
}

constexpr Stage CropStage(const char* name, IsAwake wakes, MakeCrop crop) {
  return {name, wakes, nullptr, nullptr, nullptr, nullptr, 0, nullptr, crop};
}

constexpr Stage DrawnStage(const char* name, IsAwake wakes, MakeDrawn drawn) {
  return {name, wakes, nullptr, nullptr, nullptr, nullptr, 0, nullptr, nullptr, drawn};
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
    WholeStage(
        "clarity, texture", [](const A& a) { return a.clarity != 0; }, StoreLuminance, CV_32F,
        [](const A& a, const cv::Mat& luminance) { return ClarityTexture(luminance, a.clarity, a.texture); }),
    AreaStage(
        "texture alone", [](const A& a) { return a.clarity == 0 && a.texture != 0; },
        [](const A& a) { return Texture(a.texture); }),
    WholeStage(
        "dehaze", [](const A& a) { return !(a.dehaze <= 0); }, StoreSmallest, CV_32F,
        [](const A& a, const cv::Mat& smallest) { return RowStep(Dehaze(smallest, a.dehaze)); }),
    PointStage("saturation, vibrance",
               [](const A& a, cv::Size) { return SaturationVibrance(a.saturation, a.vibrance); }),
    PointStage("HSL bands", [](const A& a, cv::Size) { return HslBands(a.hsl); }),
    PointStage("split toning", [](const A& a, cv::Size) { return SplitToning(a.split_toning); }),
    AreaStage(
        "noise reduction: luminance", [](const A& a) { return a.nr_luminance > 0; },
        [](const A& a) { return LuminanceNoiseReduction(a.nr_luminance); }),
    AreaStage(
        "noise reduction: color", [](const A& a) { return a.nr_color > 0; },
        [](const A& a) { return ColorNoiseReduction(a.nr_color); }),
    AreaStage(
        "sharpening",
        [](const A& a) { return !(a.sharpening_amount <= 0) && !(a.sharpening_radius >= kWideRadius); },
        [](const A& a) {
          return Sharpening(a.sharpening_amount, a.sharpening_radius, a.sharpening_threshold);
        }),
    WholeStage(
        "sharpening, wide",
        [](const A& a) { return !(a.sharpening_amount <= 0) && a.sharpening_radius >= kWideRadius; }, StoreIn,
        CV_32FC4,
        [](const A& a, const cv::Mat& working) {
          return WideSharpening(working, a.sharpening_amount, a.sharpening_radius, a.sharpening_threshold);
        }),
    FrameStage(
        "lens: distortion", [](const A& a) { return a.distortion != 0; },
        [](const A& a, cv::Mat& working) { return CorrectDistortion(working, a.distortion); }),
    FrameStage(
        "lens: chromatic aberration", [](const A& a) { return a.ca_correction > 0; },
        [](const A& a, cv::Mat& working) { return CorrectChromaticAberration(working, a.ca_correction); }),
    PointStage("lens: vignetting",
               [](const A& a, cv::Size frame) { return LensVignetting(a.lens_vignette, frame); }),
    PointStage("lens: defringe", [](const A& a, cv::Size) { return Defringe(a.defringe); }),
    FrameStage(
        "flips", [](const A& a) { return a.flip_h != 0 || a.flip_v != 0; },
        [](const A& a, cv::Mat& working) {
          Flip(working, a.flip_h != 0, a.flip_v != 0);
          return RowsOf(working);
        }),
    FrameStage(
        "rotation", [](const A& a) { return a.rotation != 0; },
        [](const A& a, cv::Mat& working) { return Rotated(working, a.rotation); }),
    FrameStage(
        "perspective", [](const A& a) { return a.perspective_h != 0 || a.perspective_v != 0; },
        [](const A& a, cv::Mat& working) {
          return PerspectiveCorrected(working, a.perspective_h, a.perspective_v);
        }),
    CropStage(
        "crop", [](const A& a) { return a.crop.w > 0 && a.crop.h > 0; },
        [](const A& a, const RowImage& image) { return Cropped(image, a.crop); }),
    PointStage(
        "post-crop vignette",
        [](const A& a, cv::Size frame) {
          return PostCropVignette({a.vignette_amount, a.vignette_midpoint, a.vignette_roundness}, frame);
        }),
    DrawnStage(
        "film grain", WakesGrain,
        [](const A& a, const GrainNoise& noise) { return FilmGrain(noise, a.grain_amount, a.grain_size); }),
};
// clang-format on

// A step that looks around takes about as long as so many that do not.
constexpr int kAreaCost = 4;

// Steps of this cost are made again rather than their result kept: memory is slow.
constexpr int kCheapCost = 4;

// One run. Steps wait until a stage that looks at the whole image, or the end, needs their result and then
// pass over the rows together. Only a frame stage needs the working image in memory.
class Run {
 public:
  // Nothing but the crop changes the size that the grain has to have.
  Run(const cv::Mat& source, const A& adjustments) : image_(RowsOf(source)) {
    if (WakesGrain(adjustments)) {
      noise_ = DrawGrain(CropArea(adjustments.crop, source.size()).size(), adjustments.grain_amount);
    }
  }

  void Pass(const Stage& stage, const A& adjustments) {
    if (stage.point != nullptr) {
      if (RowKernel kernel = stage.point(adjustments, image_.size)) waiting_.emplace_back(std::move(kernel));
    } else if (!stage.wakes(adjustments)) {
      return;
    } else if (stage.area != nullptr) {
      waiting_.emplace_back(stage.area(adjustments));
    } else if (stage.whole != nullptr) {
      const cv::Mat stored = LargeImage(image_.size, stage.stored_type);
      StoreWaiting(stage.store(stored));
      waiting_.push_back(stage.whole(adjustments, stored));
    } else if (stage.frame != nullptr) {
      Keep();
      image_ = stage.frame(adjustments, working_);
    } else if (stage.drawn != nullptr) {
      waiting_.emplace_back(stage.drawn(adjustments, noise_.get()));
    } else {
      if (!waiting_.empty()) Keep();
      image_ = stage.crop(adjustments, image_);
    }
  }

  // Writes over the earlier render where it can, as fresh memory is slow. Everything that can fail lies
  // behind.
  void Finish(cv::Mat& rendered, int type) const {
    cv::Mat target = CanHold(rendered, type) ? rendered : LargeImage(image_.size, type);
    RunRowSteps(image_, waiting_, StoreIn(target));
    rendered = target;
  }

 private:
  void StoreWaiting(const RowKernel& store) {
    int cost = 0;
    for (const RowStep& step : waiting_) cost += std::holds_alternative<AreaKernel>(step) ? kAreaCost : 1;
    if (cost <= kCheapCost) {
      RunRowSteps(image_, waiting_, store);
    } else {
      waiting_.emplace_back(store);
      Keep();
    }
  }

  // Makes the working image. The one before, from which it is read, serves as memory for the next.
  void Keep() {
    cv::Mat next = spare_.size() == image_.size ? spare_ : LargeImage(image_.size, CV_32FC4);
    RunRowSteps(image_, waiting_, StoreIn(next));
    waiting_.clear();
    spare_ = working_;
    working_ = next;
    image_ = RowsOf(working_);
  }

  // Of the right size, and nobody else's pixels.
  bool CanHold(const cv::Mat& rendered, int type) const {
    return rendered.size() == image_.size && rendered.type() == type && rendered.u != nullptr &&
           rendered.u->refcount == 1;
  }

  RowImage image_;  // as it is before the steps that wait
  RowSteps waiting_;
  cv::Mat working_;  // the last one made
  cv::Mat spare_;
  std::future<GrainNoise> noise_;
};

void Develop(const cv::Mat& source, const A& adjustments, int type, cv::Mat& developed) {
  Run run(source, adjustments);
  for (const Stage& stage : kStages) run.Pass(stage, adjustments);
  run.Finish(developed, type);
}

}  // namespace

void DevelopPipeline(const ImageBuffer& source, const Adjustments& adjustments, ImageBuffer& rendered) {
  if (!source.empty()) Develop(source, adjustments, CV_16UC4, rendered);
}

cv::Mat DevelopWorkingImage(const cv::Mat& working, const Adjustments& adjustments) {
  cv::Mat developed;
  if (!working.empty()) Develop(working, adjustments, CV_32FC4, developed);
  return developed;
}

}  // namespace lumvik
