// EXIF of a JPEG developed from another: copied, except that the orientation becomes upright.
#include <cstdint>
#include <opencv2/imgcodecs.hpp>

#include "command_test.h"
#include "exif_file.h"

namespace lumvik::test {
namespace {

const std::string kMake = "Exif.Image.Make";
const std::string kComment = "Exif.Photo.UserComment";
const std::string kOrientation = "Exif.Image.Orientation";

const std::vector<std::string> kFaithful = {"--jpeg-quality", "100"};

using ExifTest = CommandTest;

TEST_F(ExifTest, ARotatedPhotographLooksTheSame) {
  ASSERT_EQ(TagValue(ReadExif(kTower), kOrientation), "8");
  const cv::Mat stored = Developed(kTower, Path("out.jpg"), kFaithful);
  EXPECT_EQ(TagValue(ReadExif(Path("out.jpg")), kOrientation), "1");

  // imread applies the EXIF orientation, like any viewer.
  const cv::Mat before = cv::imread(kTower);
  const cv::Mat after = cv::imread(Path("out.jpg"));
  ASSERT_EQ(after.size(), cv::Size(2272, 1704));
  ASSERT_EQ(after.size(), before.size());
  EXPECT_LT(MeanDifference(after, before), 1);
  EXPECT_EQ(GreatestDifference(after, stored), 0);
}

TEST_F(ExifTest, TagsAreCopied) {
  ASSERT_EQ(Develop(kTower, Path("out.jpg")).status, kSuccess);
  const Exiv2::ExifData before = ReadExif(kTower);
  const Exiv2::ExifData after = ReadExif(Path("out.jpg"));
  for (const char* tag : {"Exif.Image.Make", "Exif.Image.Model", "Exif.Image.DateTime",
                          "Exif.Photo.DateTimeOriginal", "Exif.Photo.ExposureTime", "Exif.Photo.FNumber",
                          "Exif.Photo.FocalLength", "Exif.Photo.UserComment"}) {
    EXPECT_NE(TagValue(before, tag), "(none)") << tag;
    EXPECT_EQ(TagValue(after, tag), TagValue(before, tag)) << tag;
  }
}

// The eight EXIF orientations.
class OrientationTest : public CommandTest, public ::testing::WithParamInterface<int> {};
INSTANTIATE_TEST_SUITE_P(All, OrientationTest, ::testing::Range(1, 9));

TEST_P(OrientationTest, TheThumbnailLooksTheSame) {
  Exiv2::ExifData exif;
  exif[kMake] = "Camera";
  exif[kOrientation] = static_cast<std::uint16_t>(GetParam());
  const std::string in = Photograph("in.jpg");
  WriteExif(in, exif);
  const cv::Mat before = cv::imread(in);
  ASSERT_EQ(before.cols > before.rows, GetParam() < 5);  // width and height swap from 5 on

  Developed(in, Path("out.jpg"), kFaithful);
  const cv::Mat after = cv::imread(Path("out.jpg"));
  ASSERT_EQ(after.size(), before.size());
  EXPECT_LT(GreatestDifference(after, before), 10);
  EXPECT_EQ(TagValue(ReadExif(Path("out.jpg")), kOrientation), "1");
  EXPECT_EQ(TagValue(ReadExif(Path("out.jpg")), kMake), "Camera");
}

TEST_F(ExifTest, TheOrientationIsAddedWhenMissing) {
  Exiv2::ExifData exif;
  exif[kMake] = "Camera";
  const std::string in = Photograph("in.jpg");
  WriteExif(in, exif);
  ASSERT_EQ(TagValue(ReadExif(in), kOrientation), "(none)");
  Developed(in, Path("out.jpg"));
  EXPECT_EQ(TagValue(ReadExif(Path("out.jpg")), kMake), "Camera");
  EXPECT_EQ(TagValue(ReadExif(Path("out.jpg")), kOrientation), "1");
}

TEST_F(ExifTest, NoExifIsAddedToAPhotographWithout) {
  Developed(Photograph("in.png"), Path("out.jpg"));
  EXPECT_TRUE(ReadExif(Path("out.jpg")).empty());
}

TEST_F(ExifTest, NoExifDropsIt) {
  const cv::Mat picture = Developed(kTower, Path("out.jpg"), {"--no-exif"});
  EXPECT_TRUE(ReadExif(Path("out.jpg")).empty());
  EXPECT_EQ(picture.size(), cv::Size(2272, 1704));
}

// A comment that fills its JPEG segment leaves no room for size and orientation.
TEST_F(ExifTest, ACommentTooLongForJpegIsDropped) {
  Exiv2::ExifData exif;
  exif[kMake] = "Camera";
  exif[kComment] = std::string(65440, 'c');
  const std::string in = Photograph("in.jpg");
  WriteExif(in, exif);
  ASSERT_NE(TagValue(ReadExif(in), kComment), "(none)");
  const ProcessResult result = Develop(in, Path("out.jpg"));
  EXPECT_EQ(result.status, kSuccess);
  EXPECT_EQ(result.err,
            "lumvik: warning: " + kComment + " of '" + in + "' was left out: it is too long for a JPEG\n");
  EXPECT_EQ(TagValue(ReadExif(Path("out.jpg")), kComment), "(none)");
  EXPECT_EQ(TagValue(ReadExif(Path("out.jpg")), kMake), "Camera");
  Developed(in, Path("out.tif"));
  EXPECT_EQ(TagValue(ReadExif(Path("out.tif")), kComment), std::string(65440, 'c'));
}

}  // namespace
}  // namespace lumvik::test
