// Outputs of the command are whole, with and without metadata, until they are truncated.
#include <filesystem>

#include "command_test.h"
#include "exif_file.h"
#include "lumvik_host.hpp"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;

bool IsWhole(const std::string& path) {
  try {
    return api::CheckFile(path).is_whole != 0;
  } catch (const api::Error&) {
    return false;
  }
}

class WholeOutputTest : public CommandTest, public ::testing::WithParamInterface<const char*> {
 protected:
  static void ExpectWholeUntilTruncated(const std::string& path, std::uintmax_t padding = 0);
};

void WholeOutputTest::ExpectWholeUntilTruncated(const std::string& path, std::uintmax_t padding) {
  EXPECT_TRUE(IsWhole(path));
  for (std::uintmax_t size = fs::file_size(path) - 1 - padding; size > 0; size -= size > 2000 ? 1000 : 1) {
    fs::resize_file(path, size);
    ASSERT_FALSE(IsWhole(path)) << size;
  }
  fs::resize_file(path, 0);
  EXPECT_FALSE(IsWhole(path));
  fs::resize_file(path, 5000);  // zeros
  EXPECT_FALSE(IsWhole(path));
  fs::remove(path);
  EXPECT_FALSE(IsWhole(path));
}

TEST_P(WholeOutputTest, DetectsTruncationAnywhere) {
  const std::string path = Path(std::string("out.") + GetParam());
  ASSERT_EQ(Develop(Photograph("in.png"), path).status, kSuccess);
  ExpectWholeUntilTruncated(path);
}

// Values of various sizes: inline, after the directory, and in EXIF and GPS directories.
TEST_P(WholeOutputTest, DetectsTruncationWithMetadata) {
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
  ExpectWholeUntilTruncated(path, is_tiff ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(Formats, WholeOutputTest, ::testing::Values("jpg", "png", "tif"),
                         [](const auto& test) { return std::string(test.param); });

}  // namespace
}  // namespace lumvik::test
