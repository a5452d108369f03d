#include "command_test.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <opencv2/imgcodecs.hpp>

namespace lumvik::test {

namespace fs = std::filesystem;

std::vector<std::string> Command() {
  return {LUMVIK_COMMAND};
}

std::vector<std::string> UnprivilegedCommand() {
  return Unprivileged(Command());
}

std::string ReadFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file) << path;
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void WriteFile(const fs::path& path, const std::string& bytes) {
  EXPECT_TRUE(std::ofstream(path, std::ios::binary) << bytes) << path;
}

cv::Mat SmallPicture() {
  cv::Mat picture(40, 60, CV_8UC3);
  for (int y = 0; y < picture.rows; ++y) {
    for (int x = 0; x < picture.cols; ++x) {
      picture.at<cv::Vec3b>(y, x) = {cv::saturate_cast<uchar>(30 + 2 * x),
                                     cv::saturate_cast<uchar>(40 + 3 * y),
                                     cv::saturate_cast<uchar>(150 - x - y)};
    }
  }
  return picture;
}

std::string PixelsOf(const std::string& path) {
  const cv::Mat image = cv::imread(path, cv::IMREAD_UNCHANGED);
  EXPECT_FALSE(image.empty()) << path;
  return {image.datastart, image.dataend};
}

double GreatestDifference(const cv::Mat& a, const cv::Mat& b) {
  return cv::norm(a, b, cv::NORM_INF);
}

double MeanDifference(const cv::Mat& a, const cv::Mat& b) {
  return cv::norm(a, b, cv::NORM_L1) /
         static_cast<double>(a.total() * static_cast<std::size_t>(a.channels()));
}

std::string TestNameOf(const std::string& option) {
  std::string name = option.substr(2);
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

void ExpectRefusal(const ProcessResult& result, int status, const std::string& part) {
  EXPECT_EQ(result.status, status) << result.err;
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err.rfind("lumvik: ", 0), 0U) << result.err;
  EXPECT_NE(result.err.find(part), std::string::npos) << "\"" << part << "\" is missing in: " << result.err;
  EXPECT_EQ(result.err.find('\n'), result.err.size() - 1) << "not one line: " << result.err;
}

void CommandTest::TearDown() {
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder_.path())) {
    EXPECT_NE(entry.path().filename().string().rfind(".lumvik", 0), 0U) << entry.path() << " was left behind";
  }
}

std::string CommandTest::Photograph(const std::string& name) const {
  EXPECT_TRUE(cv::imwrite(Path(name), SmallPicture()));
  return Path(name);
}

ProcessResult CommandTest::Develop(const std::string& input, const std::string& output,
                                   const std::vector<std::string>& options,
                                   const std::vector<std::string>& prefix) {
  std::vector<std::string> arguments = prefix;
  arguments.insert(arguments.end(), {"develop", input, "-o", output});
  arguments.insert(arguments.end(), options.begin(), options.end());
  return RunProcess(arguments);
}

cv::Mat CommandTest::Developed(const std::string& input, const std::string& output,
                               const std::vector<std::string>& options) {
  const ProcessResult result = Develop(input, output, options);
  EXPECT_EQ(result.status, kSuccess) << result.err;
  EXPECT_EQ(result.err, "");
  return cv::imread(output, cv::IMREAD_UNCHANGED);
}

}  // namespace lumvik::test
