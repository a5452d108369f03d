// Settings files: saved completely and exactly, equivalent to options when read, and with errors that name
// line and key.
#include <filesystem>
#include <nlohmann/json.hpp>

#include "command_test.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

// Every option except grain, which is random; some values have no exact float.
const std::vector<std::string> kEverything = {"--exposure=0.1",
                                              "--brightness=3.3",
                                              "--contrast=7.7",
                                              "--highlights=-11.1",
                                              "--shadows=12.3",
                                              "--whites=-4.7",
                                              "--blacks=-3.1",
                                              "--temperature=6123.4",
                                              "--tint=-7.3",
                                              "--saturation=9.1",
                                              "--vibrance=17.7",
                                              "--sharpening-amount=40.4",
                                              "--sharpening-radius=1.3",
                                              "--sharpening-threshold=12.1",
                                              "--nr-luminance=21.3",
                                              "--nr-color=26.7",
                                              "--clarity=13.1",
                                              "--texture=-8.9",
                                              "--dehaze=10.7",
                                              "--distortion=6.1",
                                              "--ca-correction=33.3",
                                              "--lens-vignette=15.1",
                                              "--defringe=44.1",
                                              "--rotation=2.3",
                                              "--perspective-h=4.1",
                                              "--perspective-v=-3.7",
                                              "--vignette-amount=23.1",
                                              "--vignette-midpoint=41.1",
                                              "--vignette-roundness=-31.7",
                                              "--grain-size=37.1",
                                              "--flip-h",
                                              "--flip-v",
                                              "--crop=0.1,0.2,0.7,0.6",
                                              "--tone-curve=0,0.05 0.3,0.35 1,0.9",
                                              "--tone-curve-red=0,0 1,1",
                                              "--tone-curve-green=0,0.1 1,1",
                                              "--hsl=red=11.1,-12.2,3.3",
                                              "--hsl=blue=-7.7,8.8,9.9",
                                              "--split-highlights=47.1,21.1",
                                              "--split-shadows=211.3,31.1",
                                              "--split-balance=-17.3"};

class SettingsFileTest : public CommandTest {
 protected:
  std::string Settings(const std::string& text) const {
    WriteFile(Path("settings.json"), text);
    return Path("settings.json");
  }

  // Develops with these options and returns the pixels.
  std::string Picture(std::vector<std::string> options) const {
    options.emplace_back("--overwrite");
    const ProcessResult result = Develop(in_, Path("out.png"), options);
    EXPECT_EQ(result.status, kSuccess) << result.err;
    return PixelsOf(Path("out.png"));
  }

  Json Saved(std::vector<std::string> options) const {
    options.insert(options.end(), {"--save-settings", Path("saved.json")});
    Picture(options);
    return Json::parse(ReadFile(Path("saved.json")));
  }

  const std::string in_ = Photograph("in.png");
};

TEST_F(SettingsFileTest, NeutralSettingsAreSaved) {
  const Json band = {{"hue", 0}, {"saturation", 0}, {"luminance", 0}};
  Json expected = {
      {"lumvik", 2},
      {"temperature", 6500},
      {"sharpening_radius", 1},
      {"vignette_midpoint", 50},
      {"grain_size", 25},
      {"flip_h", false},
      {"flip_v", false},
      {"crop", {{"x", 0}, {"y", 0}, {"w", 0}, {"h", 0}}},
      {"tone_curves",
       {{"master", Json::array()},
        {"red", Json::array()},
        {"green", Json::array()},
        {"blue", Json::array()}}},
      {"split_toning",
       {{"highlight_hue", 0},
        {"highlight_saturation", 0},
        {"shadow_hue", 0},
        {"shadow_saturation", 0},
        {"balance", 0}}},
      {"hsl",
       {{"red", band},
        {"orange", band},
        {"yellow", band},
        {"green", band},
        {"aqua", band},
        {"blue", band},
        {"purple", band},
        {"magenta", band}}},
  };
  for (const char* key : {"exposure",
                          "brightness",
                          "contrast",
                          "highlights",
                          "shadows",
                          "whites",
                          "blacks",
                          "tint",
                          "saturation",
                          "vibrance",
                          "sharpening_amount",
                          "sharpening_threshold",
                          "nr_luminance",
                          "nr_color",
                          "clarity",
                          "texture",
                          "dehaze",
                          "distortion",
                          "ca_correction",
                          "lens_vignette",
                          "defringe",
                          "rotation",
                          "perspective_h",
                          "perspective_v",
                          "vignette_amount",
                          "vignette_roundness",
                          "grain_amount"}) {
    expected[key] = 0;
  }
  EXPECT_EQ(Saved({}), expected);
}

TEST_F(SettingsFileTest, TheOptionsAreSavedUnderTheirKeys) {
  const Json saved = Saved(kEverything);
  EXPECT_EQ(saved["exposure"], 0.1);
  EXPECT_EQ(saved["temperature"], 6123.4);
  EXPECT_EQ(saved["perspective_v"], -3.7);
  EXPECT_EQ(saved["crop"], (Json{{"x", 0.1}, {"y", 0.2}, {"w", 0.7}, {"h", 0.6}}));
  EXPECT_EQ(saved["flip_v"], true);
  EXPECT_EQ(saved["hsl"]["blue"], (Json{{"hue", -7.7}, {"saturation", 8.8}, {"luminance", 9.9}}));
  EXPECT_EQ(saved["split_toning"], (Json{{"highlight_hue", 47.1},
                                         {"highlight_saturation", 21.1},
                                         {"shadow_hue", 211.3},
                                         {"shadow_saturation", 31.1},
                                         {"balance", -17.3}}));
  EXPECT_EQ(saved["tone_curves"]["master"], (Json{{0.0, 0.05}, {0.3, 0.35}, {1.0, 0.9}}));
  EXPECT_EQ(saved["tone_curves"]["red"], (Json{{0.0, 0.0}, {1.0, 1.0}}));
  EXPECT_EQ(saved["tone_curves"]["blue"], Json::array());
}

TEST_F(SettingsFileTest, SavedSettingsReproduceImageAndFile) {
  std::vector<std::string> options = kEverything;
  options.insert(options.end(), {"--save-settings", Path("first.json")});
  const std::string picture = Picture(options);
  EXPECT_NE(picture, Picture({}));
  EXPECT_EQ(Picture({"--settings", Path("first.json"), "--save-settings", Path("second.json")}), picture);
  EXPECT_EQ(ReadFile(Path("second.json")), ReadFile(Path("first.json")));
}

TEST_F(SettingsFileTest, MissingKeysAreNeutral) {
  EXPECT_EQ(Picture({"--settings", Settings(R"({"lumvik": 2})")}), Picture({}));
  EXPECT_EQ(Picture({"--settings", Settings(R"({"lumvik": 2, "hsl": {"red": {"hue": 40}}, "crop": {}})")}),
            Picture({"--hsl", "red=40,0,0"}));
}

// A file of version 1 without a temperature was made with that of the engine.
TEST_F(SettingsFileTest, VersionOneKeepsItsTemperature) {
  EXPECT_EQ(Saved({"--settings", Settings(R"({"lumvik": 1})")})["temperature"], 5500);
  EXPECT_EQ(Saved({"--settings", Settings(R"({"lumvik": 1, "temperature": 4000})")})["temperature"], 4000);
  EXPECT_EQ(Picture({"--settings", Settings(R"({"lumvik": 1})")}), Picture({"--temperature", "5500"}));
}

TEST_F(SettingsFileTest, OptionsOverrideSingleValuesOfTheFile) {
  const std::string file = Settings(
      R"({"lumvik": 2, "exposure": 1, "tint": 20, "flip_h": true, "hsl": {"red": {"hue": 40}, "blue": {"hue": 9}},
          "tone_curves": {"master": [[0, 1], [1, 0]], "red": [[0, 0.2], [1, 1]]}, "split_toning": {"balance": 5}})");
  EXPECT_EQ(Picture({"--settings", file, "--exposure=-1", "--no-flip-h", "--hsl=red=0,-50,0",
                     "--tone-curve=none", "--split-highlights=40,30"}),
            Picture({"--exposure=-1", "--tint=20", "--hsl=red=0,-50,0", "--hsl=blue=9,0,0",
                     "--tone-curve-red=0,0.2 1,1", "--split-highlights=40,30", "--split-balance=5"}));
}

// An empty curve is exactly linear, while two points are not next to another curve.
TEST_F(SettingsFileTest, AnEmptyCurveDiffersFromTwoPoints) {
  const char* const form = R"({"lumvik": 2, "tone_curves": {"master": [[0, 0], [0.5, 0.6], [1, 1]], "red": )";
  const std::string empty = Picture({"--settings", Settings(std::string(form) + "[]}}")});
  const std::string straight = Picture({"--settings", Settings(std::string(form) + "[[0, 0], [1, 1]]}}")});
  EXPECT_EQ(empty, Picture({"--tone-curve=0,0 0.5,0.6 1,1"}));
  EXPECT_EQ(straight, Picture({"--tone-curve=0,0 0.5,0.6 1,1", "--tone-curve-red=0,0 1,1"}));
  EXPECT_NE(empty, straight);
}

TEST_F(SettingsFileTest, TheSameFileCanBeReadAndWritten) {
  const std::string file = Settings(R"({"lumvik": 1, "exposure": 1, "tint": 20})");
  Picture({"--settings", file, "--tint=30", "--save-settings", file});
  const Json saved = Json::parse(ReadFile(file));
  EXPECT_EQ(saved["exposure"], 1);
  EXPECT_EQ(saved["tint"], 30);
}

struct Fault {
  const char* text;
  const char* told;
};

constexpr Fault kFaults[] = {
    {"[]", "line 1: a settings file must be an object"},
    {"{}", "line 1: lumvik: missing; it must be 2"},
    {"{\n\"lumvik\": 3, \"sepia\": 1}", "line 2: lumvik: 3 is not a supported version"},
    {"{\"lumvik\": true}", "line 1: lumvik: true is not a supported version"},
    {"{\"lumvik\": 1,\n\"sepia\": 1\n}", "line 2: sepia: there is no such setting"},
    {"{\"lumvik\": 1, \"a\\nb\": 1}", "line 1: a\\nb: there is no such setting"},
    {"{\"lumvik\": 1,\n\"hsl\": {\n\"rod\": {}}}", "line 3: hsl.rod: there is no such setting"},
    {"{\"lumvik\": 1, \"hsl.red.hue\": 1}", "line 1: hsl.red.hue: there is no such setting"},
    {"{\"lumvik\": 1,\n\"hsl\": 3}", "line 2: hsl: 3 is not an object"},
    {"{\"lumvik\": 1,\n\"hsl\": {\"red\":\n {\"hue\": 200\n}}}",
     "line 3: hsl.red.hue: 200 is not a number in -180..180"},
    {"{\"lumvik\": 1,\n\"exposure\": \"1\"}", "line 2: exposure: \"1\" is not a number in -10..10"},
    {"{\"lumvik\": 1,\n\"exposure\": true}", "line 2: exposure: true is not a number in -10..10"},
    {"{\"lumvik\": 1,\n\"exposure\": null}", "line 2: exposure: null is not a number in -10..10"},
    {"{\"lumvik\": 1,\n\"exposure\": [1]}", "line 2: exposure: a list is not a number in -10..10"},
    {"{\"lumvik\": 1,\n\"exposure\": {}}", "line 2: exposure: an object is not a number in -10..10"},
    {"{\"lumvik\": 1,\n\"sharpening_radius\": 0}",
     "line 2: sharpening_radius: 0 is not a number in 0.01..100"},
    {"{\"lumvik\": 1,\n\"exposure\": 1e999\n}", "line 2: exposure: the number is too large"},
    {"{\"lumvik\": 1,\n\"exposure\": NaN\n}", "line 2: after exposure: syntax error"},
    {"{\"lumvik\": 1,\n\"flip_h\": 1}", "line 2: flip_h: 1 is not true or false"},
    {"{\"lumvik\": 1,\n\"tint\": 1,\n\"tint\": 1}", "line 3: tint: duplicate key"},
    {"{\"lumvik\": 1,\n\"crop\": {\"x\": 0,\n\"x\": 0}}", "line 3: crop.x: duplicate key"},
    {"{\"lumvik\": 1,\n\"tint\": 1\n\"exposure\": 1}",
     "line 3: after tint: syntax error while parsing object"},
    {"{\"lumvik\": 1,\n\"tint\": 1\n", "line 2: after tint: syntax error while parsing object"},
    {"{\"lumvik\": 1} 2", "line 1: after lumvik: syntax error while parsing value"},
    {"{\"lumvik\": 1,\n\"tone_curves\": []}", "line 2: tone_curves: a list is not an object"},
    {"{\"lumvik\": 1,\n\"tone_curves\": {\"red\": 1}}",
     "line 2: tone_curves.red: 1 is not a list of points [x, y]"},
    {"{\"lumvik\": 1,\n\"tone_curves\": {\"red\": [[0, 0, 0]]}}",
     "line 2: tone_curves.red: a list is not a point [x, y]"},
    {"{\"lumvik\": 1,\n\"tone_curves\": {\"red\": [[0, 0], [1, 1.5]]}}",
     "line 2: tone_curves.red: 1.5 is not a number in 0..1"},
    {"{\"lumvik\": 1,\n\"tone_curves\": {\"red\": [[0, 0]]}}",
     "line 2: tone_curves.red: a curve needs at least two points"},
    {"{\"lumvik\": 1,\n\"tone_curves\": {\"red\": [[0, 0], [0, 1]]}}",
     "line 2: tone_curves.red: the points of a curve must be in ascending order of x"},
};

TEST_F(SettingsFileTest, ErrorsNameLineAndKey) {
  for (const Fault& fault : kFaults) {
    const std::string file = Settings(fault.text);
    ExpectRefusal(Develop(in_, Path("out.png"), {"--settings", file, "--save-settings", Path("saved.json")}),
                  kFailure, "cannot use the settings '" + file + "': " + fault.told);
  }
  EXPECT_FALSE(fs::exists(Path("out.png")));
  EXPECT_FALSE(fs::exists(Path("saved.json")));
}

TEST_F(SettingsFileTest, FilesWithoutJsonAreRefused) {
  fs::create_directory(Path("folder"));
  const auto refused = [&](const std::string& file, const std::string& why) {
    ExpectRefusal(Develop(in_, Path("out.png"), {"--settings", file}), kFailure, "'" + file + "': " + why);
  };
  refused("", "there is no such file");
  refused(Path("missing.json"), "there is no such file");
  refused(Path("folder"), "it is a folder");
  refused(in_, "line 3: a NUL character is not JSON");
  refused(Settings(std::string(300000, ' ')), "the file is too large");
  const std::string empty = Settings("");
  ExpectRefusal(Develop(in_, Path("out.png"), {"--settings", empty}), kFailure, "'" + empty + "' is empty");
}

TEST_F(SettingsFileTest, UnwritableFilesAreRefused) {
  fs::create_directory(Path("folder.json"));
  fs::create_symlink("in.png", Path("link.json"));
  const std::string before = ReadFile(in_);
  const auto refused = [&](const std::string& file, int status, const std::string& why) {
    ExpectRefusal(Develop(in_, Path("out.png"), {"--save-settings", file}), status, why);
  };
  refused(Path("other.jpg"), kUsage, "--save-settings: '" + Path("other.jpg") + "' does not end in .json");
  refused("", kUsage, "--save-settings: '' does not end in .json");
  refused(Path("no folder/s.json"), kFailure, "there is no folder '" + Path("no folder") + "'");
  refused(Path("folder.json"), kFailure, "it is a folder");
  refused(Path("link.json"), kFailure, "it is the input photograph");
  EXPECT_FALSE(fs::exists(Path("out.png")));
  EXPECT_EQ(ReadFile(in_), before);
}

// A file size limit simulates a full disk.
// With a tone curve of many points the settings are larger than the image.
TEST_F(SettingsFileTest, AFullDiskKeepsTheExistingFile) {
  WriteFile(Path("saved.json"), "last year's work");
  std::string curve;
  for (int i = 0; i <= 1000; ++i) curve += std::to_string(i / 1000.0) + ",0.5 ";
  const std::vector<std::string> prefix = {"sh", "-c", "trap '' XFSZ; ulimit -f 32; exec \"$0\" \"$@\"",
                                           LUMVIK_COMMAND};
  const ProcessResult result =
      Develop(in_, Path("out.png"),
              {"--tone-curve", curve, "--save-settings", Path("saved.json"), "--overwrite"}, prefix);
  EXPECT_EQ(result.status, kDiskFull);
  EXPECT_EQ(result.err, "lumvik: cannot write '" + Path("saved.json") + "': File too large; the folder '" +
                            fs::path(Path("saved.json")).parent_path().string() + "' has no space for it\n");
  EXPECT_EQ(ReadFile(Path("saved.json")), "last year's work");
  EXPECT_TRUE(fs::exists(Path("out.png"))) << "the image is not lost";
}

}  // namespace
}  // namespace lumvik::test
