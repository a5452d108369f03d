#include "pipeline/develop_pipeline.h"

#include <cmath>
#include <initializer_list>
#include <string_view>
#include <variant>

#include "pipeline/pipeline_run.h"
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

struct Operation {
  bool (*is_active)(const A&);
  std::variant<Point, Area, Whole, Frame, View, Drawn> kind;
};

struct Stage {
  std::string_view name;
  std::initializer_list<Operation> operations;
};

// A condition is negated where NaN must count as active.
bool ChangesWhiteBalance(const A& a) {
  return !(std::fabs(a.temperature - kNeutralTemperature) < kTemperatureTolerance &&
           std::fabs(a.tint) < kTintTolerance);
}

bool HasTone(const SplitToningSettings& tones) {
  return tones.highlight_saturation != 0 || tones.shadow_saturation != 0;
}

VignetteSettings VignetteOf(const A& a) {
  return {a.vignette_amount, a.vignette_midpoint, a.vignette_roundness};
}

AreaTransform SharpeningOf(const A& a) {
  return Sharpening(a.sharpening_amount, a.sharpening_radius, a.sharpening_threshold);
}

// One row per stage, in the order of execution.
// clang-format off
const Stage kStages[] = {
    {"white balance", {
      {ChangesWhiteBalance,
       Point{[](const A& a, cv::Size) { return WhiteBalance(a.temperature, a.tint); }}}}},
    {"exposure", {
      {[](const A& a) { return a.exposure != 0; },
       Point{[](const A& a, cv::Size) { return Exposure(a.exposure); }}}}},
    {"brightness", {
      {[](const A& a) { return a.brightness != 0; },
       Point{[](const A& a, cv::Size) { return Brightness(a.brightness); }}}}},
    {"highlights and shadows", {
      {[](const A& a) { return a.highlights != 0 || a.shadows != 0; },
       Point{[](const A& a, cv::Size) { return HighlightsShadows(a.highlights, a.shadows); }}}}},
    {"whites and blacks", {
      {[](const A& a) { return a.whites != 0 || a.blacks != 0; },
       Point{[](const A& a, cv::Size) { return WhitesBlacks(a.whites, a.blacks); }}}}},
    {"contrast", {
      {[](const A& a) { return a.contrast != 0; },
       Point{[](const A& a, cv::Size) { return Contrast(a.contrast); }}}}},
    {"tone curve", {
      {[](const A& a) { return HasCurve(a.tone_curves); },
       Point{[](const A& a, cv::Size) { return ToneCurveStage(a.tone_curves); }}}}},
    {"clarity and texture", {
      {[](const A& a) { return a.clarity != 0 || a.texture != 0; },
       Whole{[](const A& a, const StoreRows& store) {
         return ClarityTexture(a.clarity, a.texture, store); }}}}},
    {"dehaze", {
      {[](const A& a) { return !(a.dehaze <= 0); },
       Whole{[](const A& a, const StoreRows& store) { return RowStep(Dehaze(a.dehaze, store)); }}}}},
    {"saturation and vibrance", {
      {[](const A& a) { return a.saturation != 0 || a.vibrance != 0; },
       Point{[](const A& a, cv::Size) { return SaturationVibrance(a.saturation, a.vibrance); }}}}},
    {"HSL bands", {
      {[](const A& a) { return HasShift(a.hsl); },
       Point{[](const A& a, cv::Size) { return HslBands(a.hsl); }}}}},
    {"split toning", {
      {[](const A& a) { return HasTone(a.split_toning); },
       Point{[](const A& a, cv::Size) { return SplitToning(a.split_toning); }}}}},
    {"noise reduction", {
      {[](const A& a) { return a.nr_luminance > 0; },
       Area{[](const A& a) { return LuminanceNoiseReduction(a.nr_luminance); }}},
      {[](const A& a) { return a.nr_color > 0; },
       Area{[](const A& a) { return ColorNoiseReduction(a.nr_color); }}}}},
    {"sharpening", {
      {[](const A& a) { return !(a.sharpening_amount <= 0); },
       Area{[](const A& a) { return SharpeningOf(a); }}}}},
    {"lens corrections", {
      {[](const A& a) { return a.distortion != 0; },
       Frame{[](const A& a, cv::Size frame) { return DistortionCorrection(frame, a.distortion); }}},
      {[](const A& a) { return a.ca_correction > 0; },
       Frame{[](const A& a, cv::Size frame) { return AberrationCorrection(frame, a.ca_correction); }}},
      {[](const A& a) { return a.lens_vignette > 0; },
       Point{[](const A& a, cv::Size frame) { return LensVignetting(a.lens_vignette, frame); }}},
      {[](const A& a) { return a.defringe > 0; },
       Point{[](const A& a, cv::Size) { return Defringe(a.defringe); }}}}},
    {"geometry", {
      {[](const A& a) { return a.flip_h != 0 || a.flip_v != 0; },
       View{[](const A& a, cv::Size frame) { return Flip(frame, a.flip_h != 0, a.flip_v != 0); }}},
      {[](const A& a) { return a.rotation != 0; },
       Frame{[](const A& a, cv::Size frame) { return Rotation(frame, a.rotation); }}},
      {[](const A& a) { return a.perspective_h != 0 || a.perspective_v != 0; },
       Frame{[](const A& a, cv::Size frame) {
         return Perspective(frame, a.perspective_h, a.perspective_v); }}},
      {[](const A& a) { return a.crop.w > 0 && a.crop.h > 0; },
       View{[](const A& a, cv::Size frame) { return FrameView{CropArea(a.crop, frame)}; }}}}},
    {"post-crop vignette", {
      {[](const A& a) { return a.vignette_amount != 0; },
       Point{[](const A& a, cv::Size frame) { return PostCropVignette(VignetteOf(a), frame); }}}}},
    {"film grain", {
      {[](const A& a) { return !(a.grain_amount <= 0); },
       Drawn{[](const A& a, cv::Size frame) { return DrawGrain(frame, a.grain_amount); },
             [](const A& a, const GrainNoise& noise) {
               return FilmGrain(noise, a.grain_amount, a.grain_size); }}}}},
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

void Develop(const cv::Mat& source, const A& adjustments, int type, cv::Mat& developed) {
  PipelineRun run(source, adjustments);
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
