#include "support/random_adjustments.h"

namespace lumvik::test {

Adjustments NeutralAdjustments() {
  Adjustments adjustments;
  adjustments.temperature = 6500;
  return adjustments;
}

void SetToneCurves(Adjustments& adjustments, float variant) {
  const ToneCurve reset = {{0, 0}, {1, 1}};
  auto& curves = adjustments.tone_curves;
  switch (static_cast<int>(variant)) {
    case 0:  // all disabled
      curves = {reset, reset, ToneCurve(), ToneCurve{{0.5F, 0.2F}}};
      break;
    case 1:  // a reset curve acts if another one is active
      curves = {ToneCurve{{0, 0.1F}, {0.3F, 0.2F}, {0.7F, 0.9F}, {1, 1}}, reset, reset, ToneCurve()};
      break;
    case 2:  // a negative
      curves[kMasterCurve] = {{0, 1}, {1, 0}};
      break;
    case 3:  // beyond the scale, and points of equal x
      curves[kRedCurve] = {{-0.5F, -0.2F}, {0.4F, 0.1F}, {0.4F, 0.9F}, {1.5F, 1.3F}};
      curves[kBlueCurve] = {{0.2F, 0.5F}, {0.6F, 0.4F}};
      break;
    case 4:  // out of order
      curves[kGreenCurve] = {{0.8F, 0.2F}, {0.1F, 0.6F}, {0.5F, 0.3F}, {0.2F, 1}};
      break;
    default:  // many points on every channel
      for (ToneCurve& curve : curves) {
        for (int i = 0; i <= 12; ++i) {
          const float x = static_cast<float>(i) / 12.0F;
          curve.push_back({x, i % 2 == 0 ? x * x : x});
        }
      }
  }
}

void SetHslBands(Adjustments& adjustments, float strength) {
  for (size_t band = 0; band < adjustments.hsl.size(); ++band) {
    const float share = 1.0F - static_cast<float>(band) / 5.0F;
    adjustments.hsl[band] = {strength * share * 1.8F, strength * -share, strength * share * 0.6F};
  }
}

void SetSplitToning(Adjustments& adjustments, float strength) {
  adjustments.split_toning = {40, strength, 220, strength * 0.7F, strength * 0.5F};
}

void SetSharpening(Adjustments& adjustments, float amount) {
  adjustments.sharpening_amount = amount;
  adjustments.sharpening_radius = 1.0F + amount / 200.0F * 3.0F;
  adjustments.sharpening_threshold = amount > 50 ? 655 : 0;
}

void SetGeometry(Adjustments& adjustments, float variant) {
  switch (static_cast<int>(variant)) {
    case 0:
      adjustments.flip_h = 1;
      break;
    case 1:
      adjustments.flip_h = -3;
      adjustments.flip_v = 7;
      break;
    case 2:
      adjustments.rotation = 7.3F;
      break;
    case 3:
      adjustments.rotation = -90;
      adjustments.crop = {0.1F, 0.2F, 0.5F, 0.6F};
      break;
    case 4:
      adjustments.perspective_h = 60;
      adjustments.perspective_v = -35;
      break;
    case 5:
      adjustments.crop = {0.5F, 0.5F, 1, 1};
      break;
    default:
      adjustments.crop = {-0.3F, 0.001F, 0.75F, 3};
      adjustments.perspective_v = 100;
  }
}

void SetVignette(Adjustments& adjustments, float amount) {
  adjustments.vignette_amount = amount;
  adjustments.vignette_midpoint = amount > 40 ? 20 : 60;
  adjustments.vignette_roundness = amount;
}

void SetGrain(Adjustments& adjustments, float amount) {
  adjustments.grain_amount = amount;
  adjustments.grain_size = amount > 60 ? 100 : amount / 10.0F;
}

Adjustments RandomAdjustments(std::mt19937& random) {
  const auto within = [&random](float low, float high) {
    return std::uniform_real_distribution<float>(low, high)(random);
  };
  const auto is_active = [&random] { return random() % 2 == 0; };
  Adjustments a = NeutralAdjustments();
  if (is_active()) a.temperature = within(2000, 20000);
  for (float Adjustments::*field :
       {&Adjustments::tint, &Adjustments::brightness, &Adjustments::contrast, &Adjustments::highlights,
        &Adjustments::shadows, &Adjustments::whites, &Adjustments::blacks, &Adjustments::saturation,
        &Adjustments::vibrance, &Adjustments::clarity, &Adjustments::texture, &Adjustments::distortion,
        &Adjustments::perspective_h, &Adjustments::perspective_v}) {
    if (is_active()) a.*field = within(-100, 100);
  }
  for (float Adjustments::*field :
       {&Adjustments::nr_luminance, &Adjustments::nr_color, &Adjustments::dehaze, &Adjustments::ca_correction,
        &Adjustments::lens_vignette, &Adjustments::defringe}) {
    if (is_active()) a.*field = within(0, 100);
  }
  if (is_active()) a.exposure = within(-3, 3);
  if (is_active()) SetToneCurves(a, within(0, 6));
  if (is_active()) SetHslBands(a, within(-100, 100));
  if (is_active()) SetSplitToning(a, within(0, 100));
  if (is_active()) SetSharpening(a, within(0, 150));
  if (is_active()) a.rotation = within(-10, 10);
  if (is_active()) a.crop = {within(0, 0.5F), within(0, 0.5F), within(0.2F, 1), within(0.2F, 1)};
  if (is_active()) a.flip_h = 1;
  if (is_active()) SetVignette(a, within(-100, 100));
  if (is_active()) SetGrain(a, within(0, 100));
  return a;
}

void SetTypical(Adjustments& a) {
  a = Adjustments();
  a.exposure = 0.5F;
  a.contrast = 20;
  a.highlights = -30;
  a.shadows = 25;
  a.vibrance = 16;
  a.saturation = 5;
  a.clarity = 15;
  a.sharpening_amount = 40;
}

void SetEverything(Adjustments& a) {
  SetTypical(a);
  a.tint = 10;
  a.brightness = 10;
  a.whites = -10;
  a.blacks = 10;
  a.tone_curves[kMasterCurve] = {{0, 0}, {0.25F, 0.2F}, {0.5F, 0.5F}, {0.75F, 0.8F}, {1, 1}};
  a.texture = 15;
  a.dehaze = 20;
  SetHslBands(a, 15);
  SetSplitToning(a, 20);
  a.nr_luminance = 25;
  a.nr_color = 25;
  a.distortion = 10;
  a.ca_correction = 30;
  a.lens_vignette = 30;
  a.defringe = 30;
  a.rotation = 1.5F;
  a.perspective_h = 10;
  a.crop = {0.02F, 0.02F, 0.96F, 0.96F};
  a.vignette_amount = 20;
  a.grain_amount = 20;
}

}  // namespace lumvik::test
