// What the engine develops with settings.
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <string>
#include <vector>

#include "lumvik.h"
#include "settings/settings.h"
#include "support/temp_dir.h"

namespace lumvik::host::test {
namespace {

using ContextForApply = std::unique_ptr<EngineContext, decltype(&lumvik_destroy_context)>;

// Every color, dark to bright, with detail.
cv::Mat ColorfulImage() {
  constexpr int kRows = 288;
  constexpr int kColumns = 384;
  cv::Mat image(kRows, kColumns, CV_8UC3);
  for (int y = 0; y < kRows; ++y) {
    for (int x = 0; x < kColumns; ++x) {
      image.at<cv::Vec3b>(y, x) = cv::Vec3b(static_cast<uint8_t>(10 + x / 2), static_cast<uint8_t>(y / 2),
                                            static_cast<uint8_t>((37 * x + 91 * y) % 251));
    }
  }
  return image;
}

class ApplyTest : public ::testing::Test {
 protected:
  ApplyTest() { EXPECT_TRUE(cv::imwrite(path_, ColorfulImage())); }

  // The preview that the engine develops after `set` was called.
  std::vector<uint8_t> Developed(const std::function<void(EngineContext*)>& set) const {
    const ContextForApply context(lumvik_create_context(), lumvik_destroy_context);
    EXPECT_EQ(lumvik_load_arw(context.get(), path_.c_str(), 1), LUMVIK_OK);
    set(context.get());
    std::vector<uint8_t> pixels(4 * ColorfulImage().total());  // none of the settings enlarges the image
    EXPECT_EQ(lumvik_get_preview(context.get(), pixels.data(), static_cast<int>(pixels.size())), LUMVIK_OK);
    return pixels;
  }

  std::vector<uint8_t> Developed(const Settings& held) const {
    return Developed([&](EngineContext* context) { Apply(Completed(held), context); });
  }

  const lumvik::test::TempDir folder_;
  const std::string path_ = folder_.File("in.png");
};

TEST_F(ApplyTest, NeutralSettingsKeepTheImage) {
  cv::Mat expected;
  cv::cvtColor(ColorfulImage(), expected, cv::COLOR_BGR2RGBA);
  expected = expected.reshape(1);
  EXPECT_EQ(Developed(Settings()), std::vector<uint8_t>(expected.begin<uint8_t>(), expected.end<uint8_t>()));
}

TEST_F(ApplyTest, EngineValuesAreThoseAfterLoading) {
  EXPECT_EQ(Developed(EngineSettings()), Developed([](EngineContext*) {}));
  EXPECT_NE(Developed(EngineSettings()), Developed(Settings()));
}

// With this base, every setting has an effect.
TEST_F(ApplyTest, EverySettingHasItsOwnEffect) {
  Settings base = {{"sharpening_amount", 30.0F},
                   {"sharpening_radius", 2.0F},
                   {"vignette_amount", 20.0F},
                   {"vignette_roundness", -80.0F},
                   {"split_toning.highlight_hue", 40.0F},
                   {"split_toning.highlight_saturation", 20.0F},
                   {"split_toning.shadow_saturation", 20.0F},
                   {"crop.x", 0.1F},
                   {"crop.y", 0.1F},
                   {"crop.w", 0.7F},
                   {"crop.h", 0.7F},
                   {"tone_curves.master", ToneCurve{{0, 0.1F}, {1, 0.9F}}}};
  base = Completed(base);
  std::map<std::vector<uint8_t>, std::string> keys = {{Developed(base), "(none)"}};
  for (const SettingRule& rule : SettingRules()) {
    if (rule.key.rfind("grain", 0) == 0) continue;  // random
    Settings changed = base;
    SettingValue& value = changed.at(rule.key);
    if (auto* number = std::get_if<float>(&value)) {
      *number += (rule.range.highest - *number) * 0.9F;
    } else if (auto* flag = std::get_if<bool>(&value)) {
      *flag = !*flag;
    } else {
      value = ToneCurve{{0, 0}, {0.5F, 0.7F}, {1, 1}};
    }
    const auto [same, is_new] = keys.emplace(Developed(changed), rule.key);
    EXPECT_TRUE(is_new) << rule.key << " has the effect of " << same->second;
  }
}

TEST_F(ApplyTest, GrainIsApplied) {
  Settings settings = {{"grain_amount", 50.0F}};
  EXPECT_NE(Developed(settings), Developed(Settings()));
}

TEST_F(ApplyTest, SettingsOfOneCallGoToTheirParameters) {
  const Settings settings = {{"hsl.orange.hue", 30.0F},
                             {"hsl.orange.saturation", -40.0F},
                             {"hsl.orange.luminance", 20.0F},
                             {"hsl.magenta.hue", -50.0F},
                             {"split_toning.highlight_hue", 45.0F},
                             {"split_toning.highlight_saturation", 30.0F},
                             {"split_toning.shadow_hue", 220.0F},
                             {"split_toning.shadow_saturation", 60.0F},
                             {"split_toning.balance", -25.0F},
                             {"crop.x", 0.1F},
                             {"crop.y", 0.2F},
                             {"crop.w", 0.6F},
                             {"crop.h", 0.5F},
                             {"tone_curves.blue", ToneCurve{{0, 0}, {0.5F, 0.4F}, {1, 1}}},
                             {"flip_v", true}};
  const float blue[] = {0, 0, 0.5F, 0.4F, 1, 1};
  EXPECT_EQ(Developed(settings), Developed([&](EngineContext* context) {
              lumvik_set_temperature(context, 6500);
              lumvik_set_hsl(context, LUMVIK_BAND_ORANGE, 30, -40, 20);
              lumvik_set_hsl(context, LUMVIK_BAND_MAGENTA, -50, 0, 0);
              lumvik_set_split_toning(context, LUMVIK_ZONE_HIGHLIGHTS, 45, 30, -25);
              lumvik_set_split_toning(context, LUMVIK_ZONE_SHADOWS, 220, 60, 0);
              lumvik_set_crop(context, 0.1F, 0.2F, 0.6F, 0.5F);
              lumvik_set_tone_curve(context, LUMVIK_CURVE_BLUE, blue, 3);
              lumvik_set_flip_v(context, 1);
            }));
}

}  // namespace
}  // namespace lumvik::host::test
