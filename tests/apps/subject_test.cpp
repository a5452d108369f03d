// Subject masks, cutouts and previews with a blurred background.
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include "command_test.h"

namespace lumvik::test {
namespace {

const cv::Size kProxySize(400, 266);  // of the sample at quality 4

class SubjectTest : public CommandTest {
 protected:
  static ProcessResult Run(std::vector<std::string> arguments) {
    std::vector<std::string> command = Command();
    command.insert(command.end(), arguments.begin(), arguments.end());
    return RunProcess(command);
  }

  // Runs a command on the sample, expects success and returns the image in `output` as stored.
  static cv::Mat Written(const std::string& command, const std::string& output,
                         const std::vector<std::string>& options = {}) {
    std::vector<std::string> arguments = {command, kRawSample, "-o", output, "--quality", "4"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const ProcessResult result = Run(arguments);
    EXPECT_EQ(result.status, kSuccess) << result.err;
    EXPECT_EQ(result.out, output + " 400x266\n");
    return cv::imread(output, cv::IMREAD_UNCHANGED);
  }

  cv::Mat Preview(const std::string& name, const std::vector<std::string>& options = {}) const {
    std::vector<std::string> arguments = {"develop", kRawSample, "--preview", Path(name), "--quality", "4"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const ProcessResult result = Run(arguments);
    EXPECT_EQ(result.status, kSuccess) << result.err;
    EXPECT_EQ(result.out, Path(name) + " 400x266\n");
    return cv::imread(Path(name), cv::IMREAD_UNCHANGED);
  }
};

TEST_F(SubjectTest, TheMaskIsGrayAndOfTheImageSize) {
  const cv::Mat mask = Written("mask", Path("mask.png"));
  ASSERT_EQ(mask.type(), CV_8UC1);
  EXPECT_EQ(mask.size(), kProxySize);
  double darkest = 1;
  double brightest = 0;
  cv::minMaxLoc(mask, &darkest, &brightest);
  EXPECT_EQ(darkest, 0);
  EXPECT_EQ(brightest, 255);
}

TEST_F(SubjectTest, ThePointLocatesTheSubject) {
  const cv::Mat middle = Written("mask", Path("middle.png"));
  const cv::Mat corner = Written("mask", Path("corner.png"), {"--at", "0,0"});
  EXPECT_GT(GreatestDifference(middle, corner), 200);
  const cv::Rect beyond(kProxySize.width * 6 / 10 + 10, 0, kProxySize.width * 4 / 10 - 10, kProxySize.height);
  EXPECT_EQ(cv::countNonZero(corner(beyond)), 0) << "the subject is sought within 60 % of each side";
}

TEST_F(SubjectTest, TheCutoutIsTheDevelopedImageWithTheMaskAsAlpha) {
  const cv::Mat mask = Written("mask", Path("mask.png"));
  const cv::Mat cutout = Written("cutout", Path("cutout.png"), {"--exposure", "0.5"});
  ASSERT_EQ(cutout.type(), CV_8UC4);
  cv::Mat alpha;
  cv::extractChannel(cutout, alpha, 3);
  EXPECT_EQ(GreatestDifference(alpha, mask), 0);
  cv::Mat color;
  cv::cvtColor(cutout, color, cv::COLOR_BGRA2BGR);
  const cv::Mat developed =
      Developed(kRawSample, Path("developed.png"), {"--exposure", "0.5", "--quality", "4"});
  EXPECT_EQ(GreatestDifference(color, developed), 0);
}

TEST_F(SubjectTest, CutoutRefusesGeometricSettings) {
  const std::string out = Path("cutout.png");
  const std::vector<std::vector<std::string>> moving = {
      {"--rotation", "1"},      {"--crop", "0.1,0.1,0.5,0.5"}, {"--flip-h"},          {"--flip-v"},
      {"--perspective-h", "5"}, {"--perspective-v", "5"},      {"--distortion", "5"}, {"--auto-crop"}};
  for (const auto& options : moving) {
    std::vector<std::string> arguments = {"cutout", kRawSample, "-o", out, "--quality", "4"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    ExpectRefusal(Run(arguments), kFailure, "cutout does not support '");
    EXPECT_FALSE(std::filesystem::exists(out));
  }
  WriteFile(Path("turn.json"), R"({"lumvik": 2, "rotation": 2})");
  ExpectRefusal(Run({"cutout", kRawSample, "-o", out, "--settings", Path("turn.json")}), kFailure,
                "'rotation'");
}

TEST_F(SubjectTest, OnlyCameraRawFilesHaveASubject) {
  const std::string in = Photograph("in.png");
  for (const char* command : {"mask", "cutout"}) {
    ExpectRefusal(Run({command, in, "-o", Path("out.png")}), kFailure, "is not a RAW file");
  }
  ExpectRefusal(Run({"develop", in, "--preview", Path("out.png"), "--bg-blur", "50"}), kFailure,
                "is not a RAW file");
  EXPECT_FALSE(std::filesystem::exists(Path("out.png")));
}

TEST_F(SubjectTest, UsageIsChecked) {
  const std::string out = Path("out.png");
  ExpectRefusal(Run({"mask", kRawSample}), kUsage, "--output is required");
  ExpectRefusal(Run({"mask", kRawSample, "-o", Path("out.jpg")}), kUsage, "does not end in .png");
  ExpectRefusal(Run({"mask", kRawSample, "-o", out, "--at", "0.5"}), kUsage, "--at: '0.5' is not 2 numbers");
  ExpectRefusal(Run({"mask", kRawSample, "-o", out, "--at", "0.5,2"}), kUsage,
                "--at: '2' is not a number in 0..1");
  ExpectRefusal(Run({"cutout", kRawSample, "-o", Path("out.tif")}), kUsage, "does not end in .png");
  ExpectRefusal(Run({"develop", kRawSample, "--preview", Path("out.jpg")}), kUsage, "does not end in .png");
  ExpectRefusal(Run({"develop", kRawSample, "-o", out, "--bg-blur", "5"}), kUsage, "--preview");
  ExpectRefusal(Run({"develop", kRawSample, "--preview", out, "--bg-blur", "101"}), kUsage, "--bg-blur");
}

TEST_F(SubjectTest, UnwritableFiles) {
  for (const char* command : {"mask", "cutout"}) {
    ExpectRefusal(Run({command, kRawSample, "-o", Path("no folder/out.png")}), kFailure,
                  "there is no folder");
    const std::string raw = Path("in.png");  // RAW data with the extension of an ordinary image
    WriteFile(raw, "not a picture");
    ExpectRefusal(Run({command, raw, "-o", raw}), kFailure, "in.png");
    EXPECT_EQ(ReadFile(raw), "not a picture");
  }
}

TEST_F(SubjectTest, ThePreviewIsTheImageInEightBits) {
  const cv::Mat preview = Preview("preview.png", {"--contrast", "20"});
  ASSERT_EQ(preview.type(), CV_8UC4);
  cv::Mat color;
  cv::cvtColor(preview, color, cv::COLOR_BGRA2BGR);
  const cv::Mat developed = Developed(kRawSample, Path("out.png"),
                                      {"--contrast", "20", "--quality", "4", "--preview", Path("both.png")});
  EXPECT_EQ(GreatestDifference(color, developed), 0);
  EXPECT_EQ(ReadFile(Path("both.png")), ReadFile(Path("preview.png")));
}

TEST_F(SubjectTest, TheBlurAffectsOnlyTheBackgroundOfThePreview) {
  const cv::Mat mask = Written("mask", Path("mask.png"));
  const cv::Mat sharp = Preview("sharp.png");
  const cv::Mat blurred = Preview("blurred.png", {"--bg-blur", "60"});
  cv::Mat difference;
  cv::absdiff(sharp, blurred, difference);
  cv::Mat largest;
  cv::transform(difference, largest, cv::Matx14f(1, 1, 1, 1));
  EXPECT_EQ(cv::countNonZero(largest & (mask == 255)), 0);
  EXPECT_GT(cv::countNonZero(largest & (mask == 0)), 1000);
}

}  // namespace
}  // namespace lumvik::test
