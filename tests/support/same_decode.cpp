#include "support/same_decode.h"

#include <gtest/gtest.h>

#include <cstring>
#include <opencv2/imgproc.hpp>

#include "support/test_images.h"

namespace lumvik::test {
namespace {

// The first sample that differs, of two images of one size and type.
std::string FirstDifference(const cv::Mat& actual, const cv::Mat& expected) {
  for (int y = 0; y < actual.rows; ++y) {
    for (int i = 0; i < actual.cols * actual.channels(); ++i) {
      const int a = actual.ptr<uint16_t>(y)[i];
      const int b = expected.ptr<uint16_t>(y)[i];
      if (a == b) continue;
      const int x = i / actual.channels();
      return "channel " + std::to_string(i % actual.channels()) + " at column " + std::to_string(x) +
             ", row " + std::to_string(y) + ": " + std::to_string(a) + " instead of " + std::to_string(b);
    }
  }
  return "";
}

void ExpectSameImage(const cv::Mat& actual, const cv::Mat& plain) {
  cv::Mat expected;
  cv::cvtColor(plain, expected, cv::COLOR_RGB2RGBA);
  ASSERT_EQ(actual.size(), expected.size());
  ASSERT_EQ(actual.type(), expected.type());
  if (SameBytes(actual, expected)) return;
  const cv::Mat differs = actual.reshape(1) != expected.reshape(1);
  ADD_FAILURE() << cv::countNonZero(differs) << " of " << differs.total() << " samples differ, first "
                << FirstDifference(actual, expected);
}

// Of floats, too: a matrix may hold NaN.
template <typename A, typename B>
bool SameField(const A& a, const B& b) {
  static_assert(sizeof(a) == sizeof(b));
  return std::memcmp(&a, &b, sizeof(a)) == 0;
}

void ExpectSameMetadata(const DecodedImage& decoded, const PlainDecode& plain) {
  const libraw_data_t& data = plain.Data();
  EXPECT_EQ(decoded.width, plain.Image().cols);
  EXPECT_EQ(decoded.height, plain.Image().rows);
  EXPECT_EQ(decoded.iso_speed, data.other.iso_speed);
  EXPECT_EQ(decoded.shutter, data.other.shutter);
  EXPECT_EQ(decoded.aperture, data.other.aperture);
  EXPECT_EQ(decoded.focal_len, data.other.focal_len);
  EXPECT_STREQ(decoded.make, data.idata.make);
  EXPECT_STREQ(decoded.model, data.idata.model);
  EXPECT_EQ(decoded.orientation, data.sizes.flip);
  EXPECT_TRUE(SameField(decoded.cam_mul, data.color.cam_mul));
  EXPECT_TRUE(SameField(decoded.rgb_cam, data.color.rgb_cam));
}

}  // namespace

DecodedImage ExpectSameDecode(const std::string& path, int quality, const PlainDecode& plain) {
  DecodedImage decoded;
  const bool success = DecodeRaw(path, quality, decoded);
  EXPECT_EQ(success, plain.Error().empty());
  EXPECT_EQ(decoded.error, plain.Error());
  EXPECT_EQ(decoded.path, path);
  if (success && plain.Error().empty()) {
    ExpectSameImage(decoded.image, plain.Image());
    ExpectSameMetadata(decoded, plain);
  }
  return decoded;
}

}  // namespace lumvik::test
