// The shooting data of a file is that of the opened photo.
#include <gmock/gmock.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "lumvik_host.h"
#include "metadata/loaded_module.h"
#include "metadata/metadata_fixture.h"
#include "photo/test_photos.h"
#include "support/file_bytes.h"
#include "support/raw_kinds.h"
#include "support/raw_writer.h"
#include "support/temp_dir.h"

namespace lumvik::host::test {
namespace {

using lumvik::test::ReadBytes;
using lumvik::test::WriteBytes;

lumvik_host_exif EmptyExif() {
  lumvik_host_exif exif{};
  exif.struct_size = sizeof(exif);
  return exif;
}

// Every kind of photograph, written to the folder.
std::vector<std::string> AllKinds(const lumvik::test::TempDir& folder) {
  std::vector<std::string> paths = {LUMVIK_SAMPLES "/sample_small.ARW"};
  for (const char* name : {"bitmap_thumb.dng", "cat.jpg", "eiffel_gps_north_east.jpg", "jpeg_thumb.dng",
                           "no_thumb.dng", "tower_orientation8.jpg", "uncompressed.ARW"}) {
    paths.push_back(LUMVIK_TEST_DATA "/" + std::string(name));
  }
  for (const int format : {LUMVIK_HOST_FORMAT_RAW, LUMVIK_HOST_FORMAT_JPEG, LUMVIK_HOST_FORMAT_PNG,
                           LUMVIK_HOST_FORMAT_TIFF, LUMVIK_HOST_FORMAT_BMP, LUMVIK_HOST_FORMAT_WEBP}) {
    paths.push_back(WriteBytes(folder.File("format" + std::to_string(format)),
                               PhotoBytes(static_cast<lumvik_host_format>(format))));
  }
  for (const auto& kind : lumvik::test::RawKinds()) {
    paths.push_back(WriteBytes(folder.File(kind.name + ".jpg"), kind.file));  // misnamed
  }
  return paths;
}

// The number of kinds whose data differ.
int Differences() {
  const lumvik::test::TempDir folder;
  int differences = 0;
  for (const std::string& path : AllKinds(folder)) {
    lumvik_host_exif of_file = EmptyExif();
    lumvik_host_exif of_photo = EmptyExif();
    lumvik_host_photo* photo = nullptr;
    if (lumvik_host_open(path.c_str(), nullptr, &photo) != LUMVIK_HOST_OK) continue;  // a decoder may lack
    const bool both = lumvik_host_get_exif(photo, &of_photo) == LUMVIK_HOST_OK &&
                      lumvik_host_read_exif(path.c_str(), &of_file) == LUMVIK_HOST_OK;
    if (!both || std::memcmp(&of_file, &of_photo, sizeof(of_file)) != 0) {
      std::fprintf(stderr, "%s: %s\n", path.c_str(), both ? "differs" : lumvik_host_last_error());
      ++differences;
    }
    lumvik_host_close(photo);
  }
  return differences;
}

class ReadExifTest : public MetadataFixture {};

TEST_F(ReadExifTest, EqualsThatOfThePhoto) {
  EXPECT_EQ(Differences(), 0);
}

#if !defined(_WIN32)

TEST_F(ReadExifTest, EqualsThatOfThePhotoWithoutTheModule) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_EXIT((static_cast<void>(setenv("LUMVIK_MODULES", Path("").c_str(), 1)), std::_Exit(Differences())),
              ::testing::ExitedWithCode(0), "");
}

#endif

TEST_F(ReadExifTest, KnowsTheSample) {
  lumvik_host_exif exif = EmptyExif();
  ASSERT_EQ(lumvik_host_read_exif(LUMVIK_SAMPLES "/sample_small.ARW", &exif), LUMVIK_HOST_OK);
  EXPECT_STREQ(exif.model, "ILCE-7M3");
  EXPECT_STREQ(exif.lens, "FE 24-105mm F4 G OSS");
  EXPECT_LT(exif.gps_latitude, 0);
  EXPECT_EQ(exif.width, 1600);
}

// Most of the image data is missing.
TEST_F(ReadExifTest, NeedsNoImageData) {
  std::vector<std::uint8_t> bytes = ReadBytes(LUMVIK_TEST_DATA "/tower_orientation8.jpg");
  constexpr std::size_t kHeader = 60000;
  bytes.resize(kHeader);
  lumvik_host_exif exif = EmptyExif();
  ASSERT_EQ(lumvik_host_read_exif(WriteBytes(Path("cut.jpg"), bytes).c_str(), &exif), LUMVIK_HOST_OK);
  EXPECT_EQ(exif.orientation, 8);
}

TEST_F(ReadExifTest, FailuresStateTheReasonAndWriteNothing) {
  lumvik_host_exif exif = EmptyExif();
  exif.iso = 7;
  EXPECT_EQ(lumvik_host_read_exif(Path("none.jpg").c_str(), &exif), LUMVIK_HOST_NOT_FOUND);
  const std::string empty = WriteBytes(Path("empty.jpg"), {});
  EXPECT_EQ(lumvik_host_read_exif(empty.c_str(), &exif), LUMVIK_HOST_NOT_A_PHOTOGRAPH);
  EXPECT_EQ(lumvik_host_last_error(), "'" + empty + "' is empty");
  const std::string text = WriteBytes(Path("text.jpg"), {'t', 'e', 'x', 't'});
  EXPECT_EQ(lumvik_host_read_exif(text.c_str(), &exif), LUMVIK_HOST_NOT_A_PHOTOGRAPH);
  exif.struct_size = 0;
  EXPECT_EQ(lumvik_host_read_exif(text.c_str(), &exif), LUMVIK_HOST_INVALID_ARGUMENT);
  EXPECT_EQ(lumvik_host_read_exif(nullptr, &exif), LUMVIK_HOST_INVALID_ARGUMENT);
  EXPECT_EQ(lumvik_host_read_exif(text.c_str(), nullptr), LUMVIK_HOST_INVALID_ARGUMENT);
  EXPECT_EQ(exif.iso, 7);
}

}  // namespace
}  // namespace lumvik::host::test
