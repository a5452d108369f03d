// Every setter of the C++ interface does what its function in lumvik.h does with the same numbers.
#include <gtest/gtest.h>

#include <functional>
#include <future>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "lumvik.hpp"

namespace lumvik::test {
namespace {

constexpr char kPhotographPath[] = LUMVIK_TEST_DATA "/eiffel_gps_north_east.jpg";

struct Setter {
  std::string name;
  std::function<void(Engine&)> cpp;
  std::function<void(EngineContext*)> c;
};

void PrintTo(const Setter& setter, std::ostream* out) {
  *out << setter.name;
}

// What a setter needs to be seen; the same on both sides.
void Prepare(EngineContext* context) {
  lumvik_set_temperature(context, 6500);
  lumvik_set_sharpening_amount(context, 100);
  lumvik_set_vignette_amount(context, 50);
  lumvik_set_grain_amount(context, 20);
}

void Prepare(Engine& engine) {
  engine.SetTemperature(6500);
  engine.SetSharpeningAmount(100);
  engine.SetVignetteAmount(50);
  engine.SetGrainAmount(20);
}

// What a render in a thread of its own gives, where the grain's random numbers start anew.
std::vector<uint8_t> InThread(const std::function<std::vector<uint8_t>()>& render) {
  return std::async(std::launch::async, render).get();
}

std::vector<uint8_t> Rendered(const std::function<void(Engine&)>& set) {
  return InThread([&] {
    Engine engine;
    engine.Load(kPhotographPath);
    Prepare(engine);
    set(engine);
    return engine.Preview().data;
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

Setter Single(const std::string& name, void (Engine::*cpp)(float), void (*c)(EngineContext*, float),
              float value) {
  return {name, [=](Engine& engine) { (engine.*cpp)(value); },
          [=](EngineContext* context) { c(context, value); }};
}

std::vector<Setter> Setters() {
  std::vector<Setter> all = {
      Single("Exposure", &Engine::SetExposure, lumvik_set_exposure, 0.5F),
      Single("Brightness", &Engine::SetBrightness, lumvik_set_brightness, 20),
      Single("Contrast", &Engine::SetContrast, lumvik_set_contrast, 30),
      Single("Highlights", &Engine::SetHighlights, lumvik_set_highlights, 50),
      Single("Shadows", &Engine::SetShadows, lumvik_set_shadows, 50),
      Single("Whites", &Engine::SetWhites, lumvik_set_whites, 50),
      Single("Blacks", &Engine::SetBlacks, lumvik_set_blacks, 50),
      Single("Temperature", &Engine::SetTemperature, lumvik_set_temperature, 5000),
      Single("Tint", &Engine::SetTint, lumvik_set_tint, 50),
      Single("Saturation", &Engine::SetSaturation, lumvik_set_saturation, 50),
      Single("Vibrance", &Engine::SetVibrance, lumvik_set_vibrance, 50),
      Single("Clarity", &Engine::SetClarity, lumvik_set_clarity, 50),
      Single("Texture", &Engine::SetTexture, lumvik_set_texture, 50),
      Single("Dehaze", &Engine::SetDehaze, lumvik_set_dehaze, 50),
      Single("NrLuminance", &Engine::SetNrLuminance, lumvik_set_nr_luminance, 50),
      Single("NrColor", &Engine::SetNrColor, lumvik_set_nr_color, 50),
      Single("SharpeningAmount", &Engine::SetSharpeningAmount, lumvik_set_sharpening_amount, 20),
      Single("SharpeningRadius", &Engine::SetSharpeningRadius, lumvik_set_sharpening_radius, 2),
      Single("SharpeningThreshold", &Engine::SetSharpeningThreshold, lumvik_set_sharpening_threshold, 3000),
      Single("Distortion", &Engine::SetDistortion, lumvik_set_distortion, 50),
      Single("CaCorrection", &Engine::SetCaCorrection, lumvik_set_ca_correction, 50),
      Single("LensVignette", &Engine::SetLensVignette, lumvik_set_lens_vignette, 50),
      Single("Defringe", &Engine::SetDefringe, lumvik_set_defringe, 100),
      Single("Rotation", &Engine::SetRotation, lumvik_set_rotation, 5),
      Single("PerspectiveH", &Engine::SetPerspectiveH, lumvik_set_perspective_h, 50),
      Single("PerspectiveV", &Engine::SetPerspectiveV, lumvik_set_perspective_v, 50),
      Single("VignetteAmount", &Engine::SetVignetteAmount, lumvik_set_vignette_amount, 80),
      Single("VignetteMidpoint", &Engine::SetVignetteMidpoint, lumvik_set_vignette_midpoint, 20),
      Single("VignetteRoundness", &Engine::SetVignetteRoundness, lumvik_set_vignette_roundness, -50),
      Single("GrainAmount", &Engine::SetGrainAmount, lumvik_set_grain_amount, 60),
      Single("GrainSize", &Engine::SetGrainSize, lumvik_set_grain_size, 80),
      {"FlipH", [](Engine& e) { e.SetFlipH(true); }, [](EngineContext* c) { lumvik_set_flip_h(c, 1); }},
      {"FlipV", [](Engine& e) { e.SetFlipV(true); }, [](EngineContext* c) { lumvik_set_flip_v(c, 1); }},
      {"Crop",
       [](Engine& e) {
         e.SetCrop({0.1F, 0.2F, 0.5F, 0.6F});
       },
       [](EngineContext* c) { lumvik_set_crop(c, 0.1F, 0.2F, 0.5F, 0.6F); }},
      {"ResetAdjustments", [](Engine& e) { e.ResetAdjustments(); }, lumvik_reset_adjustments},
  };
  const auto split = [](Engine& e) {
    e.SetSplitHighlights(40, 60, 30);
    e.SetSplitShadows(200, 50);
  };
  all.push_back({"SplitToning", split, [](EngineContext* c) {
                   lumvik_set_split_toning(c, LUMVIK_ZONE_HIGHLIGHTS, 40, 60, 30);
                   lumvik_set_split_toning(c, LUMVIK_ZONE_SHADOWS, 200, 50, 0);
                 }});
  for (const Curve curve : {Curve::kMaster, Curve::kRed, Curve::kGreen, Curve::kBlue}) {
    const int channel = static_cast<int>(curve);
    const auto set = [=](Engine& e) { e.SetToneCurve(curve, {{0, 0.1F}, {0.5F, 0.4F}, {1, 1}}); };
    const auto set_by_c = [=](EngineContext* c) {
      const float points[] = {0, 0.1F, 0.5F, 0.4F, 1, 1};
      lumvik_set_tone_curve(c, channel, points, 3);
    };
    all.push_back({"ToneCurve" + std::to_string(channel), set, set_by_c});
    // Seen because of the curve that stays.
    const Curve other = curve == Curve::kMaster ? Curve::kRed : Curve::kMaster;
    all.push_back({"ResetToneCurve" + std::to_string(channel),
                   [=](Engine& e) {
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
                   [=](Engine& e) { e.SetHsl(static_cast<Band>(band), 60, 50, -40); },
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
  EXPECT_FALSE(cpp == untouched) << "the setter cannot be seen, so that nothing is tested";
}

INSTANTIATE_TEST_SUITE_P(All, SetterTest, ::testing::ValuesIn(Setters()),
                         [](const auto& setter) { return setter.param.name; });

TEST(ToneCurveTest, NoPointsAreIgnored) {
  const auto curve = [](Engine& e) { e.SetToneCurve(Curve::kRed, {{0, 0.2F}, {1, 1}}); };
  const auto curve_and_none = [&](Engine& e) {
    curve(e);
    e.SetToneCurve(Curve::kRed, {});
  };
  EXPECT_TRUE(Rendered(curve_and_none) == Rendered(curve));
}

TEST(ApplyTest, SetsAllButTheSharpeningRadius) {
  const Enhancement e{0.1F, 2, 3, 4, 5, 6, 7, 6000, 9, 10, 11, 12, 14, 15, 16};
  const auto apply = [&](Engine& engine) {
    engine.SetSharpeningRadius(2);
    engine.Apply(e);
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
}  // namespace lumvik::test
