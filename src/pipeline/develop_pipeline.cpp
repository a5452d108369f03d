#include "pipeline/develop_pipeline.h"

#include <cmath>
#include <future>
#include <initializer_list>
#include <utility>
#include <variant>

#include "base/large_image.h"
#include "pipeline/packed_rows.h"
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

namespace lumvik {
namespace {

using A = Adjustments;

// Neither the default temperature (5500) nor the reference of the white balance (6504), deliberately.
constexpr float kNeutralTemperature = 6500.0F;
constexpr float kTemperatureTolerance = 1.0F;
constexpr float kTintTolerance = 0.1F;

// What an operation does to the image is one of six kinds.

// Each pixel depends on itself and its position alone.
struct Point {
  RowTransform (*make)(const A&, cv::Size frame);
};

// It depends on the blur of its surroundings.
struct Area {
  AreaTransform (*make)(const A&);
};

// It depends on the whole image, which the operation stores as far as it needs it.
struct Whole {
  RowStep (*make)(const A&, const StoreRows& store);
};

// Pixels move.
struct Frame {
  RowSource (*make)(const A&, cv::Mat& working);
};

// A part of the image is kept.
struct Crop {
  cv::Rect (*area)(const A&, cv::Size frame);
};

// Something that is drawn in sequence while the stages before it run is added.
struct Drawn {
  std::future<GrainNoise> (*draw)(const A&, cv::Size frame);
  RowTransform (*add)(const A&, const GrainNoise& noise);
};

struct Operation {
  bool (*is_active)(const A&);
  std::variant<Point, Area, Whole, Frame, Crop, Drawn> kind;
};

struct Stage {
  const char* name;
  std::initializer_list<Operation> operations;
};

// One row per stage, in the order of execution. A condition is negated where NaN must count as active.
// clang-format off
const Stage kStages[] = {
    {"white balance", {{
        [](const A& a) { return !(std::fabs(a.temperature - kNeutralTemperature) < kTemperatureTolerance && std::fabs(a.tint) < kTintTolerance); },
        Point{[](const A& a, cv::Size) { return WhiteBalance(a.temperature, a.tint); }}}}},
    {"exposure", {{
        [](const A& a) { return a.exposure != 0; },
        Point{[](const A& a, cv::Size) { return Exposure(a.exposure); }}}}},
    {"brightness", {{
        [](const A& a) { return a.brightness != 0; },
        Point{[](const A& a, cv::Size) { return Brightness(a.brightness); }}}}},
    {"highlights and shadows", {{
        [](const A& a) { return a.highlights != 0 || a.shadows != 0; },
        Point{[](const A& a, cv::Size) { return HighlightsShadows(a.highlights, a.shadows); }}}}},
    {"whites and blacks", {{
        [](const A& a) { return a.whites != 0 || a.blacks != 0; },
        Point{[](const A& a, cv::Size) { return WhitesBlacks(a.whites, a.blacks); }}}}},
    {"contrast", {{
        [](const A& a) { return a.contrast != 0; },
        Point{[](const A& a, cv::Size) { return Contrast(a.contrast); }}}}},
    {"tone curve", {{
        [](const A& a) { return HasCurve(a.tone_curves); },
        Point{[](const A& a, cv::Size) { return ToneCurveStage(a.tone_curves); }}}}},
    {"clarity and texture", {{
        [](const A& a) { return a.clarity != 0 || a.texture != 0; },
        Whole{[](const A& a, const StoreRows& store) { return ClarityTexture(a.clarity, a.texture, store); }}}}},
    {"dehaze", {{
        [](const A& a) { return !(a.dehaze <= 0); },
        Whole{[](const A& a, const StoreRows& store) { return RowStep(Dehaze(a.dehaze, store)); }}}}},
    {"saturation and vibrance", {{
        [](const A& a) { return a.saturation != 0 || a.vibrance != 0; },
        Point{[](const A& a, cv::Size) { return SaturationVibrance(a.saturation, a.vibrance); }}}}},
    {"HSL bands", {{
        [](const A& a) { return HasShift(a.hsl); },
        Point{[](const A& a, cv::Size) { return HslBands(a.hsl); }}}}},
    {"split toning", {{
        [](const A& a) { return a.split_toning.highlight_saturation != 0 || a.split_toning.shadow_saturation != 0; },
        Point{[](const A& a, cv::Size) { return SplitToning(a.split_toning); }}}}},
    {"noise reduction", {{
        [](const A& a) { return a.nr_luminance > 0; },
        Area{[](const A& a) { return LuminanceNoiseReduction(a.nr_luminance); }}}, {
        [](const A& a) { return a.nr_color > 0; },
        Area{[](const A& a) { return ColorNoiseReduction(a.nr_color); }}}}},
    {"sharpening", {{
        [](const A& a) { return !(a.sharpening_amount <= 0); },
        Area{[](const A& a) { return Sharpening(a.sharpening_amount, a.sharpening_radius, a.sharpening_threshold); }}}}},
    {"lens corrections", {{
        [](const A& a) { return a.distortion != 0; },
        Frame{[](const A& a, cv::Mat& working) { return CorrectDistortion(working, a.distortion); }}}, {
        [](const A& a) { return a.ca_correction > 0; },
        Frame{[](const A& a, cv::Mat& working) { return CorrectChromaticAberration(working, a.ca_correction); }}}, {
        [](const A& a) { return a.lens_vignette > 0; },
        Point{[](const A& a, cv::Size frame) { return LensVignetting(a.lens_vignette, frame); }}}, {
        [](const A& a) { return a.defringe > 0; },
        Point{[](const A& a, cv::Size) { return Defringe(a.defringe); }}}}},
    {"geometry", {{
        [](const A& a) { return a.flip_h != 0 || a.flip_v != 0; },
        Frame{[](const A& a, cv::Mat& working) { return Flipped(working, a.flip_h != 0, a.flip_v != 0); }}}, {
        [](const A& a) { return a.rotation != 0; },
        Frame{[](const A& a, cv::Mat& working) { return Rotated(working, a.rotation); }}}, {
        [](const A& a) { return a.perspective_h != 0 || a.perspective_v != 0; },
        Frame{[](const A& a, cv::Mat& working) { return PerspectiveCorrected(working, a.perspective_h, a.perspective_v); }}}, {
        [](const A& a) { return a.crop.w > 0 && a.crop.h > 0; },
        Crop{[](const A& a, cv::Size frame) { return CropArea(a.crop, frame); }}}}},
    {"post-crop vignette", {{
        [](const A& a) { return a.vignette_amount != 0; },
        Point{[](const A& a, cv::Size frame) { return PostCropVignette({a.vignette_amount, a.vignette_midpoint, a.vignette_roundness}, frame); }}}}},
    {"film grain", {{
        [](const A& a) { return !(a.grain_amount <= 0); },
        Drawn{[](const A& a, cv::Size frame) { return DrawGrain(frame, a.grain_amount); },
              [](const A& a, const GrainNoise& noise) { return FilmGrain(noise, a.grain_amount, a.grain_size); }}}}},
};
// clang-format on

// Calls `use` with the kind of each active operation, in order.
template <typename Use>
void ForEachActive(const A& adjustments, const Use& use) {
  for (const Stage& stage : kStages) {
    for (const Operation& operation : stage.operations) {
      if (operation.is_active(adjustments)) std::visit(use, operation.kind);
    }
  }
}

// Relative to a point transform.
constexpr int kAreaCost = 4;

// Steps up to this cost are run again rather than their result kept, because memory is slow.
constexpr int kCheapCost = 4;

// One run. Steps are held back until an operation needs their result or the run ends, and then pass over the
// rows together. Only frame operations need the working image in memory.
class Run {
 public:
  Run(const cv::Mat& source, const A& adjustments)
      : adjustments_(adjustments), image_(RowsOf(source)), final_size_(source.size()) {}

  // Called for every active operation before the first Add: starts what runs beside the stages.
  void Prepare(const Crop& crop) { final_size_ = crop.area(adjustments_, final_size_).size(); }
  void Prepare(const Drawn& drawn) { noise_ = drawn.draw(adjustments_, final_size_); }
  template <typename Kind>
  void Prepare(const Kind& /*kind*/) {}

  void Add(const Point& point) { AddStep(point.make(adjustments_, image_.size)); }

  void Add(const Area& area) {
    AreaTransform transform = area.make(adjustments_);
    if (transform.blur.IsWide()) {
      AddStep(WideAreaTransform(transform, StoreHere()));
    } else {
      AddStep(std::move(transform));
    }
  }

  void Add(const Whole& whole) { AddStep(whole.make(adjustments_, StoreHere())); }

  void Add(const Frame& frame) {
    KeepWorkingImage();
    image_ = frame.make(adjustments_, working_);
  }

  void Add(const Crop& crop) {
    if (!steps_.empty()) KeepWorkingImage();
    image_ = Cropped(image_, crop.area(adjustments_, image_.size));
  }

  void Add(const Drawn& drawn) { AddStep(drawn.add(adjustments_, noise_.get())); }

  // Overwrites the earlier result where it can, because fresh memory is slow. Nothing can fail after the
  // first pixel is written.
  void Finish(cv::Mat& developed, int type) const {
    cv::Mat target = IsReusable(developed, type) ? developed : LargeImage(image_.size, type);
    RunRowSteps(image_, steps_, StoreIn(target));
    developed = target;
  }

 private:
  void AddStep(RowStep step) {
    const auto* transform = std::get_if<RowTransform>(&step);
    if (transform == nullptr || !transform->IsIdentity()) steps_.push_back(std::move(step));
  }

  // Stores the image as it is after the steps so far.
  StoreRows StoreHere() {
    return [this](int type, RowSink (*sink)(const cv::Mat&)) {
      cv::Mat stored = LargeImage(image_.size, type);
      StoreSteps(sink(stored));
      return stored;
    };
  }

  void StoreSteps(const RowSink& sink) {
    int cost = 0;
    for (const RowStep& step : steps_) cost += std::holds_alternative<AreaTransform>(step) ? kAreaCost : 1;
    if (cost <= kCheapCost) {
      RunRowSteps(image_, steps_, sink);
    } else {
      steps_.emplace_back(RowTransform{sink.store});
      KeepWorkingImage();
    }
  }

  // The previous working image, from which this one is read, becomes the memory of the next.
  void KeepWorkingImage() {
    cv::Mat next = spare_.size() == image_.size ? spare_ : LargeImage(image_.size, CV_32FC4);
    RunRowSteps(image_, steps_, StoreIn(next));
    steps_.clear();
    spare_ = working_;
    working_ = next;
    image_ = RowsOf(working_);
  }

  // The size and type fit, and nobody else holds the pixels.
  bool IsReusable(const cv::Mat& developed, int type) const {
    return developed.size() == image_.size && developed.type() == type && developed.u != nullptr &&
           developed.u->refcount == 1;
  }

  const A& adjustments_;
  RowSource image_;  // before the steps
  RowSteps steps_;
  cv::Mat working_;  // the last one kept
  cv::Mat spare_;
  cv::Size final_size_;
  std::future<GrainNoise> noise_;
};

void Develop(const cv::Mat& source, const A& adjustments, int type, cv::Mat& developed) {
  Run run(source, adjustments);
  ForEachActive(adjustments, [&run](const auto& kind) { run.Prepare(kind); });
  ForEachActive(adjustments, [&run](const auto& kind) { run.Add(kind); });
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
