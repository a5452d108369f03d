// Every setter of the C++ interface has the effect of the function of lumvik.h that it wraps.
#include <gtest/gtest.h>

#include <functional>
#include <future>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "lumvik.hpp"

namespace lumvik::engine::test {
namespace {

constexpr char kPhotographPath[] = LUMVIK_TEST_DATA "/eiffel_gps_north_east.jpg";

struct Setter {
  std::string name;
  std::function<void(Context&)> cpp;
  std::function<void(EngineContext*)> c;
};

void PrintTo(const Setter& setter, std::ostream* out) {
  *out << setter.name;
}

// Settings without which some setters would have no visible effect; the same on both sides.
void Prepare(EngineContext* context) {
  lumvik_set_temperature(context, 6500);
  lumvik_set_sharpening_amount(context, 100);
  lumvik_set_vignette_amount(context, 50);
  lumvik_set_grain_amount(context, 20);
}

void Prepare(Context& photo) {
  photo.SetTemperature(6500);
  photo.SetSharpeningAmount(100);
  photo.SetVignetteAmount(50);
  photo.SetGrainAmount(20);
}

// Renders in a new thread, where the random numbers of the grain start from the same seed.
std::vector<uint8_t> InThread(const std::function<std::vector<uint8_t>()>& render) {
  return std::async(std::launch::async, render).get();
}

std::vector<uint8_t> Rendered(const std::function<void(Context&)>& set) {
  return InThread([&] {
    Context photo;
    photo.Load(kPhotographPath);
    Prepare(photo);
    set(photo);
    return photo.Preview().data;
  });
}

std::vector<uint8_t> RenderedByC(const std::function<void(EngineContext*)>& set) {
  return InThread([&] {
    const std::unique_ptr<EngineContext, void (*)(EngineContext*)> context(lumvik_create_context(),
                                                                           lumvik_destroy_context);
    EXPECT_EQ(lumvik_load_arw(context.get(), kPhotographPath, 1), LUMVIK_OK);
    Prepare(context.get());
    set(context.get());
    std::vector<uint8_t> preview(static_cast<size_t>(lumvik_get_width(context.get())) *
                                 static_cast<size_t>(lumvik_get_height(context.get())) * 4);
    EXPECT_EQ(lumvik_get_preview(context.get(), preview.data(), static_cast<int>(preview.size())), LUMVIK_OK);
    preview.resize(static_cast<size_t>(lumvik_get_width(context.get())) *
                   static_cast<size_t>(lumvik_get_height(context.get())) * 4);
    return preview;
  });
}

Setter Single(const std::string& name, void (Context::*cpp)(float), void (*c)(EngineContext*, float),
              float value) {
  return {name, [=](Context& photo) { (photo.*cpp)(value); },
          [=](EngineContext* context) { c(context, value); }};
}

std::vector<Setter> Setters() {
  std::vector<Setter> all = {
      Single("Exposure", &Context::SetExposure, lumvik_set_exposure, 0.5F),
      Single("Brightness", &Context::SetBrightness, lumvik_set_brightness, 20),
      Single("Contrast", &Context::SetContrast, lumvik_set_contrast, 30),
      Single("Highlights", &Context::SetHighlights, lumvik_set_highlights, 50),
      Single("Shadows", &Context::SetShadows, lumvik_set_shadows, 50),
      Single("Whites", &Context::SetWhites, lumvik_set_whites, 50),
      Single("Blacks", &Context::SetBlacks, lumvik_set_blacks, 50),
      Single("Temperature", &Context::SetTemperature, lumvik_set_temperature, 5000),
      Single("Tint", &Context::SetTint, lumvik_set_tint, 50),
      Single("Saturation", &Context::SetSaturation, lumvik_set_saturation, 50),
      Single("Vibrance", &Context::SetVibrance, lumvik_set_vibrance, 50),
      Single("Clarity", &Context::SetClarity, lumvik_set_clarity, 50),
      Single("Texture", &Context::SetTexture, lumvik_set_texture, 50),
      Single("Dehaze", &Context::SetDehaze, lumvik_set_dehaze, 50),
      Single("NrLuminance", &Context::SetNrLuminance, lumvik_set_nr_luminance, 50),
      Single("NrColor", &Context::SetNrColor, lumvik_set_nr_color, 50),
      Single("SharpeningAmount", &Context::SetSharpeningAmount, lumvik_set_sharpening_amount, 20),
      Single("SharpeningRadius", &Context::SetSharpeningRadius, lumvik_set_sharpening_radius, 2),
      Single("SharpeningThreshold", &Context::SetSharpeningThreshold, lumvik_set_sharpening_threshold, 3000),
      Single("Distortion", &Context::SetDistortion, lumvik_set_distortion, 50),
      Single("CaCorrection", &Context::SetCaCorrection, lumvik_set_ca_correction, 50),
      Single("LensVignette", &Context::SetLensVignette, lumvik_set_lens_vignette, 50),
      Single("Defringe", &Context::SetDefringe, lumvik_set_defringe, 100),
      Single("Rotation", &Context::SetRotation, lumvik_set_rotation, 5),
      Single("PerspectiveH", &Context::SetPerspectiveH, lumvik_set_perspective_h, 50),
      Single("PerspectiveV", &Context::SetPerspectiveV, lumvik_set_perspective_v, 50),
      Single("VignetteAmount", &Context::SetVignetteAmount, lumvik_set_vignette_amount, 80),
      Single("VignetteMidpoint", &Context::SetVignetteMidpoint, lumvik_set_vignette_midpoint, 20),
      Single("VignetteRoundness", &Context::SetVignetteRoundness, lumvik_set_vignette_roundness, -50),
      Single("GrainAmount", &Context::SetGrainAmount, lumvik_set_grain_amount, 60),
      Single("GrainSize", &Context::SetGrainSize, lumvik_set_grain_size, 80),
      {"FlipH", [](Context& e) { e.SetFlipH(true); }, [](EngineContext* c) { lumvik_set_flip_h(c, 1); }},
      {"FlipV", [](Context& e) { e.SetFlipV(true); }, [](EngineContext* c) { lumvik_set_flip_v(c, 1); }},
      {"Crop",
       [](Context& e) {
         e.SetCrop({0.1F, 0.2F, 0.5F, 0.6F});
       },
       [](EngineContext* c) { lumvik_set_crop(c, 0.1F, 0.2F, 0.5F, 0.6F); }},
      {"ResetAdjustments", [](Context& e) { e.ResetAdjustments(); }, lumvik_reset_adjustments},
  };
  const auto split = [](Context& e) {
    e.SetSplitHighlights(40, 60, 30);
    e.SetSplitShadows(200, 50);
  };
  all.push_back({"SplitToning", split, [](EngineContext* c) {
                   lumvik_set_split_toning(c, LUMVIK_ZONE_HIGHLIGHTS, 40, 60, 30);
                   lumvik_set_split_toning(c, LUMVIK_ZONE_SHADOWS, 200, 50, 0);
                 }});
  for (const Curve curve : {Curve::kMaster, Curve::kRed, Curve::kGreen, Curve::kBlue}) {
    const int channel = static_cast<int>(curve);
    const auto set = [=](Context& e) { e.SetToneCurve(curve, {{0, 0.1F}, {0.5F, 0.4F}, {1, 1}}); };
    const auto set_by_c = [=](EngineContext* c) {
      const float points[] = {0, 0.1F, 0.5F, 0.4F, 1, 1};
      lumvik_set_tone_curve(c, channel, points, 3);
    };
    all.push_back({"ToneCurve" + std::to_string(channel), set, set_by_c});
    // Visible because the other curve stays.
    const Curve other = curve == Curve::kMaster ? Curve::kRed : Curve::kMaster;
    all.push_back({"ResetToneCurve" + std::to_string(channel),
                   [=](Context& e) {
                     set(e);
                     e.SetToneCurve(other, {{0, 0}, {0.5F, 0.6F}, {1, 1}});
                     e.ResetToneCurve(curve);
                   },
                   [=](EngineContext* c) {
                     const float points[] = {0, 0, 0.5F, 0.6F, 1, 1};
                     set_by_c(c);
                     lumvik_set_tone_curve(c, static_cast<int>(other), points, 3);
                     lumvik_reset_tone_curve(c, channel);
                   }});
  }
  for (int band = 0; band < LUMVIK_BAND_COUNT; ++band) {
    all.push_back({"Hsl" + std::to_string(band),
                   [=](Context& e) { e.SetHsl(static_cast<Band>(band), 60, 50, -40); },
                   [=](EngineContext* c) { lumvik_set_hsl(c, band, 60, 50, -40); }});
  }
  return all;
}

class SetterTest : public ::testing::TestWithParam<Setter> {};

TEST_P(SetterTest, DoesWhatTheCFunctionDoes) {
  const std::vector<uint8_t> cpp = Rendered(GetParam().cpp);
  const std::vector<uint8_t> c = RenderedByC(GetParam().c);
  static const std::vector<uint8_t> untouched = RenderedByC([](EngineContext*) {});
  EXPECT_TRUE(cpp == c);
  EXPECT_FALSE(cpp == untouched) << "the setter has no visible effect, so nothing is tested";
}

INSTANTIATE_TEST_SUITE_P(All, SetterTest, ::testing::ValuesIn(Setters()),
                         [](const auto& setter) { return setter.param.name; });

TEST(ToneCurveTest, IgnoresAnEmptyList) {
  const auto curve = [](Context& e) { e.SetToneCurve(Curve::kRed, {{0, 0.2F}, {1, 1}}); };
  const auto curve_and_none = [&](Context& e) {
    curve(e);
    e.SetToneCurve(Curve::kRed, {});
  };
  EXPECT_TRUE(Rendered(curve_and_none) == Rendered(curve));
}

TEST(ApplyTest, SetsEverythingExceptTheSharpeningRadius) {
  const Enhancement e{0.1F, 2, 3, 4, 5, 6, 7, 6000, 9, 10, 11, 12, 14, 15, 16};
  const auto apply = [&](Context& photo) {
    photo.SetSharpeningRadius(2);
    photo.Apply(e);
  };
  const auto by_c = [](EngineContext* c) {
    lumvik_set_sharpening_radius(c, 2);
    lumvik_set_exposure(c, 0.1F);
    lumvik_set_brightness(c, 2);
    lumvik_set_contrast(c, 3);
    lumvik_set_highlights(c, 4);
    lumvik_set_shadows(c, 5);
    lumvik_set_whites(c, 6);
    lumvik_set_blacks(c, 7);
    lumvik_set_temperature(c, 6000);
    lumvik_set_tint(c, 9);
    lumvik_set_saturation(c, 10);
    lumvik_set_vibrance(c, 11);
    lumvik_set_sharpening_amount(c, 12);
    lumvik_set_sharpening_threshold(c, 14);
    lumvik_set_nr_luminance(c, 15);
    lumvik_set_nr_color(c, 16);
  };
  EXPECT_TRUE(Rendered(apply) == RenderedByC(by_c));
}

}  // namespace
}  // namespace lumvik::engine::test
