#include "support/lossless_jpeg.h"

#include <gtest/gtest.h>

#include "support/opened_raw.h"
#include "support/raw_writer.h"
#include "support/test_images.h"
#include "support/tiff_tags.h"

namespace lumvik::test {
namespace {

TEST(LosslessJpegTest, LibRawReadsTheSamplesBack) {
  constexpr uint16_t kLosslessJpeg = 7;
  cv::Mat sensor(24, 37, CV_16UC1);
  cv::RNG(3).fill(sensor, cv::RNG::UNIFORM, 0, 1 << 14);
  RawOptions options;
  options.format = RawFormat::kDng;
  options.preview = RawPreview::kNone;
  TiffDirectory dng = MakeRawDirectory(cv::Mat(sensor.size(), CV_8UC3, cv::Scalar::all(0)), options);
  dng.SetShorts(tag::kCompression, {kLosslessJpeg});
  dng.SetData(tag::kStripOffsets, tag::kStripByteCounts, EncodeLosslessJpeg(sensor));
  OpenedRaw raw(dng.Serialize());
  ASSERT_EQ(raw->unpack(), LIBRAW_SUCCESS);
  EXPECT_TRUE(SameBytes(cv::Mat(sensor.size(), CV_16UC1, raw->imgdata.rawdata.raw_image), sensor));
}

}  // namespace
}  // namespace lumvik::test
