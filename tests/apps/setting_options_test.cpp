// Every setting option equals its engine call and changes the image.
#include <functional>
#include <memory>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <ostream>

#include "command_test.h"
#include "lumvik.h"

namespace lumvik::test {
namespace {

using Setter = void (*)(EngineContext*, float);
using Options = std::vector<std::string>;

constexpr float kNeutralTemperature = 6500;  // the engine starts with another

struct SingleCase {
  const char* option;
  Setter set;
  const char* value;
  const char* other_option = nullptr;  // required for the option to have an effect
  Setter set_other = nullptr;
  const char* other_value = nullptr;
};

void PrintTo(const SingleCase& single, std::ostream* out) {
  *out << single.option;
}

constexpr SingleCase kSingles[] = {
    {"--exposure", lumvik_set_exposure, "0.7"},
    {"--brightness", lumvik_set_brightness, "-31"},
    {"--contrast", lumvik_set_contrast, "41"},
    {"--highlights", lumvik_set_highlights, "-61"},
    {"--shadows", lumvik_set_shadows, "62"},
    {"--whites", lumvik_set_whites, "-43"},
    {"--blacks", lumvik_set_blacks, "44"},
    {"--temperature", lumvik_set_temperature, "7100"},
    {"--tint", lumvik_set_tint, "-45"},
    {"--saturation", lumvik_set_saturation, "-46"},
    {"--vibrance", lumvik_set_vibrance, "47"},
    {"--clarity", lumvik_set_clarity, "48"},
    {"--texture", lumvik_set_texture, "-49"},
    {"--dehaze", lumvik_set_dehaze, "50"},
    {"--nr-luminance", lumvik_set_nr_luminance, "51"},
    {"--nr-color", lumvik_set_nr_color, "52"},
    {"--sharpening-amount", lumvik_set_sharpening_amount, "110"},
    {"--sharpening-radius", lumvik_set_sharpening_radius, "2.5", "--sharpening-amount",
     lumvik_set_sharpening_amount, "110"},
    {"--sharpening-threshold", lumvik_set_sharpening_threshold, "3000", "--sharpening-amount",
     lumvik_set_sharpening_amount, "110"},
    {"--distortion", lumvik_set_distortion, "-53"},
    {"--ca-correction", lumvik_set_ca_correction, "100"},
    {"--lens-vignette", lumvik_set_lens_vignette, "54"},
    {"--defringe", lumvik_set_defringe, "55"},
    {"--rotation", lumvik_set_rotation, "-7.5"},
    {"--perspective-h", lumvik_set_perspective_h, "56"},
    {"--perspective-v", lumvik_set_perspective_v, "-57"},
    {"--vignette-amount", lumvik_set_vignette_amount, "58"},
    {"--vignette-midpoint", lumvik_set_vignette_midpoint, "20", "--vignette-amount",
     lumvik_set_vignette_amount, "58"},
    {"--vignette-roundness", lumvik_set_vignette_roundness, "-59", "--vignette-amount",
     lumvik_set_vignette_amount, "58"},
};

// Slightly uneven patches of every color, large enough for corrections that move whole pixels.
cv::Mat Patches() {
  cv::RNG random(1);
  cv::Mat patches(8, 12, CV_8UC3);
  random.fill(patches, cv::RNG::UNIFORM, 30, 220);
  cv::Mat picture;
  cv::resize(patches, picture, cv::Size(480, 320), 0, 0, cv::INTER_NEAREST);
  cv::Mat unevenness(picture.size(), CV_8UC3);
  random.fill(unevenness, cv::RNG::UNIFORM, 0, 25);
  return picture + unevenness;
}

class SettingOptionsTest : public CommandTest {
 protected:
  SettingOptionsTest() { EXPECT_TRUE(cv::imwrite(in_, Patches())); }

  std::string ByCommand(const Options& options) const {
    const ProcessResult result = Develop(in_, Path("command.png"), options);
    EXPECT_EQ(result.status, kSuccess) << result.err;
    return PixelsOf(Path("command.png"));
  }

  std::string ByEngine(const std::function<void(EngineContext*)>& set) const {
    const std::unique_ptr<EngineContext, decltype(&lumvik_destroy_context)> context(lumvik_create_context(),
                                                                                    lumvik_destroy_context);
    EXPECT_EQ(lumvik_load_arw(context.get(), in_.c_str(), 1), 0);
    lumvik_set_temperature(context.get(), kNeutralTemperature);
    set(context.get());
    EXPECT_EQ(lumvik_export_png(context.get(), Path("engine.png").c_str(), 8), 0);
    return PixelsOf(Path("engine.png"));
  }

  // Expects the same image as from the engine calls, and another than without options.
  void ExpectSame(const Options& options, const std::function<void(EngineContext*)>& set) const {
    SCOPED_TRACE(options.front());
    const std::string picture = ByCommand(options);
    EXPECT_TRUE(picture == ByEngine(set)) << "the command and the engine differ";
    EXPECT_TRUE(picture != plain_) << "nothing has changed";
  }

  const std::string in_ = Path("in.png");
  std::string plain_;

  void SetUp() override { plain_ = ByCommand({}); }
};

TEST_F(SettingOptionsTest, WithoutOptionsSettingsAreNeutral) {
  EXPECT_EQ(plain_, ByEngine([](EngineContext*) {}));
}

class SingleOptionTest : public SettingOptionsTest, public ::testing::WithParamInterface<SingleCase> {};
INSTANTIATE_TEST_SUITE_P(All, SingleOptionTest, ::testing::ValuesIn(kSingles),
                         [](const auto& single) { return TestNameOf(single.param.option); });

TEST_P(SingleOptionTest, EqualsItsSetter) {
  const SingleCase& single = GetParam();
  Options others;
  if (single.other_option != nullptr) others = {single.other_option, single.other_value};
  Options options = others;
  options.insert(options.begin(), {single.option, single.value});
  ExpectSame(options, [&](EngineContext* context) {
    if (single.set_other != nullptr) single.set_other(context, std::stof(single.other_value));
    single.set(context, std::stof(single.value));
  });
  EXPECT_TRUE(others.empty() || ByCommand(options) != ByCommand(others)) << "nothing has changed";
}

TEST_F(SettingOptionsTest, CurvesAffectTheirChannels) {
  constexpr float kPoints[] = {0, 0.1F, 0.4F, 0.6F, 1, 0.9F};
  constexpr const char* kOptions[] = {"--tone-curve", "--tone-curve-red", "--tone-curve-green",
                                      "--tone-curve-blue"};
  for (int channel = 0; channel < 4; ++channel) {
    ExpectSame({kOptions[channel], " 0,0.1  0.4,.6 1,9e-1"},
               [&](EngineContext* context) { lumvik_set_tone_curve(context, channel, kPoints, 3); });
  }
  EXPECT_EQ(ByCommand({"--tone-curve", "none"}), plain_);
}

TEST_F(SettingOptionsTest, BandsAreSelectedByName) {
  constexpr const char* kBands[LUMVIK_BAND_COUNT] = {"red",  "orange", "yellow", "green",
                                                     "aqua", "blue",   "purple", "magenta"};
  for (int band = 0; band < LUMVIK_BAND_COUNT; ++band) {
    ExpectSame({"--hsl", std::string(kBands[band]) + "=-40,50,-30"},
               [&](EngineContext* context) { lumvik_set_hsl(context, band, -40, 50, -30); });
  }
  ExpectSame({"--hsl", "red=40,0,0", "--hsl", "blue=0,-50,10"}, [](EngineContext* context) {
    lumvik_set_hsl(context, LUMVIK_BAND_RED, 40, 0, 0);
    lumvik_set_hsl(context, LUMVIK_BAND_BLUE, 0, -50, 10);
  });
}

// An option before IN takes only its own value.
TEST_F(SettingOptionsTest, ABandTakesASingleArgument) {
  Options arguments = Command();
  arguments.insert(arguments.end(), {"develop", "--hsl", "red=40,0,0", in_, "-o", Path("out.png")});
  EXPECT_EQ(RunProcess(arguments).out, Path("out.png") + " 480x320\n");
}

TEST_F(SettingOptionsTest, SplitToningAffectsItsZones) {
  ExpectSame({"--split-highlights", "40,60"}, [](EngineContext* context) {
    lumvik_set_split_toning(context, LUMVIK_ZONE_HIGHLIGHTS, 40, 60, 0);
  });
  ExpectSame({"--split-shadows", "220,60"}, [](EngineContext* context) {
    lumvik_set_split_toning(context, LUMVIK_ZONE_SHADOWS, 220, 60, 0);
  });
  ExpectSame({"--split-balance", "-70", "--split-shadows", "220,60"}, [](EngineContext* context) {
    lumvik_set_split_toning(context, LUMVIK_ZONE_HIGHLIGHTS, 0, 0, -70);
    lumvik_set_split_toning(context, LUMVIK_ZONE_SHADOWS, 220, 60, 0);
  });
}

TEST_F(SettingOptionsTest, FlipsMirror) {
  const cv::Mat plain = Developed(in_, Path("plain.png"));
  const struct {
    Options options;
    int code;  // of cv::flip
  } cases[] = {{{"--flip-h"}, 1}, {{"--flip-v"}, 0}, {{"--flip-h", "--flip-v"}, -1}};
  for (const auto& c : cases) {
    cv::Mat mirrored;
    cv::flip(plain, mirrored, c.code);
    EXPECT_EQ(GreatestDifference(Developed(in_, Path("out.png"), c.options), mirrored), 0);
  }
  EXPECT_EQ(ByCommand({"--no-flip-h", "--no-flip-v"}), plain_);
}

TEST_F(SettingOptionsTest, CropKeepsItsRectangle) {
  const cv::Mat plain = Developed(in_, Path("plain.png"));
  const cv::Mat cropped = Developed(in_, Path("out.png"), {"--crop", "0.25,0.5,0.5,0.25"});
  ASSERT_EQ(cropped.size(), cv::Size(240, 80));
  EXPECT_EQ(GreatestDifference(cropped, plain(cv::Rect(120, 160, 240, 80))), 0);
  EXPECT_EQ(Develop(in_, Path("out.png"), {"--crop", "0,0,0.5,1"}).out, Path("out.png") + " 240x320\n");
}

// Grain is random, so that only its amount and coarseness can be compared.
TEST_F(SettingOptionsTest, GrainHasItsAmountAndSize) {
  ASSERT_TRUE(cv::imwrite(in_, cv::Mat(100, 100, CV_8UC3, cv::Scalar::all(128))));
  const auto grain = [&](const Options& options) {
    cv::Mat picture = Developed(in_, Path("out.png"), options);
    cv::extractChannel(picture, picture, 1);
    return picture;
  };
  const auto strength = [](const cv::Mat& picture) {
    cv::Scalar mean, deviation;
    cv::meanStdDev(picture, mean, deviation);
    return deviation[0];
  };
  // Coarse grain is correlated between neighbors.
  const auto fineness = [&](const cv::Mat& picture) {
    return MeanDifference(picture.colRange(1, 100), picture.colRange(0, 99)) / strength(picture);
  };
  EXPECT_EQ(strength(grain({"--grain-amount", "0"})), 0);
  EXPECT_GT(strength(grain({"--grain-amount", "100"})), 1.5 * strength(grain({"--grain-amount", "40"})));
  EXPECT_GT(fineness(grain({"--grain-amount", "100", "--grain-size", "0"})),
            1.5 * fineness(grain({"--grain-amount", "100", "--grain-size", "100"})));
}

}  // namespace
}  // namespace lumvik::test
