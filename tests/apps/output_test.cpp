// Successful runs: format, size, bit depth and location of the output.
#include <sys/stat.h>

#include <filesystem>
#include <opencv2/imgcodecs.hpp>

#include "command_test.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;

// The signature of the format.
const std::string kJpegStart = "\xFF\xD8\xFF";
const std::string kPngStart = "\x89PNG";
const std::string kTiffStart = "II*";

using OutputTest = CommandTest;

TEST_F(OutputTest, TheExtensionSelectsTheFormat) {
  const std::string in = Photograph("in.png");
  const struct {
    const char* name;
    const std::string& start;
    int depth;
  } cases[] = {
      {"a.jpg", kJpegStart, CV_8U},   {"b.jpeg", kJpegStart, CV_8U},  {"c.JPG", kJpegStart, CV_8U},
      {"d.png", kPngStart, CV_8U},    {"e.Png", kPngStart, CV_8U},    {"f.tif", kTiffStart, CV_16U},
      {"g.tiff", kTiffStart, CV_16U}, {"h.TIFF", kTiffStart, CV_16U}, {"many.dots.in.png", kPngStart, CV_8U},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const cv::Mat picture = Developed(in, Path(c.name));
    EXPECT_EQ(ReadFile(Path(c.name)).substr(0, c.start.size()), c.start);
    EXPECT_EQ(picture.size(), cv::Size(60, 40));
    EXPECT_EQ(picture.type(), CV_MAKETYPE(c.depth, 3));
  }
}

TEST_F(OutputTest, BitsSelectThePngDepth) {
  const std::string in = Photograph("in.png");
  EXPECT_EQ(Developed(in, Path("8.png"), {"--bits", "8"}).depth(), CV_8U);
  EXPECT_EQ(Developed(in, Path("16.png"), {"--bits", "16"}).depth(), CV_16U);
  EXPECT_EQ(Developed(in, Path("8.jpg"), {"--bits", "8"}).depth(), CV_8U);
  EXPECT_EQ(Developed(in, Path("16.tif"), {"--bits", "16"}).depth(), CV_16U);
}

TEST_F(OutputTest, SixteenBitsAreNotJustScaledEightBits) {
  const cv::Mat picture =
      Developed(Photograph("in.png"), Path("out.png"), {"--bits", "16", "--exposure", "0.1"});
  int between = 0;
  for (auto value = picture.begin<cv::Vec3w>(); value != picture.end<cv::Vec3w>(); ++value) {
    between += (*value)[1] % 257 != 0 || (*value)[2] % 257 != 0;
  }
  EXPECT_GT(between, 1000);
}

TEST_F(OutputTest, TheFileAndItsSizeArePrinted) {
  const ProcessResult result = Develop(Photograph("in.png"), Path("out.tif"));
  EXPECT_EQ(result.status, kSuccess);
  EXPECT_EQ(result.out, Path("out.tif") + " 60x40\n");
  EXPECT_EQ(result.err, "");
}

TEST_F(OutputTest, JpegQualityAffectsTheFileSize) {
  const std::string in = Photograph("in.png");
  for (const char* quality : {"5", "90", "100"})
    Develop(in, Path(std::string(quality) + ".jpg"), {"--jpeg-quality", quality});
  Develop(in, Path("default.jpg"));
  EXPECT_LT(fs::file_size(Path("5.jpg")), fs::file_size(Path("90.jpg")));
  EXPECT_LT(fs::file_size(Path("90.jpg")), fs::file_size(Path("100.jpg")));
  EXPECT_EQ(ReadFile(Path("default.jpg")), ReadFile(Path("90.jpg")));
}

TEST_F(OutputTest, DecodeQualityAffectsTheSizeOfRawPhotographs) {
  EXPECT_EQ(Developed(kRawSample, Path("full.jpg")).size(), cv::Size(1600, 1066));
  EXPECT_EQ(Developed(kRawSample, Path("half.jpg"), {"--quality", "2"}).size(), cv::Size(800, 533));
  EXPECT_EQ(Developed(kRawSample, Path("quarter.jpg"), {"--quality", "4"}).size(), cv::Size(400, 266));
}

TEST_F(OutputTest, DecodeQualityDoesNotAffectOrdinaryImages) {
  const std::string in = Photograph("in.png");
  EXPECT_EQ(
      GreatestDifference(Developed(in, Path("1.png")), Developed(in, Path("4.png"), {"--quality", "4"})), 0);
}

TEST_F(OutputTest, NamesCanContainSpacesAndNonAscii) {
  const std::string in = Photograph("été à la mer.jpg");
  fs::create_directory(fs::u8path(Path("фото 写真")));
  const std::string out = Path("фото 写真/schöner Tag.jpg");
  EXPECT_EQ(Developed(in, out).size(), cv::Size(60, 40));
  EXPECT_TRUE(fs::exists(fs::u8path(out)));
}

TEST_F(OutputTest, RelativePathsWork) {
  Photograph("in.png");
  const std::vector<std::string> in_folder = {"env", "-C", Path(""), LUMVIK_COMMAND};
  const ProcessResult result = Develop("in.png", "out.jpg", {}, in_folder);
  EXPECT_EQ(result.status, kSuccess) << result.err;
  EXPECT_EQ(result.out, "out.jpg 60x40\n");
  EXPECT_TRUE(fs::exists(Path("out.jpg")));
}

TEST_F(OutputTest, ANameLikeAnOptionCanFollowTwoDashes) {
  Photograph("-in.png");
  const ProcessResult result =
      RunProcess({"env", "-C", Path(""), LUMVIK_COMMAND, "develop", "-o", "-out.jpg", "--", "-in.png"});
  EXPECT_EQ(result.status, kSuccess) << result.err;
  EXPECT_EQ(result.out, "-out.jpg 60x40\n");
  EXPECT_TRUE(fs::exists(Path("-out.jpg")));
}

TEST_F(OutputTest, TheLongestNameWorks) {
  const std::string in = Photograph("in.png");
  EXPECT_EQ(Developed(in, Path(std::string(251, 'n') + ".jpg")).size(), cv::Size(60, 40));
}

TEST_F(OutputTest, AReplacedFileKeepsItsPermissions) {
  const std::string in = Photograph("in.png");
  const std::string out = Path("out.jpg");
  Develop(in, Path("fresh.jpg"));
  WriteFile(out, std::string(100000, 'x'));
  fs::permissions(out, fs::perms(0640));
  ASSERT_EQ(Develop(in, out, {"--overwrite"}).status, kSuccess);
  EXPECT_EQ(ReadFile(out), ReadFile(Path("fresh.jpg")));
  EXPECT_EQ(fs::status(out).permissions(), fs::perms(0640));
}

TEST_F(OutputTest, ANewFileHasDefaultPermissions) {
  Develop(Photograph("in.png"), Path("out.jpg"));
  const auto mask = umask(0);
  umask(mask);
  EXPECT_EQ(fs::status(Path("out.jpg")).permissions(), fs::perms(0666 & ~mask));
}

TEST_F(OutputTest, LinksAreFollowed) {
  const std::string in = Photograph("in.png");
  fs::create_directory(Path("elsewhere"));
  WriteFile(Path("elsewhere/target"), "old");
  fs::create_symlink("elsewhere/target", Path("inner.png"));
  fs::create_symlink(Path("inner.png"), Path("out.jpg"));
  EXPECT_EQ(Developed(in, Path("out.jpg"), {"--overwrite"}).size(), cv::Size(60, 40));
  EXPECT_TRUE(fs::is_symlink(Path("out.jpg")));
  EXPECT_TRUE(fs::is_symlink(Path("inner.png")));
  EXPECT_FALSE(fs::is_symlink(Path("elsewhere/target")));
  EXPECT_EQ(ReadFile(Path("elsewhere/target")).substr(0, kJpegStart.size()), kJpegStart);
}

TEST_F(OutputTest, ADanglingLinkCreatesItsTarget) {
  fs::create_symlink("target.jpg", Path("out.jpg"));
  EXPECT_EQ(Developed(Photograph("in.png"), Path("out.jpg")).size(), cv::Size(60, 40));
  EXPECT_TRUE(fs::is_symlink(Path("out.jpg")));
  EXPECT_TRUE(fs::is_regular_file(Path("target.jpg")));
}

}  // namespace
}  // namespace lumvik::test
