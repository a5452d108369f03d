// Histograms as numbers and as an image.
#include <nlohmann/json.hpp>
#include <numeric>
#include <opencv2/imgcodecs.hpp>
#include <vector>

#include "command_test.h"

namespace lumvik::test {
namespace {

using Json = nlohmann::json;

class HistogramTest : public CommandTest {
 protected:
  static ProcessResult Histogram(std::vector<std::string> arguments) {
    std::vector<std::string> command = Command();
    command.emplace_back("histogram");
    command.insert(command.end(), arguments.begin(), arguments.end());
    return RunProcess(command);
  }

  static Json Numbers(const std::vector<std::string>& arguments) {
    const ProcessResult result = Histogram(arguments);
    EXPECT_EQ(result.status, kSuccess) << result.err;
    Json json = Json::parse(result.out);
    json.erase("settings_from");  // differs between equal developments
    return json;
  }
};

TEST_F(HistogramTest, CountsEveryPixelOfTheDevelopedImage) {
  const std::string in = Photograph("in.png");
  const Json numbers = Numbers({in});
  EXPECT_EQ(numbers.at("width"), 60);
  EXPECT_EQ(numbers.at("height"), 40);
  for (const char* name : {"red", "green", "blue", "luminance"}) {
    const auto counts = numbers.at(name).get<std::vector<int>>();
    ASSERT_EQ(counts.size(), 256U);
    EXPECT_EQ(std::accumulate(counts.begin(), counts.end(), 0), 60 * 40) << name;
  }
  std::vector<int> red(256);
  const cv::Mat picture = cv::imread(in);
  for (int y = 0; y < picture.rows; ++y) {
    for (int x = 0; x < picture.cols; ++x) ++red[picture.at<cv::Vec3b>(y, x)[2]];
  }
  EXPECT_EQ(numbers.at("red").get<std::vector<int>>(), red);
}

TEST_F(HistogramTest, SettingsAreApplied) {
  const std::string in = Photograph("in.png");
  const Json neutral = Numbers({in});
  EXPECT_NE(Numbers({in, "--exposure", "1"}), neutral);
  WriteFile(Path("bright.json"), R"({"lumvik": 2, "exposure": 1})");
  EXPECT_EQ(Numbers({in, "--settings", Path("bright.json")}), Numbers({in, "--exposure", "1"}));
  EXPECT_EQ(Numbers({in, "--crop", "0,0,0.5,0.5"}).at("width"), 30);
}

TEST_F(HistogramTest, TheImageShowsTheCurves) {
  const std::string in = Path("one_level.png");
  cv::Mat two_levels(10, 10, CV_8UC3, cv::Scalar(100, 100, 100));
  two_levels.rowRange(0, 5) = cv::Scalar(100, 100, 200);
  cv::imwrite(in, two_levels);
  const ProcessResult result = Histogram({in, "-o", Path("curves.png")});
  ASSERT_EQ(result.status, kSuccess) << result.err;
  EXPECT_EQ(Json::parse(result.out).at("red").at(200), 50);
  const cv::Mat curves = cv::imread(Path("curves.png"), cv::IMREAD_UNCHANGED);
  ASSERT_EQ(curves.size(), cv::Size(768, 384));
  ASSERT_EQ(curves.type(), CV_8UC3);
  const cv::Vec3b background = curves.at<cv::Vec3b>(100, 3 * 50 + 1);
  const cv::Vec3b red_alone = curves.at<cv::Vec3b>(300, 3 * 200 + 1);
  EXPECT_GT(red_alone[2], 150);
  EXPECT_EQ(red_alone[0], background[0]);
  const cv::Vec3b green_and_blue = curves.at<cv::Vec3b>(100, 3 * 100 + 1);
  EXPECT_GT(green_and_blue[0], 150);
  EXPECT_GT(green_and_blue[1], 150);
  EXPECT_EQ(green_and_blue[2], background[2]) << "half as many reds are at this level";
}

TEST_F(HistogramTest, ErrorsAreReported) {
  const std::string in = Photograph("in.png");
  ExpectRefusal(Histogram({in, "-o", Path("curves.jpg")}), kUsage, "does not end in .png");
  ExpectRefusal(Histogram({Path("missing.png")}), kFailure, "missing.png");
  ExpectRefusal(Histogram({in, "-o", Path("no folder/a.png")}), kFailure, "there is no folder");
  ExpectRefusal(Histogram({in, "-o", in}), kFailure, in);
}

}  // namespace
}  // namespace lumvik::test
