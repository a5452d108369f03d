// Thumbnails of files: size, orientation, colors and metadata.
#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <string>
#include <vector>

#include "color/profile_attachment.h"
#include "color/profile_files.h"
#include "lumvik.h"
#include "lumvik_host.h"
#include "metadata/metadata_fixture.h"
#include "photo/test_photos.h"
#include "support/exif_jpeg.h"
#include "support/file_bytes.h"
#include "support/raw_previews.h"
#include "support/raw_writer.h"

namespace lumvik::host::test {
namespace {

using lumvik::test::ExifBlock;
using lumvik::test::Ifd;
using lumvik::test::RawOptions;
using lumvik::test::ReadBytes;
using lumvik::test::WriteBytes;

const std::string kSampleRaw = LUMVIK_SAMPLES "/sample_small.ARW";
const std::string kSidewaysJpeg = LUMVIK_TEST_DATA "/tower_orientation8.jpg";

constexpr double kJpegError = 6;  // levels, in an area of one color

// Four quarters of different colors (blue first): their order shows the orientation.
cv::Mat Quarters(int width, int height) {
  cv::Mat image(height, width, CV_8UC3);
  const cv::Rect whole(0, 0, width, height);
  const cv::Rect corner(0, 0, width / 2, height / 2);
  image(whole).setTo(cv::Scalar(200, 200, 200));
  image(corner).setTo(cv::Scalar(30, 30, 220));
  image(corner + cv::Point(width / 2, 0)).setTo(cv::Scalar(30, 200, 30));
  image(corner + cv::Point(0, height / 2)).setTo(cv::Scalar(220, 30, 30));
  return image;
}

// The largest difference within the quarters, away from their borders, where a JPEG mixes colors.
double QuartersDifference(const cv::Mat& a, const cv::Mat& b) {
  if (a.size() != b.size()) return HUGE_VAL;
  const cv::Size inner(a.cols / 4, a.rows / 4);
  double difference = 0;
  for (const cv::Point corner :
       {cv::Point(a.cols / 8, a.rows / 8), cv::Point(a.cols * 5 / 8, a.rows / 8),
        cv::Point(a.cols / 8, a.rows * 5 / 8), cv::Point(a.cols * 5 / 8, a.rows * 5 / 8)}) {
    const cv::Rect quarter(corner, inner);
    difference = std::max(difference, cv::norm(a(quarter), b(quarter), cv::NORM_INF));
  }
  return difference;
}

Bytes EncodedJpeg(const cv::Mat& image) {
  Bytes jpeg;
  cv::imencode(".jpg", image, jpeg, {cv::IMWRITE_JPEG_QUALITY, 98});
  return jpeg;
}

class ThumbnailTest : public MetadataFixture {
 protected:
  // Returns its path.
  std::string Thumbnail(const std::string& path, int max_width = 0, int max_height = 0,
                        int metadata = LUMVIK_HOST_METADATA_KEEP) {
    lumvik_host_thumbnail_options options{};
    options.struct_size = sizeof(options);
    options.max_width = max_width;
    options.max_height = max_height;
    options.metadata = metadata;
    std::uint8_t* data = nullptr;
    std::size_t length = 0;
    EXPECT_EQ(
        lumvik_host_extract_thumbnail(path.c_str(), &options, &data, &length, &size.width, &size.height),
        LUMVIK_HOST_OK)
        << lumvik_host_last_error();
    const Bytes bytes(data, data + length);
    lumvik_host_free(data);
    return WriteBytes(Path("thumbnail.jpg"), bytes);
  }

  // A RAW file with the preview.
  std::string RawWith(const Bytes& preview, int orientation) const {
    RawOptions options;
    options.format = lumvik::test::RawFormat::kDng;
    options.preview_jpeg = preview;
    options.orientation = orientation;
    const cv::Mat gray(48, 64, CV_8UC3, cv::Scalar::all(128));
    return WriteBytes(Path("in.dng"), lumvik::test::MakeRawFile(gray, options));
  }

  std::string Written(const std::string& name, const Bytes& bytes) const {
    return WriteBytes(Path(name), bytes);
  }

  // As stored.
  static cv::Mat Stored(const std::string& path) {
    return cv::imread(path, cv::IMREAD_COLOR | cv::IMREAD_IGNORE_ORIENTATION);
  }

  cv::Size size;  // as reported
};

TEST_F(ThumbnailTest, HasOneSizeForAllKinds) {
  const std::string wide = Written("wide.jpg", EncodedJpeg(Quarters(900, 600)));
  const std::string raw = RawWith(EncodedJpeg(Quarters(900, 600)), 1);
  const std::string bitmap = Written("bitmap.dng", lumvik::test::MakeBitmapPreviewRaw(Quarters(900, 600)));
  for (const std::string& path : {wide, raw, bitmap}) {
    const cv::Mat thumbnail = cv::imread(Thumbnail(path, 300, 300));
    EXPECT_EQ(thumbnail.size(), cv::Size(300, 200));
    EXPECT_EQ(size, thumbnail.size());
    Thumbnail(path, 0, 100);
    EXPECT_EQ(size, cv::Size(150, 100));
    Thumbnail(path, 2000, 2000);
    EXPECT_EQ(size, cv::Size(900, 600));  // never enlarged
  }
}

TEST_F(ThumbnailTest, WithoutALimitHasTheUsualSize) {
  Thumbnail(kSidewaysJpeg);
  const cv::Size upright = cv::imread(kSidewaysJpeg).size();
  EXPECT_EQ(std::max(size.width, size.height), 160);
  EXPECT_EQ(size.width > size.height, upright.width > upright.height);
  const Bytes jpeg = EncodedJpeg(Quarters(330, 220));
  const cv::Mat preview = Stored(Thumbnail(RawWith(jpeg, 1)));
  ASSERT_EQ(size, cv::Size(330, 220));
  EXPECT_EQ(cv::norm(preview, cv::imdecode(jpeg, cv::IMREAD_COLOR), cv::NORM_INF), 0);  // as embedded
}

// OpenCV turns an image by its EXIF orientation.
TEST_F(ThumbnailTest, IsUprightByTheOrientationOfTheRawFile) {
  const cv::Mat quarters = Quarters(120, 80);
  for (int orientation = 1; orientation <= 8; ++orientation) {
    ExifBlock block;
    block.Shorts(Ifd::kZero, 0x0112, {static_cast<std::uint16_t>(orientation)});
    const Bytes jpeg = EncodedJpeg(quarters);
    const cv::Mat upright =
        cv::imdecode(lumvik::test::JpegWithExif(block.Serialize(), jpeg), cv::IMREAD_COLOR);
    const std::string raw = RawWith(jpeg, orientation);
    for (const int metadata : {LUMVIK_HOST_METADATA_KEEP, LUMVIK_HOST_METADATA_NONE}) {
      const cv::Mat limited = cv::imread(Thumbnail(raw, 500, 500, metadata));
      ASSERT_EQ(limited.size(), upright.size()) << orientation;
      EXPECT_LE(QuartersDifference(limited, upright), kJpegError) << orientation;
      EXPECT_EQ(Stored(Path("thumbnail.jpg")).size(), upright.size());
      const cv::Mat embedded = cv::imread(Thumbnail(raw, 0, 0, metadata));
      EXPECT_EQ(cv::norm(embedded, upright, cv::NORM_INF), 0) << orientation;
      EXPECT_EQ(size, quarters.size());  // as stored
    }
  }
}

TEST_F(ThumbnailTest, TheOrientationOfThePreviewPrevails) {
  ExifBlock block;
  block.Shorts(Ifd::kZero, 0x0112, {6});
  const Bytes jpeg = lumvik::test::JpegWithExif(block.Serialize(), EncodedJpeg(Quarters(120, 80)));
  const std::string raw = RawWith(jpeg, 3);
  EXPECT_EQ(cv::norm(cv::imread(Thumbnail(raw)), cv::imdecode(jpeg, cv::IMREAD_COLOR), cv::NORM_INF), 0);
  Thumbnail(raw, 500, 500);
  EXPECT_EQ(size, cv::Size(80, 120));
}

TEST_F(ThumbnailTest, BitmapPreviewsHaveTheRightColors) {
  cv::Mat red_first;
  cv::cvtColor(Quarters(120, 80), red_first, cv::COLOR_BGR2RGB);
  const std::string raw = Written("in.dng", lumvik::test::MakeBitmapPreviewRaw(red_first));
  for (const int limit : {0, 500}) {
    EXPECT_LE(QuartersDifference(cv::imread(Thumbnail(raw, limit, limit)), Quarters(120, 80)), kJpegError);
  }
}

TEST_F(ThumbnailTest, ColorsAreConvertedToSrgb) {
  const Bytes jpeg = EncodedJpeg(Quarters(120, 80));
  const std::string tagged = AttachProfile(std::string(jpeg.begin(), jpeg.end()), LUMVIK_HOST_FORMAT_JPEG,
                                           MakeRgbProfile(kAdobeLike));
  const Bytes bytes(tagged.begin(), tagged.end());
  const std::string image = Written("in.jpg", bytes);
  const std::string out = Path("developed.png");
  lumvik_host_save_options options{};
  options.struct_size = sizeof(options);
  options.metadata = LUMVIK_HOST_METADATA_NONE;
  ASSERT_EQ(lumvik_host_save(OpenForTest(image).get(), out.c_str(), &options), LUMVIK_HOST_OK);
  const cv::Mat developed = cv::imread(out);
  EXPECT_GT(QuartersDifference(developed, cv::imdecode(jpeg, cv::IMREAD_COLOR)), 20);
  for (const std::string& path : {image, RawWith(bytes, 1)}) {
    EXPECT_LE(QuartersDifference(cv::imread(Thumbnail(path, 500, 500)), developed), kJpegError);
  }
  EXPECT_LE(QuartersDifference(cv::imread(Thumbnail(image)), developed), kJpegError);
}

// The references of LibRaw's header in the preview are missing.
TEST_F(ThumbnailTest, ThePositionIsThatOfTheRawFile) {
  for (const int limit : {0, 200}) {
    const auto image = OpenedByExiv2(Thumbnail(kSampleRaw, limit, limit));
    EXPECT_EQ(ExifValue(*image, "Exif.GPSInfo.GPSLatitudeRef"), "S");
    EXPECT_EQ(ExifValue(*image, "Exif.GPSInfo.GPSLatitude"),
              ExifValue(*OpenedByExiv2(kSampleRaw), "Exif.GPSInfo.GPSLatitude"));
    EXPECT_EQ(ExifValue(*image, "Exif.Image.Make"), "SONY");
    EXPECT_EQ(ExifValue(*image, "Exif.Photo.PixelXDimension"), std::to_string(size.width));
    EXPECT_EQ(ExifValue(*image, "Exif.Image.Orientation"), "1");
  }
}

TEST_F(ThumbnailTest, MetadataFollowsThePolicy) {
  for (const std::string& path : {kSampleRaw, std::string(LUMVIK_TEST_DATA "/eiffel_gps_north_east.jpg")}) {
    for (const int limit : {0, 200}) {
      const auto without_position =
          OpenedByExiv2(Thumbnail(path, limit, limit, LUMVIK_HOST_METADATA_NO_POSITION));
      EXPECT_NE(ExifValue(*without_position, "Exif.Image.Make"), "(none)");
      EXPECT_EQ(TagsInGroup(*without_position, "GPSInfo"), 0);
      const auto bare = OpenedByExiv2(Thumbnail(path, limit, limit, LUMVIK_HOST_METADATA_NONE));
      EXPECT_TRUE(bare->exifData().empty());
      EXPECT_TRUE(bare->xmpData().empty());
      EXPECT_TRUE(bare->iptcData().empty());
    }
  }
}

// The preview's own is no authority.
TEST_F(ThumbnailTest, MetadataOfThePreviewIsReplaced) {
  ExifBlock block;
  block.Ascii(Ifd::kZero, 0x010F, "Wrong").Ascii(Ifd::kGps, 1, "N");
  const std::string raw = RawWith(lumvik::test::JpegWithExif(block.Serialize()), 8);
  const auto image = OpenedByExiv2(Thumbnail(raw));
  EXPECT_EQ(ExifValue(*image, "Exif.Image.Make"), "Testbench");
  EXPECT_EQ(ExifValue(*image, "Exif.Image.Orientation"), "8");
  EXPECT_EQ(TagsInGroup(*image, "GPSInfo"), 0);
}

#if !defined(_WIN32)

// The status of a check without the module.
int ThumbnailsWithoutModule(const std::string& modules) {
  setenv("LUMVIK_MODULES", modules.c_str(), 1);
  for (const std::string& path : {kSampleRaw, kSidewaysJpeg}) {
    std::uint8_t* data = nullptr;
    std::size_t size = 0;
    if (lumvik_host_extract_thumbnail(path.c_str(), nullptr, &data, &size, nullptr, nullptr) !=
        LUMVIK_HOST_OK) {
      return 1;
    }
    const std::string jpeg(reinterpret_cast<const char*>(data), size);
    if (jpeg.find("SONY") != std::string::npos || jpeg.find("Exif") != std::string::npos) return 2;
  }
  return 0;
}

TEST_F(ThumbnailTest, WithoutTheModuleThereIsNoMetadata) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_EXIT(std::_Exit(ThumbnailsWithoutModule(Path(""))), ::testing::ExitedWithCode(0), "");
}

#endif

TEST_F(ThumbnailTest, HasTheMark) {
  lumvik_host_thumbnail_options options{};
  options.struct_size = sizeof(options);
  options.mark = "a mark";
  for (const int limit : {0, 200}) {
    options.max_width = limit;
    std::uint8_t* data = nullptr;
    std::size_t length = 0;
    ASSERT_EQ(lumvik_host_extract_thumbnail(kSampleRaw.c_str(), &options, &data, &length, nullptr, nullptr),
              LUMVIK_HOST_OK);
    const std::string path = Written("out.jpg", Bytes(data, data + length));
    lumvik_host_free(data);
    char* mark = nullptr;
    ASSERT_EQ(lumvik_host_read_mark(path.c_str(), &mark), LUMVIK_HOST_OK) << lumvik_host_last_error();
    EXPECT_STREQ(mark, "a mark");
    lumvik_host_free(mark);
  }
}

TEST_F(ThumbnailTest, OptionsOutOfRangeAreRefused) {
  struct Case {
    int max_width;
    int max_height;
    int metadata;
    const char* text;
  };
  for (const Case& wrong : {Case{-1, 0, 0, "max_width is -1, which is negative"},
                            Case{0, -2, 0, "max_height is -2, which is negative"},
                            Case{0, 0, 3, "metadata is 3, which is no policy"}}) {
    lumvik_host_thumbnail_options options{};
    options.struct_size = sizeof(options);
    options.max_width = wrong.max_width;
    options.max_height = wrong.max_height;
    options.metadata = wrong.metadata;
    std::uint8_t* data = nullptr;
    std::size_t length = 0;
    EXPECT_EQ(lumvik_host_extract_thumbnail(kSampleRaw.c_str(), &options, &data, &length, nullptr, nullptr),
              LUMVIK_HOST_INVALID_ARGUMENT);
    EXPECT_STREQ(lumvik_host_last_error(), wrong.text);
    EXPECT_EQ(data, nullptr);
  }
}

TEST_F(ThumbnailTest, ADamagedPreviewIsReported) {
  const std::string raw = Written("in.dng", lumvik::test::MakeUndecodablePreviewRaw());
  lumvik_host_thumbnail_options options{};
  options.struct_size = sizeof(options);
  options.max_width = 100;
  std::uint8_t* data = nullptr;
  std::size_t length = 0;
  EXPECT_EQ(lumvik_host_extract_thumbnail(raw.c_str(), &options, &data, &length, nullptr, nullptr),
            LUMVIK_HOST_DAMAGED);
  EXPECT_EQ(lumvik_host_last_error(),
            "cannot read '" + raw + "': the preview in the RAW file is damaged or in an unknown format");
}

// Decoders skip garbage between the segments.
TEST_F(ThumbnailTest, APreviewThatIsTooDamagedForAMarkIsReported) {
  constexpr std::uint8_t kBeginning[] = {0xFF, 0xD8, 0xFF};
  Bytes file = lumvik::test::MakeUndecodablePreviewRaw();
  const auto preview = std::search(file.begin(), file.end(), std::begin(kBeginning), std::end(kBeginning));
  ASSERT_NE(preview, file.end());
  std::fill_n(preview + std::size(kBeginning), 20, std::uint8_t{0xD8});
  const std::string raw = Written("in.dng", file);
  lumvik_host_thumbnail_options options{};
  options.struct_size = sizeof(options);
  options.metadata = LUMVIK_HOST_METADATA_NONE;
  options.mark = "mark";
  std::uint8_t* data = nullptr;
  std::size_t length = 0;
  EXPECT_EQ(lumvik_host_extract_thumbnail(raw.c_str(), &options, &data, &length, nullptr, nullptr),
            LUMVIK_HOST_DAMAGED)
      << lumvik_host_last_error();
  EXPECT_EQ(data, nullptr);
}

}  // namespace
}  // namespace lumvik::host::test
