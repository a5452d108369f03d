// Detection of truncated images.
#include "develop/complete_image.h"

#include <filesystem>

#include "command_test.h"
#include "exif_file.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;

class CompleteImageTest : public CommandTest, public ::testing::WithParamInterface<const char*> {
 protected:
  static void ExpectCompleteUntilTruncated(const std::string& path, std::uintmax_t padding = 0);
};

void CompleteImageTest::ExpectCompleteUntilTruncated(const std::string& path, std::uintmax_t padding) {
  const OutputFormat format = *OutputFormatOf(path);
  EXPECT_TRUE(IsCompleteImage(path, format));
  for (std::uintmax_t size = fs::file_size(path) - 1 - padding; size > 0; size -= size > 2000 ? 1000 : 1) {
    fs::resize_file(path, size);
    ASSERT_FALSE(IsCompleteImage(path, format)) << size;
  }
  fs::resize_file(path, 0);
  EXPECT_FALSE(IsCompleteImage(path, format));
  fs::resize_file(path, 5000);  // zeros
  EXPECT_FALSE(IsCompleteImage(path, format));
  fs::remove(path);
  EXPECT_FALSE(IsCompleteImage(path, format));
}

TEST_P(CompleteImageTest, DetectsTruncationAnywhere) {
  const std::string path = Path(std::string("out.") + GetParam());
  ASSERT_EQ(Develop(Photograph("in.png"), path).status, kSuccess);
  ExpectCompleteUntilTruncated(path);
}

// Values of various sizes: inline, after the directory, and in EXIF and GPS directories.
TEST_P(CompleteImageTest, DetectsTruncationWithMetadata) {
  const std::string in = Photograph("in.jpg");
  Exiv2::ExifData exif;
  exif["Exif.Image.Make"] = "DJI";
  exif["Exif.Image.Model"] = "FC3170";
  exif["Exif.Photo.ExposureTime"] = "1/60";
  exif["Exif.Photo.SubSecTime"] = "042";
  exif["Exif.GPSInfo.GPSLatitudeRef"] = "N";
  exif["Exif.GPSInfo.GPSLatitude"] = "48/1 51/1 0/1";
  WriteExif(in, exif);
  const std::string path = Path(std::string("out.") + GetParam());
  ASSERT_EQ(Develop(in, path).status, kSuccess);
  const bool is_tiff = std::string(GetParam()) == "tif";  // exiv2 pads TIFFs to an even size
  ExpectCompleteUntilTruncated(path, is_tiff ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(Formats, CompleteImageTest, ::testing::Values("jpg", "png", "tif"),
                         [](const auto& test) { return std::string(test.param); });

}  // namespace
}  // namespace lumvik::test
