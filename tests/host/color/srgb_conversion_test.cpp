// Images with color profiles are converted to sRGB.
#include "color/srgb_conversion.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>
#include <string>
#include <vector>

#include "color/color_profile.h"
#include "color/profile_attachment.h"
#include "color/profile_files.h"
#include "support/exif_jpeg.h"
#include "support/file_bytes.h"
#include "support/temp_dir.h"

namespace lumvik::host::test {
namespace {

using lumvik::test::ExifBlock;
using lumvik::test::Ifd;
using lumvik::test::TempDir;
using lumvik::test::WriteBytes;

SrgbConversion Convert(const std::string& image, lumvik_host_format format) {
  const TempDir dir;
  return ConvertToSrgb(WriteBytes(dir.File("image"), {image.begin(), image.end()}), format);
}

cv::Mat Decode(const std::string& image) {
  return cv::imdecode(std::vector<std::uint8_t>(image.begin(), image.end()), cv::IMREAD_COLOR);
}

// Fields of one color, large enough for JPEG to keep it.
cv::Mat ColorFields(int depth) {
  constexpr int kSide = 16;
  const cv::Vec3d colors[] = {{255, 255, 255}, {0, 0, 0},     {128, 128, 128}, {60, 90, 200},
                              {30, 120, 60},   {200, 40, 30}, {10, 20, 30},    {250, 220, 180}};
  cv::Mat image(kSide, kSide * 8, CV_64FC3);
  for (int i = 0; i < 8; ++i) image.colRange(i * kSide, (i + 1) * kSide) = cv::Scalar(colors[i]);
  image.convertTo(image, depth, depth == CV_16U ? 257 : 1);
  return image;
}

cv::Matx33d Diagonal(const cv::Vec3d& values) {
  return {values[0], 0, 0, 0, values[1], 0, 0, 0, values[2]};
}

cv::Vec3d XyzOf(const std::array<double, 2>& xy) {
  return {xy[0] / xy[1], 1, (1 - xy[0] - xy[1]) / xy[1]};
}

// From linear RGB to XYZ.
cv::Matx33d XyzFromRgb(const TestSpace& space) {
  cv::Matx33d primaries;
  for (int i = 0; i < 3; ++i) {
    const cv::Vec3d xyz = XyzOf(space.primaries[static_cast<std::size_t>(i)]);
    for (int row = 0; row < 3; ++row) primaries(row, i) = xyz[row];
  }
  return primaries * Diagonal(primaries.inv() * XyzOf(space.white));
}

// Bradford's, from D50 to D65.
cv::Matx33d AdaptationToD65(const std::array<double, 2>& white) {
  const cv::Matx33d cones(0.8951, 0.2664, -0.1614, -0.7502, 1.7135, 0.0367, 0.0389, -0.0685, 1.0296);
  const cv::Vec3d from = cones * XyzOf(white);
  const cv::Vec3d to = cones * XyzOf(kWhiteD65);
  return cones.inv() * Diagonal({to[0] / from[0], to[1] / from[1], to[2] / from[2]}) * cones;
}

double SrgbLevel(double linear) {
  const double clipped = std::clamp(linear, 0.0, 1.0);
  return 255 * (clipped <= 0.0031308 ? 12.92 * clipped : 1.055 * std::pow(clipped, 1 / 2.4) - 0.055);
}

// The sRGB color of blue, green and red in 0 to 255.
cv::Vec3d Expected(const TestSpace& space, const cv::Vec3d& bgr) {
  constexpr TestSpace kSrgbPrimaries = {"", {{{0.64, 0.33}, {0.30, 0.60}, {0.15, 0.06}}}, kWhiteD65, 0};
  const cv::Matx33d matrix =
      XyzFromRgb(kSrgbPrimaries).inv() * AdaptationToD65(space.white) * XyzFromRgb(space);
  const auto linear = [&](double level) { return std::pow(level / 255, space.gamma); };
  const cv::Vec3d rgb = matrix * cv::Vec3d(linear(bgr[2]), linear(bgr[1]), linear(bgr[0]));
  return {SrgbLevel(rgb[2]), SrgbLevel(rgb[1]), SrgbLevel(rgb[0])};
}

void ExpectConverted(const TestSpace& space, const cv::Mat& source, const cv::Mat& converted,
                     double tolerance) {
  ASSERT_EQ(converted.size(), source.size());
  ASSERT_EQ(converted.type(), CV_8UC3);
  for (int x = 8; x < source.cols; x += 16) {
    const cv::Vec3b before = source.at<cv::Vec3b>(8, x);
    const cv::Vec3b after = converted.at<cv::Vec3b>(8, x);
    EXPECT_LE(cv::norm(cv::Vec3d(after) - Expected(space, before), cv::NORM_INF), tolerance)
        << space.name << ": " << before << " became " << after << ", expected " << Expected(space, before);
  }
}

constexpr double kRounding = 1.0;

TEST(SrgbConversionTest, ColorsAreThoseOfThePrimaries) {
  for (const TestSpace& space : {kAdobeLike, kP3Like, kProPhotoLike}) {
    for (const int depth : {CV_8U, CV_16U}) {
      const cv::Mat fields = ColorFields(depth);
      const std::string png =
          AttachProfile(EncodeTestImage(fields, ".png"), LUMVIK_HOST_FORMAT_PNG, MakeRgbProfile(space));
      const SrgbConversion conversion = Convert(png, LUMVIK_HOST_FORMAT_PNG);
      EXPECT_EQ(conversion.profile, space.name);
      ASSERT_FALSE(conversion.converted.empty()) << space.name;
      ExpectConverted(space, ColorFields(CV_8U), Decode(conversion.converted), kRounding);
    }
  }
}

TEST(SrgbConversionTest, EveryFormatWithProfilesIsConverted) {
  const std::string icc = MakeRgbProfile(kAdobeLike);
  const cv::Mat fields = ColorFields(CV_8U);
  const std::string jpeg = AttachProfile(EncodeTestImage(fields, ".jpg", {cv::IMWRITE_JPEG_QUALITY, 98}),
                                         LUMVIK_HOST_FORMAT_JPEG, icc);
  ExpectConverted(kAdobeLike, Decode(jpeg), Decode(Convert(jpeg, LUMVIK_HOST_FORMAT_JPEG).converted),
                  kRounding);
  const std::string tiff = AttachProfile(EncodeTestImage(fields, ".tif"), LUMVIK_HOST_FORMAT_TIFF, icc);
  ExpectConverted(kAdobeLike, fields, Decode(Convert(tiff, LUMVIK_HOST_FORMAT_TIFF).converted), kRounding);
}

TEST(SrgbConversionTest, WebpIsConverted) {
  std::string icc = MakeRgbProfile(kP3Like);
  const cv::Mat fields = ColorFields(CV_8U);
  const std::string simple = EncodeTestImage(fields, ".webp", {cv::IMWRITE_WEBP_QUALITY, 101});  // lossless
  const auto chunk = [](const std::string& type, const std::string& data) {
    std::string bytes = type;
    for (unsigned shift = 0; shift < 32; shift += 8) bytes.push_back(static_cast<char>(data.size() >> shift));
    return bytes + data + std::string(data.size() % 2, '\0');
  };
  const std::string header = {
      0x20, 0, 0, 0, static_cast<char>(fields.cols - 1), 0, 0, static_cast<char>(fields.rows - 1), 0, 0};
  icc.push_back('\0');  // an odd size, if it was even
  const std::string body = "WEBP" + chunk("VP8X", header) + chunk("ICCP", icc) + simple.substr(12);
  const std::string webp = chunk("RIFF", body);
  const SrgbConversion conversion = Convert(webp, LUMVIK_HOST_FORMAT_WEBP);
  EXPECT_EQ(conversion.profile, "P3-like");
  ExpectConverted(kP3Like, Decode(webp), Decode(conversion.converted), kRounding);
}

TEST(SrgbConversionTest, GrayImagesWithGrayProfilesAreConverted) {
  constexpr double kGamma = 1.8;
  for (const int depth : {CV_8U, CV_16U}) {
    cv::Mat ramp(4, 256, CV_8UC1);
    for (int x = 0; x < 256; ++x) ramp.col(x) = x;
    cv::Mat stored;
    ramp.convertTo(stored, depth, depth == CV_16U ? 257 : 1);
    const std::string png =
        AttachProfile(EncodeTestImage(stored, ".png"), LUMVIK_HOST_FORMAT_PNG, MakeGrayProfile(kGamma));
    const cv::Mat converted = Decode(Convert(png, LUMVIK_HOST_FORMAT_PNG).converted);
    ASSERT_EQ(converted.size(), ramp.size());
    for (int x = 0; x < 256; ++x) {
      const double expected = SrgbLevel(std::pow(x / 255.0, kGamma));
      const cv::Vec3b pixel = converted.at<cv::Vec3b>(1, x);
      EXPECT_NEAR(pixel[0], expected, kRounding) << x;
      EXPECT_EQ(pixel, cv::Vec3b::all(pixel[0])) << x;
    }
  }
}

TEST(SrgbConversionTest, SrgbIsRecognizedByItsEffect) {
  const std::string image = EncodeTestImage(ColorFields(CV_8U), ".png");
  const std::string srgb = ColorProfile::Srgb().Serialize();
  const SrgbConversion own =
      Convert(AttachProfile(image, LUMVIK_HOST_FORMAT_PNG, srgb), LUMVIK_HOST_FORMAT_PNG);
  EXPECT_EQ(own.profile, "sRGB");
  EXPECT_TRUE(own.converted.empty());
  // Another space under that name.
  TestSpace impostor = kP3Like;
  impostor.name = "sRGB";
  const SrgbConversion other =
      Convert(AttachProfile(image, LUMVIK_HOST_FORMAT_PNG, MakeRgbProfile(impostor)), LUMVIK_HOST_FORMAT_PNG);
  EXPECT_EQ(other.profile, "sRGB");
  EXPECT_FALSE(other.converted.empty());
}

TEST(SrgbConversionTest, ImagesWithoutAUsableProfileAreLeftAlone) {
  const std::string image = EncodeTestImage(ColorFields(CV_8U), ".png");
  const std::string garbage(1000, 'x');
  const std::string truncated = MakeRgbProfile(kP3Like).substr(0, 200);
  for (const std::string& file : {image, AttachProfile(image, LUMVIK_HOST_FORMAT_PNG, garbage),
                                  AttachProfile(image, LUMVIK_HOST_FORMAT_PNG, truncated),
                                  image.substr(0, image.size() / 2), std::string("x")}) {
    const SrgbConversion conversion = Convert(file, LUMVIK_HOST_FORMAT_PNG);
    EXPECT_EQ(conversion.profile, "");
    EXPECT_TRUE(conversion.converted.empty());
  }
}

TEST(SrgbConversionTest, ColorImagesWithGrayProfilesAreLeftAlone) {
  const std::string png = AttachProfile(EncodeTestImage(ColorFields(CV_8U), ".png"), LUMVIK_HOST_FORMAT_PNG,
                                        MakeGrayProfile(2.2));
  EXPECT_TRUE(Convert(png, LUMVIK_HOST_FORMAT_PNG).converted.empty());
}

TEST(SrgbConversionTest, ConvertedImageIsUpright) {
  constexpr std::uint16_t kOrientation = 0x0112;
  const std::string plain = EncodeTestImage(ColorFields(CV_8U), ".jpg");
  ExifBlock exif;
  exif.Shorts(Ifd::kZero, kOrientation, {6});
  const auto turned = lumvik::test::JpegWithExif(exif.Serialize(), {plain.begin(), plain.end()});
  const std::string jpeg =
      AttachProfile({turned.begin(), turned.end()}, LUMVIK_HOST_FORMAT_JPEG, MakeRgbProfile(kAdobeLike));
  const cv::Mat converted = Decode(Convert(jpeg, LUMVIK_HOST_FORMAT_JPEG).converted);
  EXPECT_EQ(converted.size(), cv::Size(16, 16 * 8));
}

// EXIF of a camera set to this color space.
std::string JpegOfCamera(std::uint16_t color_space, const std::string& index) {
  const std::string plain = EncodeTestImage(ColorFields(CV_8U), ".jpg", {cv::IMWRITE_JPEG_QUALITY, 98});
  ExifBlock exif;
  exif.Shorts(Ifd::kExif, 0xA001, {color_space});
  exif.Ascii(Ifd::kInteroperability, 1, index);
  const auto jpeg = lumvik::test::JpegWithExif(exif.Serialize(), {plain.begin(), plain.end()});
  return {jpeg.begin(), jpeg.end()};
}

TEST(SrgbConversionTest, AdobeRgbOfCamerasIsConverted) {
  const std::string jpeg = JpegOfCamera(65535, "R03");
  const SrgbConversion conversion = Convert(jpeg, LUMVIK_HOST_FORMAT_JPEG);
  EXPECT_EQ(conversion.profile, "Adobe RGB (1998)");
  ASSERT_FALSE(conversion.converted.empty());
  ExpectConverted(kAdobeLike, Decode(jpeg), Decode(conversion.converted), kRounding);
  EXPECT_EQ(Convert(JpegOfCamera(1, "R98"), LUMVIK_HOST_FORMAT_JPEG).profile, "");
  EXPECT_EQ(Convert(JpegOfCamera(65535, "R98"), LUMVIK_HOST_FORMAT_JPEG).profile, "");
}

TEST(SrgbConversionTest, SameBytesForAnyNumberOfThreads) {
  cv::Mat noise(301, 203, CV_8UC3);
  cv::RNG(5).fill(noise, cv::RNG::UNIFORM, 0, 256);
  const std::string png =
      AttachProfile(EncodeTestImage(noise, ".png"), LUMVIK_HOST_FORMAT_PNG, MakeRgbProfile(kProPhotoLike));
  const int threads = cv::getNumThreads();
  cv::setNumThreads(1);
  const std::string one = Convert(png, LUMVIK_HOST_FORMAT_PNG).converted;
  cv::setNumThreads(4);
  const std::string four = Convert(png, LUMVIK_HOST_FORMAT_PNG).converted;
  cv::setNumThreads(threads);
  EXPECT_EQ(one, four);
}

}  // namespace
}  // namespace lumvik::host::test
