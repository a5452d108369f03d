// The EXIF of a written JPEG: carried over, but for the orientation, which tells a viewer that the picture is
// upright already.
#include <cstdint>
#include <filesystem>
#include <memory>
#include <opencv2/imgcodecs.hpp>

#include "command_test.h"
#include "exif_file.h"
#include "lumvik.h"

namespace lumvik::test {
namespace {

const std::string kTower = LUMVIK_TEST_DATA "/tower_orientation8.jpg";
const std::string kMake = "Exif.Image.Make";
const std::string kOrientation = "Exif.Image.Orientation";

// Settings that leave the pixels alone, and the least loss in writing them.
const std::vector<std::string> kFaithful = {"--temperature", "6500", "--jpeg-quality", "100"};

// Writes the JPEG that the engine itself exports with its defaults.
void ExportByEngine(const std::string& input, const std::string& output) {
  const std::unique_ptr<EngineContext, decltype(&lumvik_destroy_context)> context(lumvik_create_context(),
                                                                                  lumvik_destroy_context);
  ASSERT_EQ(lumvik_load_arw(context.get(), input.c_str(), 1), 0);
  ASSERT_EQ(lumvik_export_jpeg(context.get(), output.c_str(), 90, 0, 1), 0);
}

using ExifTest = CommandTest;

TEST_F(ExifTest, ATurnedPhotographIsSeenAsBefore) {
  ASSERT_EQ(TagValue(ReadExif(kTower), kOrientation), "8");
  const cv::Mat stored = Developed(kTower, Path("out.jpg"), kFaithful);
  EXPECT_EQ(TagValue(ReadExif(Path("out.jpg")), kOrientation), "1");

  // imread turns a picture as its EXIF says, like any viewer.
  const cv::Mat before = cv::imread(kTower);
  const cv::Mat after = cv::imread(Path("out.jpg"));
  ASSERT_EQ(after.size(), cv::Size(2272, 1704));
  ASSERT_EQ(after.size(), before.size());
  EXPECT_LT(MeanDifference(after, before), 1);
  EXPECT_EQ(GreatestDifference(after, stored), 0);
}

TEST_F(ExifTest, TheTagsAreCarriedOver) {
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

// Maker note, thumbnail and all: of what the engine carries over, one number is changed.
TEST_F(ExifTest, TheOrientationIsTheOnlyByteThatTheCommandChanges) {
  ASSERT_EQ(Develop(kTower, Path("out.jpg")).status, kSuccess);
  ASSERT_NO_FATAL_FAILURE(ExportByEngine(kTower, Path("engine.jpg")));
  const std::string by_command = ReadFile(Path("out.jpg"));
  const std::string by_engine = ReadFile(Path("engine.jpg"));
  ASSERT_EQ(by_command.size(), by_engine.size());
  std::vector<std::pair<int, int>> changes;
  for (std::size_t i = 0; i < by_command.size(); ++i) {
    if (by_command[i] != by_engine[i]) changes.emplace_back(by_engine[i], by_command[i]);
  }
  EXPECT_EQ(changes, (std::vector<std::pair<int, int>>{{8, 1}}));
}

// The eight ways a camera can be held.
class OrientationTest : public CommandTest, public ::testing::WithParamInterface<int> {};
INSTANTIATE_TEST_SUITE_P(All, OrientationTest, ::testing::Range(1, 9));

TEST_P(OrientationTest, TheSmallPictureIsSeenAsBefore) {
  Exiv2::ExifData exif;
  exif[kMake] = "Camera";
  exif[kOrientation] = static_cast<std::uint16_t>(GetParam());
  const std::string in = Photograph("in.jpg");
  WriteExif(in, exif);
  const cv::Mat before = cv::imread(in);
  ASSERT_EQ(before.cols > before.rows, GetParam() < 5);  // from 5 on, the sides change places

  Developed(in, Path("out.jpg"), kFaithful);
  const cv::Mat after = cv::imread(Path("out.jpg"));
  ASSERT_EQ(after.size(), before.size());
  EXPECT_LT(GreatestDifference(after, before), 10);
  EXPECT_EQ(TagValue(ReadExif(Path("out.jpg")), kOrientation), "1");
  EXPECT_EQ(TagValue(ReadExif(Path("out.jpg")), kMake), "Camera");
}

TEST_F(ExifTest, NoOrientationIsAddedWhereTheEngineWritesNone) {
  Exiv2::ExifData exif;
  exif[kMake] = "Camera";
  const std::string in = Photograph("in.jpg");
  WriteExif(in, exif);
  Developed(in, Path("out.jpg"));
  ASSERT_NO_FATAL_FAILURE(ExportByEngine(in, Path("engine.jpg")));
  EXPECT_EQ(TagValue(ReadExif(Path("out.jpg")), kMake), "Camera");
  EXPECT_EQ(ReadFile(Path("out.jpg")), ReadFile(Path("engine.jpg")));
}

TEST_F(ExifTest, APhotographWithoutExifGivesNone) {
  Developed(Photograph("in.png"), Path("out.jpg"));
  EXPECT_TRUE(ReadExif(Path("out.jpg")).empty());
}

TEST_F(ExifTest, NoExifLeavesItOut) {
  const cv::Mat picture = Developed(kTower, Path("out.jpg"), {"--no-exif"});
  EXPECT_TRUE(ReadExif(Path("out.jpg")).empty());
  EXPECT_EQ(picture.size(), cv::Size(2272, 1704));
}

// So much EXIF that it overflows its segment once the engine has completed it with the usual tags.
TEST_F(ExifTest, ExifTooLongForAJpegIsReported) {
  Exiv2::ExifData exif;
  exif[kMake] = "Camera";
  exif[kOrientation] = std::uint16_t{6};
  exif["Exif.Photo.UserComment"] = std::string(65400, 'c');
  const std::string in = Photograph("in.jpg");
  WriteExif(in, exif);
  ExpectRefusal(Develop(in, Path("out.jpg")), kFailure,
                "cannot write '" + Path("out.jpg") + "': its EXIF is too long for a JPEG");
  EXPECT_FALSE(std::filesystem::exists(Path("out.jpg")));
  EXPECT_EQ(Develop(in, Path("out.jpg"), {"--no-exif"}).status, kSuccess);
}

}  // namespace
}  // namespace lumvik::test
