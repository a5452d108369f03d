// Setters store the value as given: no range check, no render, and the last render stays current.
#include <cstddef>

#include "api/engine_context.h"

namespace {

void Set(EngineContext* context, float lumvik::Adjustments::*field, float value) {
  if (context != nullptr) context->adjustments.*field = value;
}

// Null for a null context or an invalid channel.
lumvik::ToneCurve* FindToneCurve(EngineContext* context, int channel) {
  if (context == nullptr || channel < 0 || channel >= lumvik::kToneCurveCount) return nullptr;
  return &context->adjustments.tone_curves[static_cast<size_t>(channel)];
}

}  // namespace

void lumvik_set_exposure(EngineContext* ctx, float value) {
  Set(ctx, &lumvik::Adjustments::exposure, value);
}

void lumvik_set_brightness(EngineContext* ctx, float value) {
  Set(ctx, &lumvik::Adjustments::brightness, value);
}

void lumvik_set_contrast(EngineContext* ctx, float value) {
  Set(ctx, &lumvik::Adjustments::contrast, value);
}

void lumvik_set_highlights(EngineContext* ctx, float value) {
  Set(ctx, &lumvik::Adjustments::highlights, value);
}

void lumvik_set_shadows(EngineContext* ctx, float value) {
  Set(ctx, &lumvik::Adjustments::shadows, value);
}

void lumvik_set_whites(EngineContext* ctx, float value) {
  Set(ctx, &lumvik::Adjustments::whites, value);
}

void lumvik_set_blacks(EngineContext* ctx, float value) {
  Set(ctx, &lumvik::Adjustments::blacks, value);
}

void lumvik_set_temperature(EngineContext* ctx, float value) {
  Set(ctx, &lumvik::Adjustments::temperature, value);
}

void lumvik_set_tint(EngineContext* ctx, float value) {
  Set(ctx, &lumvik::Adjustments::tint, value);
}

void lumvik_set_saturation(EngineContext* ctx, float value) {
  Set(ctx, &lumvik::Adjustments::saturation, value);
}

void lumvik_set_vibrance(EngineContext* ctx, float value) {
  Set(ctx, &lumvik::Adjustments::vibrance, value);
}

void lumvik_set_sharpening_amount(EngineContext* ctx, float value) {
  Set(ctx, &lumvik::Adjustments::sharpening_amount, value);
}

void lumvik_set_sharpening_radius(EngineContext* ctx, float value) {
  Set(ctx, &lumvik::Adjustments::sharpening_radius, value);
}

void lumvik_set_sharpening_threshold(EngineContext* ctx, float value) {
  Set(ctx, &lumvik::Adjustments::sharpening_threshold, value);
}

void lumvik_set_nr_luminance(EngineContext* ctx, float value) {
  Set(ctx, &lumvik::Adjustments::nr_luminance, value);
}

void lumvik_set_nr_color(EngineContext* ctx, float value) {
  Set(ctx, &lumvik::Adjustments::nr_color, value);
}

void lumvik_set_clarity(EngineContext* ctx, float value) {
  Set(ctx, &lumvik::Adjustments::clarity, value);
}

void lumvik_set_texture(EngineContext* ctx, float value) {
  Set(ctx, &lumvik::Adjustments::texture, value);
}

void lumvik_set_dehaze(EngineContext* ctx, float value) {
  Set(ctx, &lumvik::Adjustments::dehaze, value);
}

void lumvik_set_distortion(EngineContext* ctx, float value) {
  Set(ctx, &lumvik::Adjustments::distortion, value);
}

void lumvik_set_ca_correction(EngineContext* ctx, float value) {
  Set(ctx, &lumvik::Adjustments::ca_correction, value);
}

void lumvik_set_lens_vignette(EngineContext* ctx, float value) {
  Set(ctx, &lumvik::Adjustments::lens_vignette, value);
}

void lumvik_set_defringe(EngineContext* ctx, float value) {
  Set(ctx, &lumvik::Adjustments::defringe, value);
}

void lumvik_set_rotation(EngineContext* ctx, float value) {
  Set(ctx, &lumvik::Adjustments::rotation, value);
}

void lumvik_set_perspective_h(EngineContext* ctx, float value) {
  Set(ctx, &lumvik::Adjustments::perspective_h, value);
}

void lumvik_set_perspective_v(EngineContext* ctx, float value) {
  Set(ctx, &lumvik::Adjustments::perspective_v, value);
}

void lumvik_set_vignette_amount(EngineContext* ctx, float value) {
  Set(ctx, &lumvik::Adjustments::vignette_amount, value);
}

void lumvik_set_vignette_midpoint(EngineContext* ctx, float value) {
  Set(ctx, &lumvik::Adjustments::vignette_midpoint, value);
}

void lumvik_set_vignette_roundness(EngineContext* ctx, float value) {
  Set(ctx, &lumvik::Adjustments::vignette_roundness, value);
}

void lumvik_set_grain_amount(EngineContext* ctx, float value) {
  Set(ctx, &lumvik::Adjustments::grain_amount, value);
}

void lumvik_set_grain_size(EngineContext* ctx, float value) {
  Set(ctx, &lumvik::Adjustments::grain_size, value);
}

void lumvik_set_flip_h(EngineContext* ctx, int flip) {
  if (ctx != nullptr) ctx->adjustments.flip_h = flip;
}

void lumvik_set_flip_v(EngineContext* ctx, int flip) {
  if (ctx != nullptr) ctx->adjustments.flip_v = flip;
}

void lumvik_set_crop(EngineContext* ctx, float x, float y, float w, float h) {
  if (ctx != nullptr) ctx->adjustments.crop = {x, y, w, h};
}

void lumvik_set_hsl(EngineContext* ctx, int band, float hue, float saturation, float luminance) {
  if (ctx == nullptr || band < 0 || band >= lumvik::kHslBandCount) return;
  ctx->adjustments.hsl[static_cast<size_t>(band)] = {hue, saturation, luminance};
}

// Only the highlights call sets the balance.
void lumvik_set_split_toning(EngineContext* ctx, int zone, float hue, float saturation, float balance) {
  if (ctx == nullptr) return;
  lumvik::SplitToningSettings& toning = ctx->adjustments.split_toning;
  if (zone == 0) {
    toning.highlight_hue = hue;
    toning.highlight_saturation = saturation;
    toning.balance = balance;
  } else {
    toning.shadow_hue = hue;
    toning.shadow_saturation = saturation;
  }
}

void lumvik_set_tone_curve(EngineContext* ctx, int channel, const float* points, int count) {
  lumvik::ToneCurve* stored = FindToneCurve(ctx, channel);
  if (stored == nullptr || points == nullptr || count < 2) return;
  lumvik::ToneCurve curve(static_cast<size_t>(count));
  for (size_t i = 0; i < curve.size(); ++i) curve[i] = {points[2 * i], points[2 * i + 1]};
  *stored = std::move(curve);
}

void lumvik_reset_tone_curve(EngineContext* ctx, int channel) {
  if (lumvik::ToneCurve* stored = FindToneCurve(ctx, channel)) *stored = {{0, 0}, {1, 1}};
}

void lumvik_reset_adjustments(EngineContext* ctx) {
  if (ctx != nullptr) lumvik::ResetAdjustments(*ctx);
}

// Clamped to 0..100; comparing in this order turns a NaN into 100.
void lumvik_set_bg_blur(EngineContext* ctx, float value) {
  if (ctx == nullptr) return;
  const float capped = value < 100.0F ? value : 100.0F;
  ctx->bg_blur = capped > 0.0F ? capped : 0.0F;
}
