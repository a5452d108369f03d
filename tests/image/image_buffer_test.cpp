#include "image/image_buffer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <opencv2/imgproc.hpp>
#include <stdexcept>

#include "support/test_images.h"

namespace lumvik::test {
namespace {

using Rgba16 = cv::Vec<uint16_t, 4>;
using Rgb16 = cv::Vec<uint16_t, 3>;

constexpr int kCodes16 = 65536;

// Different in every pixel and channel.
cv::Mat Picture(int type, int rows = 5, int cols = 7) {
  cv::Mat image(rows, cols, type);
  cv::RNG(12345).fill(image, cv::RNG::UNIFORM, 0, image.depth() == CV_8U ? 256 : kCodes16);
  return image;
}

// The expected conversion of an image of an accepted type.
cv::Mat Expected(const cv::Mat& image) {
  cv::Mat expected(image.size(), CV_16UC4);
  const int channels = image.channels();
  for (int y = 0; y < image.rows; ++y) {
    for (int x = 0; x < image.cols; ++x) {
      auto& pixel = expected.at<Rgba16>(y, x);
      pixel[3] = 65535;
      for (int c = 0; c < channels; ++c) {
        const int i = x * channels + c;
        pixel[c] = image.depth() == CV_8U ? static_cast<uint16_t>(image.ptr<uint8_t>(y)[i] * 257)
                                          : image.ptr<uint16_t>(y)[i];
      }
    }
  }
  return expected;
}

// One row with every 16-bit code in red, and different codes in the other channels.
cv::Mat EveryCode() {
  cv::Mat row(1, kCodes16, CV_16UC4);
  for (int i = 0; i < kCodes16; ++i) {
    const auto code = [i](int step) { return static_cast<uint16_t>((i + step) % kCodes16); };
    row.at<Rgba16>(0, i) = {code(0), code(1000), code(30000), code(60000)};
  }
  return row;
}

class AcceptedTypes : public ::testing::TestWithParam<int> {};

TEST_P(AcceptedTypes, BecomeFourChannelsOfFullRange) {
  const cv::Mat image = Picture(GetParam());
  EXPECT_TRUE(SameBytes(ToImageBuffer(image), Expected(image)));
}

TEST_P(AcceptedTypes, MayBePartOfALargerImage) {
  const cv::Mat image = Picture(GetParam())(cv::Rect(2, 1, 3, 2));
  EXPECT_TRUE(SameBytes(ToImageBuffer(image), Expected(image)));
}

TEST_P(AcceptedTypes, ShareNoPixelsWithTheResult) {
  cv::Mat image = Picture(GetParam());
  const cv::Mat result = ToImageBuffer(image);
  const cv::Mat before = Expected(image);
  image.setTo(cv::Scalar::all(0));
  EXPECT_TRUE(SameBytes(result, before));
}

INSTANTIATE_TEST_SUITE_P(ImageBuffer, AcceptedTypes, ::testing::Values(CV_8UC3, CV_8UC4, CV_16UC3, CV_16UC4));

TEST(ImageBuffer, EveryByteIsWidenedBy257) {
  cv::Mat bytes(1, 256, CV_8UC4);
  for (int i = 0; i < 256; ++i) bytes.at<cv::Vec4b>(0, i) = cv::Vec4b::all(static_cast<uint8_t>(i));
  EXPECT_TRUE(SameBytes(ToImageBuffer(bytes), Expected(bytes)));
}

TEST(ImageBuffer, ChannelsKeepTheirOrder) {
  const cv::Mat pixel(1, 1, CV_8UC3, cv::Scalar(10, 20, 30));
  EXPECT_EQ(ToImageBuffer(pixel).at<Rgba16>(0, 0), Rgba16(2570, 5140, 7710, 65535));
}

TEST(ImageBuffer, TransparencyIsKept) {
  const cv::Mat bytes(1, 1, CV_8UC4, cv::Scalar(10, 20, 30, 0));
  EXPECT_EQ(ToImageBuffer(bytes).at<Rgba16>(0, 0), Rgba16(2570, 5140, 7710, 0));
  const cv::Mat half(1, 1, CV_8UC4, cv::Scalar(10, 20, 30, 128));
  EXPECT_EQ(ToImageBuffer(half).at<Rgba16>(0, 0), Rgba16(2570, 5140, 7710, 32896));
  const cv::Mat words(1, 1, CV_16UC4, cv::Scalar(1, 2, 3, 0));
  EXPECT_EQ(ToImageBuffer(words).at<Rgba16>(0, 0), Rgba16(1, 2, 3, 0));
}

TEST(ImageBuffer, AnEmptyMatrixStaysEmpty) {
  EXPECT_TRUE(ToImageBuffer(cv::Mat()).empty());
  EXPECT_TRUE(ToImageBuffer(cv::Mat(0, 5, CV_32FC1)).empty());
}

TEST(ImageBuffer, OtherTypesAreRefused) {
  for (const int type : {CV_8UC1, CV_8UC2, CV_8SC3, CV_8SC4, CV_16UC1, CV_16UC2, CV_16SC3, CV_16SC4, CV_32SC4,
                         CV_32FC1, CV_32FC3, CV_32FC4, CV_64FC4, CV_8UC(5), CV_16UC(5)}) {
    try {
      ToImageBuffer(cv::Mat(2, 2, type));
      ADD_FAILURE() << cv::typeToString(type) << " was accepted";
    } catch (const std::invalid_argument& error) {
      EXPECT_STREQ(error.what(), "ImageBuffer: unsupported cv::Mat type");
    }
  }
}

TEST(ToRgba8, ListedSamples) {
  const cv::Mat pixel(1, 1, CV_16UC4, cv::Scalar(65535, 257, 128, 0));
  EXPECT_EQ(ToRgba8(pixel).at<cv::Vec4b>(0, 0), cv::Vec4b(255, 1, 0, 0));
}

TEST(ToRgba8, EverySampleIsDividedBy257AndRounded) {
  const cv::Mat codes = EveryCode();
  const cv::Mat bytes = ToRgba8(codes);
  ASSERT_EQ(bytes.type(), CV_8UC4);
  ASSERT_EQ(bytes.size(), codes.size());
  for (int i = 0; i < kCodes16 * 4; ++i) {
    ASSERT_EQ(bytes.ptr<uint8_t>()[i], (codes.ptr<uint16_t>()[i] + 128) / 257) << i;  // 257 is odd: no ties
  }
}

TEST(ToRgba8, UndoesTheWidening) {
  const cv::Mat bytes = Picture(CV_8UC4, 64, 64);
  EXPECT_TRUE(SameBytes(ToRgba8(ToImageBuffer(bytes)), bytes));
}

TEST(ToBgr8, HoldsTheColorsOfToRgba8InReverse) {
  for (const int columns : {1, 13, 64, 211}) {
    const cv::Mat image = Picture(CV_16UC4, 7, columns);
    const cv::Mat bgr = ToBgr8(image);
    ASSERT_EQ(bgr.type(), CV_8UC3);
    const cv::Mat rgba = ToRgba8(image);
    for (int y = 0; y < image.rows; ++y) {
      for (int x = 0; x < image.cols; ++x) {
        const auto& pixel = rgba.at<cv::Vec4b>(y, x);
        ASSERT_EQ(bgr.at<cv::Vec3b>(y, x), cv::Vec3b(pixel[2], pixel[1], pixel[0])) << x << " of " << columns;
      }
    }
  }
}

TEST(ToRgbaFloat, EverySampleIsDividedBy65535) {
  const cv::Mat codes = EveryCode();
  const cv::Mat floats = ToRgbaFloat(codes);
  ASSERT_EQ(floats.type(), CV_32FC4);
  ASSERT_EQ(floats.size(), codes.size());
  for (int i = 0; i < kCodes16 * 4; ++i) {
    const float exact = static_cast<float>(codes.ptr<uint16_t>()[i] / 65535.0);
    ASSERT_LE(std::abs(floats.ptr<float>()[i] - exact), std::nextafter(exact, 2.0F) - exact) << i;
  }
}

TEST(ToRgbaFloat, TheEndsOfTheRangeAreExact) {
  const cv::Mat pixel(1, 1, CV_16UC4, cv::Scalar(0, 65535, 0, 65535));
  EXPECT_EQ(ToRgbaFloat(pixel).at<cv::Vec4f>(0, 0), cv::Vec4f(0, 1, 0, 1));
}

TEST(ToRgb16, DropsTheAlphaAndNothingElse) {
  const cv::Mat image = Picture(CV_16UC4);
  const cv::Mat rgb = ToRgb16(image);
  ASSERT_EQ(rgb.type(), CV_16UC3);
  ASSERT_EQ(rgb.size(), image.size());
  for (int y = 0; y < image.rows; ++y) {
    for (int x = 0; x < image.cols; ++x) {
      const auto& pixel = image.at<Rgba16>(y, x);
      EXPECT_EQ(rgb.at<Rgb16>(y, x), Rgb16(pixel[0], pixel[1], pixel[2]));
    }
  }
}

TEST(Conversions, OfAnEmptyImageAreEmpty) {
  EXPECT_TRUE(ToRgb16(ImageBuffer()).empty());
  EXPECT_TRUE(ToRgba8(ImageBuffer()).empty());
  EXPECT_TRUE(ToBgr8(ImageBuffer()).empty());
  EXPECT_TRUE(ToRgbaFloat(ImageBuffer()).empty());
}

TEST(AssignImage, CopiesWithoutSharing) {
  ImageBuffer source = Picture(CV_16UC4);
  const cv::Mat before = source.clone();
  ImageBuffer destination;
  AssignImage(destination, source);
  EXPECT_TRUE(SameBytes(destination, before));
  source.setTo(cv::Scalar::all(1));
  EXPECT_TRUE(SameBytes(destination, before));
  destination.setTo(cv::Scalar::all(2));
  EXPECT_EQ(source.at<Rgba16>(0, 0), Rgba16(1, 1, 1, 1));
}

TEST(AssignImage, EndsEarlierSharingAndReplacesAnotherSize) {
  const ImageBuffer source = Picture(CV_16UC4);
  ImageBuffer destination = source;  // shares
  AssignImage(destination, source);
  EXPECT_NE(destination.data, source.data);
  EXPECT_TRUE(SameBytes(destination, source));

  destination = Picture(CV_16UC4, 9, 2);
  AssignImage(destination, source);
  EXPECT_TRUE(SameBytes(destination, source));
}

TEST(AssignImage, AnEmptySourceEmptiesTheDestination) {
  ImageBuffer destination = Picture(CV_16UC4);
  AssignImage(destination, ImageBuffer());
  EXPECT_TRUE(destination.empty());
}

TEST(ResizedImageBuffer, HasExactlyTheGivenSize) {
  for (const int type : {CV_8UC3, CV_8UC4, CV_16UC3, CV_16UC4}) {
    const cv::Mat image(31, 47, type, cv::Scalar::all(200));
    for (const cv::Size size : {cv::Size(1, 1), cv::Size(47, 31), cv::Size(100, 3), cv::Size(5, 200)}) {
      const ImageBuffer resized = ResizedImageBuffer(image, size.width, size.height, cv::INTER_LINEAR);
      EXPECT_EQ(resized.size(), size);
      EXPECT_EQ(resized.type(), CV_16UC4);
      const uint16_t sample = image.depth() == CV_8U ? 200 * 257 : 200;
      const uint16_t alpha = image.channels() == 4 ? sample : 65535;
      EXPECT_EQ(resized.at<Rgba16>(size.height - 1, size.width - 1), Rgba16(sample, sample, sample, alpha));
    }
  }
}

TEST(ResizedImageBuffer, InterpolatesAsAsked) {
  const cv::Mat row = (cv::Mat_<Rgba16>(1, 2) << Rgba16(0, 100, 1000, 65535), Rgba16(100, 300, 3000, 65535));
  EXPECT_EQ(ResizedImageBuffer(row, 1, 1, cv::INTER_AREA).at<Rgba16>(0, 0), Rgba16(50, 200, 2000, 65535));
  const ImageBuffer nearest = ResizedImageBuffer(row, 4, 1, cv::INTER_NEAREST);
  EXPECT_EQ(nearest.at<Rgba16>(0, 1), Rgba16(0, 100, 1000, 65535));
  EXPECT_EQ(nearest.at<Rgba16>(0, 2), Rgba16(100, 300, 3000, 65535));
  const ImageBuffer linear = ResizedImageBuffer(row, 4, 1, cv::INTER_LINEAR);
  EXPECT_EQ(linear.at<Rgba16>(0, 1), Rgba16(25, 150, 1500, 65535));
  EXPECT_EQ(linear.at<Rgba16>(0, 2), Rgba16(75, 250, 2500, 65535));
}

TEST(ResizedImageBuffer, WidensAfterResizing) {
  const cv::Mat bytes = Picture(CV_8UC3, 8, 8);
  const ImageBuffer resized = ResizedImageBuffer(bytes, 21, 13, cv::INTER_LINEAR);
  cv::Mat bytes_resized;
  cv::resize(bytes, bytes_resized, cv::Size(21, 13), 0, 0, cv::INTER_LINEAR);
  EXPECT_TRUE(SameBytes(resized, Expected(bytes_resized)));
}

TEST(ResizedImageBuffer, SharesNothingAtTheSameSize) {
  cv::Mat image = Picture(CV_16UC4);
  const cv::Mat before = image.clone();
  const ImageBuffer resized = ResizedImageBuffer(image, image.cols, image.rows, cv::INTER_LINEAR);
  image.setTo(cv::Scalar::all(0));
  EXPECT_TRUE(SameBytes(resized, before));
}

TEST(ResizedImageBuffer, RefusesOtherTypes) {
  EXPECT_THROW(ResizedImageBuffer(cv::Mat(4, 4, CV_32FC4, cv::Scalar::all(1)), 2, 2, cv::INTER_LINEAR),
               std::invalid_argument);
}

TEST(ShrinkImage, AveragesAreasByOneFactorBothWays) {
  const float factor = 2000.0F / 2500.0F;
  const cv::Mat original = Picture(CV_16UC3, 30, 2500);
  cv::Mat shrunk = original.clone();
  ShrinkImage(shrunk, factor);
  cv::Mat expected;
  cv::resize(original, expected, cv::Size(), static_cast<double>(factor), static_cast<double>(factor),
             cv::INTER_AREA);
  ASSERT_EQ(shrunk.size(), cv::Size(2000, 24));
  EXPECT_TRUE(SameBytes(shrunk, expected));
}

TEST(ShrinkImage, RoundsTheShorterSide) {
  cv::Mat image(400, 600, CV_8UC3, cv::Scalar(1, 2, 3));
  ShrinkImage(image, 409.6F / 600.0F);
  EXPECT_EQ(image.size(), cv::Size(410, 273));
}

TEST(ShrinkImage, ASideNeverFallsBelowOnePixel) {
  const float factor = 4096.0F / 10000.0F;
  for (const cv::Size size : {cv::Size(10000, 1), cv::Size(1, 10000)}) {
    cv::Mat image(size, CV_8UC3, cv::Scalar(10, 20, 30));
    ShrinkImage(image, factor);
    EXPECT_EQ(image.size(), size.width > 1 ? cv::Size(4096, 1) : cv::Size(1, 4096));
    EXPECT_EQ(image.at<cv::Vec3b>(image.rows - 1, image.cols - 1), cv::Vec3b(10, 20, 30));
  }
}

}  // namespace
}  // namespace lumvik::test
