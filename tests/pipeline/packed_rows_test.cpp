#include "pipeline/packed_rows.h"

#include <gtest/gtest.h>

#include <limits>

#include "pipeline/row_steps.h"
#include "support/test_images.h"

namespace lumvik {
namespace {

using test::NoiseImage;
using test::SameBytes;

cv::Mat Converted(const cv::Mat& input, int output_type) {
  cv::Mat output(input.size(), output_type);
  RunRowSteps(RowsOf(input), {}, StoreIn(output));
  return output;
}

cv::Mat AllCodes() {
  cv::Mat image(256, 256, CV_16UC4);
  for (int code = 0; code < 65536; ++code) {
    const auto value = static_cast<uint16_t>(code);
    image.at<cv::Vec4w>(code / 256, code % 256) =
        cv::Vec4w(value, static_cast<uint16_t>(65535 - value), static_cast<uint16_t>(value ^ 0x5555), value);
  }
  return image;
}

TEST(RowSource, KeepsEvery16BitValueWithoutKernels) {
  const cv::Mat image = AllCodes();
  EXPECT_TRUE(SameBytes(Converted(image, CV_16UC4), image));
  EXPECT_TRUE(SameBytes(Converted(Converted(image, CV_32FC4), CV_16UC4), image));
}

TEST(RowSource, ConvertsAsOpenCvDoes) {
  const cv::Mat image = AllCodes();
  cv::Mat as_float;
  image.convertTo(as_float, CV_32FC4, 1.5259021896696422e-5);
  EXPECT_TRUE(SameBytes(Converted(image, CV_32FC4), as_float));

  cv::Mat halves(1, 65536, CV_32FC4);  // values half-way between two codes, and beyond both ends
  for (int i = 0; i < halves.cols; ++i) {
    const float value = (static_cast<float>(i) - 3.5F) / 65535.0F;
    halves.at<cv::Vec4f>(0, i) = cv::Vec4f(value, value * 1.01F, -value, value);
  }
  cv::Mat rounded;
  halves.convertTo(rounded, CV_16UC4, 65535.0);
  EXPECT_TRUE(SameBytes(Converted(halves, CV_16UC4), rounded));
}

TEST(RowSource, NaNBecomesBlackAndInfinityWhite) {
  cv::Mat image(1, 1, CV_32FC4, cv::Scalar(std::numeric_limits<double>::quiet_NaN(), 1e30, -1e30, 1.0));
  EXPECT_EQ(Converted(image, CV_16UC4).at<cv::Vec4w>(0, 0), cv::Vec4w(0, 65535, 0, 65535));
}

TEST(RowSource, ReadsAndWritesPartsOfLargerImages) {
  const cv::Mat large = NoiseImage({40, 30}, 7);
  const cv::Mat part = large(cv::Rect(5, 3, 21, 11));
  cv::Mat into(60, 50, CV_16UC4, cv::Scalar::all(1));
  cv::Mat region = into(cv::Rect(2, 4, 21, 11));
  RunRowSteps(RowsOf(part), {}, StoreIn(region));
  EXPECT_TRUE(SameBytes(region, part));
  EXPECT_EQ(into.at<cv::Vec4w>(4, 1), cv::Vec4w::all(1));
  EXPECT_EQ(into.at<cv::Vec4w>(4, 23), cv::Vec4w::all(1));
}

TEST(RowSource, RefusesOtherTypes) {
  const cv::Mat three_channels(2, 2, CV_16UC3);
  EXPECT_THROW(RowsOf(three_channels), cv::Exception);
  EXPECT_THROW(StoreIn(three_channels), cv::Exception);
}

}  // namespace
}  // namespace lumvik
