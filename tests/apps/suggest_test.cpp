// Printing and applying suggestions.
#include <cmath>
#include <nlohmann/json.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include "command_test.h"

namespace lumvik::test {
namespace {

using Json = nlohmann::json;

class SuggestTest : public CommandTest {
 protected:
  static ProcessResult Suggest(const std::vector<std::string>& arguments) {
    std::vector<std::string> command = Command();
    command.emplace_back("suggest");
    command.insert(command.end(), arguments.begin(), arguments.end());
    return RunProcess(command);
  }

  static Json Suggestions(const std::string& photograph) {
    const ProcessResult result = Suggest({photograph, "--json"});
    EXPECT_EQ(result.status, kSuccess) << result.err;
    return Json::parse(result.out);
  }

  // Dark sky over bright water; the horizon rises to the right by `degrees`.
  std::string Horizon(const std::string& name, double degrees) const {
    cv::Mat picture(600, 900, CV_8UC3, cv::Scalar(90, 60, 50));
    const double rise = std::tan(degrees * CV_PI / 180) * picture.cols / 2;
    const int middle = picture.rows / 2;
    const std::vector<cv::Point> water = {{0, middle + cvRound(rise)},
                                          {picture.cols, middle - cvRound(rise)},
                                          {picture.cols, picture.rows},
                                          {0, picture.rows}};
    cv::fillConvexPoly(picture, water, cv::Scalar(200, 190, 180), cv::LINE_AA);
    cv::imwrite(Path(name), picture);
    return Path(name);
  }
};

TEST_F(SuggestTest, JsonContainsEveryTool) {
  for (const std::string& photograph :
       {std::string(LUMVIK_SAMPLES "/sample_small.ARW"), Photograph("in.png")}) {
    const Json all = Suggestions(photograph);
    EXPECT_EQ(all.size(), 5U + 4U) << "five tools, and the summary of every command";
    const float exposure = all.at("exposure").at("exposure");
    EXPECT_GE(exposure, -0.25F);
    EXPECT_LE(exposure, 1.0F);
    EXPECT_EQ(all.at("white_balance"), Json({{"temperature", 6500.0}, {"tint", 0.0}}));
    EXPECT_EQ(all.at("enhance").at("blacks"), 5.0);
    EXPECT_EQ(all.at("enhance").at("vibrance"), 16.0);
    EXPECT_EQ(all.at("enhance").count("sharpening_radius"), 0U);
    const Json& crop = all.at("crop");
    EXPECT_GT(crop.at("w").get<float>(), 0.5F);
    EXPECT_LE(crop.at("x").get<float>() + crop.at("w").get<float>(), 1.0F);
    EXPECT_EQ(all.at("straighten").size(), 1U);
  }
}

TEST_F(SuggestTest, TheTableHasOneLinePerValue) {
  const std::string in = Photograph("in.png");
  const ProcessResult result = Suggest({in});
  EXPECT_EQ(result.status, kSuccess);
  EXPECT_EQ(result.err, "");
  std::size_t values = 0;
  for (const Json& tool : Suggestions(in)) values += tool.size();
  EXPECT_EQ(static_cast<std::size_t>(std::count(result.out.begin(), result.out.end(), '\n')), values);
  EXPECT_NE(result.out.find("white_balance  temperature            6500.0000\n"), std::string::npos);
}

TEST_F(SuggestTest, AnUnreadableFile) {
  ExpectRefusal(Suggest({Path("missing.jpg")}), kFailure, Path("missing.jpg"));
  ExpectRefusal(Suggest({}), kUsage, "IN");
}

TEST_F(SuggestTest, TheSuggestedRotationLevelsAHorizon) {
  for (const double degrees : {5.0, -3.0}) {
    const std::string tilted = Horizon("tilted.png", degrees);
    const float rotation = Suggestions(tilted).at("straighten").at("rotation");
    EXPECT_NEAR(rotation, -degrees, 1.0) << "turning counter-clockwise is positive";
    Developed(tilted, Path("level.png"), {"--auto-straighten", "--crop", "0.15,0.15,0.7,0.7"});
    const float rest = Suggestions(Path("level.png")).at("straighten").at("rotation");
    EXPECT_NEAR(rest, 0, 1.0);
  }
}

TEST_F(SuggestTest, AutoAppliesSuggestionsExceptTheSharpeningRadius) {
  const std::string in = Photograph("in.png");
  Developed(in, Path("auto.png"), {"--auto", "--save-settings", Path("used.json")});
  const Json used = Json::parse(ReadFile(Path("used.json")));
  const Json enhance = Suggestions(in).at("enhance");
  for (const auto& [key, value] : enhance.items()) EXPECT_EQ(used.at(key), value) << key;
  EXPECT_EQ(used.at("sharpening_radius"), 1.0);
  Developed(in, Path("settings.png"), {"--settings", Path("used.json")});
  EXPECT_EQ(PixelsOf(Path("auto.png")), PixelsOf(Path("settings.png")));
}

TEST_F(SuggestTest, GivenSettingsOverrideSuggestions) {
  const std::string in = Photograph("in.png");
  WriteFile(Path("file.json"), R"({"lumvik": 2, "vibrance": 3, "contrast": 7})");
  Developed(
      in, Path("out.png"),
      {"--auto", "--contrast", "11", "--settings", Path("file.json"), "--save-settings", Path("used.json")});
  const Json used = Json::parse(ReadFile(Path("used.json")));
  EXPECT_EQ(used.at("contrast"), 11.0);
  EXPECT_EQ(used.at("vibrance"), 3.0);
  EXPECT_EQ(used.at("blacks"), 5.0);
}

TEST_F(SuggestTest, AutoCropKeepsTheSuggestedPart) {
  const std::string in = Horizon("in.png", 0);
  const Json crop = Suggestions(in).at("crop");
  const cv::Mat cropped = Developed(in, Path("cropped.png"), {"--auto-crop"});
  EXPECT_EQ(cropped.cols, static_cast<int>(900 * crop.at("w").get<float>()));
  EXPECT_EQ(cropped.rows, static_cast<int>(600 * crop.at("h").get<float>()));
  EXPECT_NEAR(static_cast<double>(cropped.cols) / cropped.rows, 1.5, 0.02);
}

}  // namespace
}  // namespace lumvik::test
