// Profiles attached to images are found by the format's own library.
#include "color/profile_attachment.h"

#include <gtest/gtest.h>

// jpeglib.h needs these two.
#include <jpeglib.h>
#include <png.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <opencv2/imgcodecs.hpp>
#include <string>
#include <utility>
#include <vector>

#include "base/failure.h"
#include "color/color_profile.h"
#include "color/embedded_profile.h"
#include "color/profile_files.h"
#include "files/tiff_reading.h"

namespace lumvik::host::test {
namespace {

cv::Mat AttachmentImage(int type) {
  cv::Mat image(33, 47, type);
  cv::RNG(9).fill(image, cv::RNG::UNIFORM, 0, CV_MAT_DEPTH(type) == CV_16U ? 65536 : 256);
  return image;
}

// Longer than one segment of a JPEG holds.
std::string LongProfile() {
  std::string profile(150001, '\0');
  std::uint32_t state = 1;
  for (char& byte : profile) byte = static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
  return profile;
}

std::string ProfileByLibjpeg(const std::string& bytes) {
  jpeg_decompress_struct jpeg{};
  jpeg_error_mgr errors{};
  jpeg.err = jpeg_std_error(&errors);
  jpeg_create_decompress(&jpeg);
  jpeg_mem_src(&jpeg, reinterpret_cast<const unsigned char*>(bytes.data()),
               static_cast<unsigned long>(bytes.size()));
  jpeg_save_markers(&jpeg, JPEG_APP0 + 2, 0xFFFF);
  jpeg_read_header(&jpeg, TRUE);
  JOCTET* data = nullptr;
  unsigned size = 0;
  std::string profile;
  if (jpeg_read_icc_profile(&jpeg, &data, &size) != FALSE) {
    profile.assign(reinterpret_cast<char*>(data), size);
    std::free(data);
  }
  jpeg_destroy_decompress(&jpeg);
  return profile;
}

std::string ProfileByLibpng(const std::string& bytes) {
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  std::string rest = bytes;
  png_set_read_fn(png, &rest, [](png_structp reader, png_bytep out, std::size_t size) {
    auto& left = *static_cast<std::string*>(png_get_io_ptr(reader));
    std::memcpy(out, left.data(), size);
    left.erase(0, size);
  });
  png_read_info(png, info);
  png_charp name = nullptr;
  png_bytep data = nullptr;
  png_uint_32 size = 0;
  int method = 0;
  std::string profile;
  if (png_get_iCCP(png, info, &name, &method, &data, &size) != 0)
    profile.assign(reinterpret_cast<char*>(data), size);
  png_destroy_read_struct(&png, &info, nullptr);
  return profile;
}

void ExpectSamePixels(const std::string& a, const std::string& b) {
  const auto decoded = [](const std::string& image) {
    return cv::imdecode(std::vector<std::uint8_t>(image.begin(), image.end()), cv::IMREAD_UNCHANGED);
  };
  EXPECT_EQ(cv::norm(decoded(a), decoded(b), cv::NORM_INF), 0);
}

TEST(ProfileAttachmentTest, JpegHasTheProfile) {
  const std::string plain = EncodeTestImage(AttachmentImage(CV_8UC3), ".jpg");
  for (const std::string& icc : {ColorProfile::Srgb().Serialize(), LongProfile()}) {
    const std::string jpeg = AttachProfile(plain, LUMVIK_HOST_FORMAT_JPEG, icc);
    EXPECT_EQ(ProfileByLibjpeg(jpeg), icc);
    EXPECT_EQ(FindIccProfile(jpeg, LUMVIK_HOST_FORMAT_JPEG), icc);
    ExpectSamePixels(plain, jpeg);
    EXPECT_EQ(jpeg.substr(6, 4), "JFIF");  // still the first header
  }
}

TEST(ProfileAttachmentTest, PngHasTheProfile) {
  const std::string icc = ColorProfile::Srgb().Serialize();
  for (const int type : {CV_8UC3, CV_16UC3}) {
    const std::string plain = EncodeTestImage(AttachmentImage(type), ".png");
    const std::string png = AttachProfile(plain, LUMVIK_HOST_FORMAT_PNG, icc);
    EXPECT_EQ(ProfileByLibpng(png), icc);
    EXPECT_EQ(FindIccProfile(png, LUMVIK_HOST_FORMAT_PNG), icc);
    ExpectSamePixels(plain, png);
  }
}

TEST(ProfileAttachmentTest, TiffHasTheProfileAndItsOldEntriesInOrder) {
  const std::string icc = LongProfile();
  const std::string plain = EncodeTestImage(AttachmentImage(CV_16UC3), ".tif");
  const std::string tiff = AttachProfile(plain, LUMVIK_HOST_FORMAT_TIFF, icc);
  EXPECT_EQ(FindIccProfile(tiff, LUMVIK_HOST_FORMAT_TIFF), icc);
  ExpectSamePixels(plain, tiff);
  const TiffReader before(plain);
  const TiffReader after(tiff);
  ASSERT_EQ(after.Directories().size(), before.Directories().size());
  std::vector<std::uint16_t> tags;
  for (const TiffEntry& entry : after.Directories()[0].entries) tags.push_back(entry.tag);
  EXPECT_TRUE(std::is_sorted(tags.begin(), tags.end()));
  EXPECT_EQ(tags.size(), before.Directories()[0].entries.size() + 1);
  EXPECT_EQ(after.DirectoriesEnd(), tiff.size());
}

TEST(ProfileAttachmentTest, CorruptFilesAreReported) {
  std::string png = EncodeTestImage(AttachmentImage(CV_8UC3), ".png");
  png[8] = 'x';  // the length of the first chunk
  for (const auto& [image, format] :
       {std::pair{png, LUMVIK_HOST_FORMAT_PNG}, std::pair{std::string("x"), LUMVIK_HOST_FORMAT_JPEG},
        std::pair{std::string("x"), LUMVIK_HOST_FORMAT_TIFF}}) {
    EXPECT_THROW(AttachProfile(image, format, "profile"), Failure) << format;
  }
}

TEST(ProfileAttachmentTest, SrgbProfileHasTheSameBytesAtAnyTimeOnAnySystem) {
  const std::string icc = ColorProfile::Srgb().Serialize();
  EXPECT_EQ(icc, ColorProfile::Srgb().Serialize());
  EXPECT_EQ(icc.substr(24, 12), std::string("\x07\xD0\0\1\0\1\0\0\0\0\0\0", 12));
  EXPECT_EQ(icc.substr(40, 4), "APPL");
  EXPECT_TRUE(ColorProfile(icc).IsLikeSrgb());
}

}  // namespace
}  // namespace lumvik::host::test
