#include "support/raw_writer.h"

#include <gtest/gtest.h>
#include <libraw/libraw.h>

#include <cmath>
#include <ctime>
#include <fstream>
#include <memory>
#include <opencv2/imgproc.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/opened_raw.h"
#include "support/temp_dir.h"

namespace lumvik::test {
namespace {

// Soft clouds of in-gamut colors with a fine texture, equally soft at every size and nowhere so bright that
// LibRaw would take it for white.
cv::Mat MakePicture(int rows, int columns) {
  constexpr int kCloud = 32;
  cv::RNG random(7);
  cv::Mat gray(rows / kCloud + 2, columns / kCloud + 2, CV_32FC1), tint(gray.size(), CV_32FC3);
  random.fill(gray, cv::RNG::UNIFORM, 0.15, 0.7);
  random.fill(tint, cv::RNG::UNIFORM, -0.12, 0.12);
  cv::cvtColor(gray, gray, cv::COLOR_GRAY2RGB);
  cv::Mat picture;
  cv::resize(gray + tint, picture, {gray.cols * kCloud, gray.rows * kCloud}, 0, 0, cv::INTER_LINEAR);
  picture = picture(cv::Rect(0, 0, columns, rows));
  for (int row = 0; row < rows; ++row) {
    for (int column = 0; column < columns; ++column) {
      const double texture = 0.02 * std::sin(0.9 * row) * std::sin(1.1 * column);
      picture.at<cv::Vec3f>(row, column) += cv::Vec3f::all(static_cast<float>(texture));
    }
  }
  picture.convertTo(picture, CV_16U, 65535);
  return picture;
}

double PeakSignalToNoise(const cv::Mat& a, const cv::Mat& b) {
  const double samples = static_cast<double>(a.total()) * a.channels();
  return 20 * std::log10(65535 * std::sqrt(samples) / cv::norm(a, b, cv::NORM_L2));
}

RawOptions WithFormat(RawFormat format) {
  RawOptions options;
  options.format = format;
  return options;
}

struct FormatCase {
  RawFormat format;
  const char* name;
  const char* decoder;
  double min_psnr;  // dB; a camera's mixed primaries amplify what demosaicing misses
};
constexpr FormatCase kFormatCases[] = {
    {RawFormat::kArwCompressed, "ArwCompressed", "sony_arw2_load_raw()", 49},
    {RawFormat::kArwUncompressed, "ArwUncompressed", "unpacked_load_raw()", 49},
    {RawFormat::kDng, "Dng", "packed_dng_load_raw()", 51},
};

class EveryRawFormat : public testing::TestWithParam<FormatCase> {};

std::string CaseName(const testing::TestParamInfo<FormatCase>& info) {
  return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(RawWriter, EveryRawFormat, testing::ValuesIn(kFormatCases), CaseName);

TEST_P(EveryRawFormat, PictureSurvives) {
  const cv::Mat picture = MakePicture(200, 300);
  const cv::Mat developed = OpenedRaw(MakeRawFile(picture, WithFormat(GetParam().format))).Develop();
  ASSERT_EQ(developed.size(), picture.size());
  EXPECT_GT(PeakSignalToNoise(developed, picture), GetParam().min_psnr);
}

TEST_P(EveryRawFormat, FlatColorsSurvive) {
  for (const cv::Scalar& color :
       {cv::Scalar(40, 40, 40), cv::Scalar(180, 150, 120), cv::Scalar(90, 140, 190)}) {
    const cv::Mat picture(32, 32, CV_8UC3, color);
    const cv::Mat developed = OpenedRaw(MakeRawFile(picture, WithFormat(GetParam().format))).Develop();
    const cv::Scalar mean = cv::mean(developed) / 257;
    for (int c = 0; c < 3; ++c) EXPECT_NEAR(mean[c], color[c], 0.5) << color << " channel " << c;
  }
}

// The one case in which brightness changes.
TEST_P(EveryRawFormat, NearlyWhiteComesBackWhite) {
  const cv::Mat picture(32, 32, CV_8UC3, cv::Scalar::all(240));
  const cv::Mat developed = OpenedRaw(MakeRawFile(picture, WithFormat(GetParam().format))).Develop();
  EXPECT_GT(cv::mean(developed)[1] / 257, 254.5);
}

TEST_P(EveryRawFormat, UsesItsOwnDecoder) {
  OpenedRaw raw(MakeRawFile(MakePicture(30, 40), WithFormat(GetParam().format)));
  EXPECT_EQ(raw.DecoderName(), GetParam().decoder);
}

// Odd sizes, LibRaw's minimum, and widths at which it crops some cameras' margins.
TEST_P(EveryRawFormat, EverySizeSurvives) {
  for (const cv::Size& size : {cv::Size(22, 22),
                               {23, 25},
                               {31, 40},
                               {97, 61},
                               {22, 301},
                               {2816, 23},
                               {3760, 22},
                               {4096, 22},
                               {4288, 22},
                               {4600, 23},
                               {4928, 22},
                               {6048, 22}}) {
    const cv::Mat picture = MakePicture(size.height, size.width);
    const cv::Mat developed = OpenedRaw(MakeRawFile(picture, WithFormat(GetParam().format))).Develop();
    ASSERT_EQ(developed.size(), size);
    // Edges, which demosaicing extrapolates, weigh more in a small image.
    EXPECT_GT(PeakSignalToNoise(developed, picture), 44.0) << size;
  }
}

TEST_P(EveryRawFormat, IsTurnedByItsOrientation) {
  const cv::Mat picture = MakePicture(50, 71);
  RawOptions options = WithFormat(GetParam().format);
  const cv::Mat upright = OpenedRaw(MakeRawFile(picture, options)).Develop();
  const int flips[] = {0, 1, 3, 2, 4, 6, 7, 5};  // LibRaw's codes: 1 mirror, 2 upside down, 4 transpose first
  for (int orientation = 1; orientation <= 8; ++orientation) {
    options.orientation = orientation;
    OpenedRaw raw(MakeRawFile(picture, options));
    const int flip = flips[orientation - 1];
    EXPECT_EQ(raw->imgdata.sizes.flip, flip);
    cv::Mat expected = upright.clone();
    if (flip & 2) cv::flip(expected, expected, 0);
    if (flip & 1) cv::flip(expected, expected, 1);
    if (flip & 4) cv::transpose(expected, expected);
    const cv::Mat developed = raw.Develop();
    ASSERT_EQ(developed.size(), expected.size());
    EXPECT_EQ(cv::norm(developed, expected, cv::NORM_INF), 0) << "orientation " << orientation;
  }
}

TEST_P(EveryRawFormat, ShootingDataArrives) {
  RawOptions options = WithFormat(GetParam().format);
  options.make = "Sony";
  options.model = "X-1";
  options.iso = 6400;
  options.exposure_time = {1, 60};
  options.f_number = {56, 10};
  options.focal_length = {105, 2};
  options.datetime = "2020:02:29 23:59:58";
  options.multipliers = {1.5f, 1.0f, 2.25f};
  OpenedRaw raw(MakeRawFile(MakePicture(30, 40), options));
  EXPECT_STREQ(raw->imgdata.idata.make, "Sony");
  EXPECT_STREQ(raw->imgdata.idata.model, "X-1");
  const auto& other = raw->imgdata.other;
  EXPECT_FLOAT_EQ(other.iso_speed, 6400.0f);
  EXPECT_FLOAT_EQ(other.shutter, 1 / 60.0f);
  EXPECT_FLOAT_EQ(other.aperture, 5.6f);
  EXPECT_FLOAT_EQ(other.focal_len, 52.5f);
  char text[20];
  std::strftime(text, sizeof text, "%Y:%m:%d %H:%M:%S", std::localtime(&other.timestamp));
  EXPECT_EQ(text, options.datetime);
  const bool dng = GetParam().format == RawFormat::kDng;
  const float unit = dng ? 1.0f : 1024.0f;
  const auto& cam_mul = raw->imgdata.color.cam_mul;
  EXPECT_NEAR(cam_mul[0], 1.5f * unit, 1e-5f);
  EXPECT_NEAR(cam_mul[1], unit, 1e-5f);
  EXPECT_NEAR(cam_mul[2], 2.25f * unit, 1e-5f);
  EXPECT_EQ(cam_mul[3], dng ? 0.0f : unit);
}

TEST(RawWriter, MonochromeDngGivesOneColor) {
  RawOptions options = WithFormat(RawFormat::kDng);
  options.monochrome = true;
  const cv::Mat gray(40, 60, CV_8UC3, cv::Scalar::all(120));
  OpenedRaw raw(MakeRawFile(gray, options));
  EXPECT_EQ(raw->imgdata.idata.colors, 1);
  EXPECT_EQ(raw->imgdata.idata.filters, 0u);
  const cv::Mat developed = raw.Develop();
  EXPECT_EQ(developed.type(), CV_16UC1);
  EXPECT_NEAR(cv::mean(developed)[0] / 257, 120, 0.2);
}

TEST(RawWriter, EightBitPictureIsTheSixteenBitOne) {
  cv::Mat fine;
  cv::Mat coarse(32, 32, CV_8UC3);
  cv::RNG(5).fill(coarse, cv::RNG::UNIFORM, 0, 256);
  coarse.convertTo(fine, CV_16U, 257);
  EXPECT_EQ(MakeRawFile(coarse), MakeRawFile(fine));
}

TEST(RawWriter, CompressionTakesOneByteAPixel) {
  const cv::Mat picture = MakePicture(64, 320);
  RawOptions options;
  options.preview = RawPreview::kNone;
  const size_t compressed = MakeRawFile(picture, options).size();
  options.format = RawFormat::kArwUncompressed;
  EXPECT_EQ(MakeRawFile(picture, options).size() - compressed, picture.total());
}

TEST(RawWriter, OpensFromDisk) {
  const TempDir folder;
  const std::string path = folder.File("picture.ARW");
  const std::vector<uint8_t> bytes = MakeRawFile(MakePicture(30, 40));
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  auto raw = std::make_unique<LibRaw>();
  EXPECT_EQ(raw->open_file(path.c_str()), LIBRAW_SUCCESS);
  EXPECT_STREQ(raw->imgdata.idata.model, "ILCE-7M3");
  EXPECT_EQ(raw->unpack(), LIBRAW_SUCCESS);
}

TEST(RawWriter, RefusesWhatItCannotWrite) {
  EXPECT_THROW(MakeRawFile(cv::Mat()), std::invalid_argument);
  EXPECT_THROW(MakeRawFile(cv::Mat(30, 30, CV_8UC4)), std::invalid_argument);
  RawOptions monochrome;
  monochrome.monochrome = true;
  EXPECT_THROW(MakeRawFile(MakePicture(30, 30), monochrome), std::invalid_argument);
  RawOptions bitmap;
  bitmap.preview = RawPreview::kBitmap;
  EXPECT_THROW(MakeRawFile(MakePicture(30, 30), bitmap), std::invalid_argument);
}

}  // namespace
}  // namespace lumvik::test
