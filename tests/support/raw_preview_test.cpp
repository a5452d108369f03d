#include <gtest/gtest.h>
#include <libraw/libraw.h>

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <vector>

#include "support/opened_raw.h"
#include "support/raw_writer.h"

namespace lumvik::test {
namespace {

const RawFormat kFormats[] = {RawFormat::kArwCompressed, RawFormat::kArwUncompressed, RawFormat::kDng};

cv::Mat MakeGradient(int rows, int columns) {
  cv::Mat corners(2, 2, CV_8UC3), picture;
  cv::RNG(2).fill(corners, cv::RNG::UNIFORM, 0, 256);
  cv::resize(corners, picture, {columns, rows}, 0, 0, cv::INTER_LINEAR);
  return picture;
}

class RawPreviews : public testing::TestWithParam<RawFormat> {
 protected:
  RawPreviews() { options.format = GetParam(); }
  RawOptions options;
};
INSTANTIATE_TEST_SUITE_P(EveryFormat, RawPreviews, testing::ValuesIn(kFormats));

TEST_P(RawPreviews, EmbedsTheGivenJpeg) {
  cv::imencode(".jpg", cv::Mat(75, 100, CV_8UC3, cv::Scalar(30, 60, 90)), options.preview_jpeg);
  OpenedRaw raw(MakeRawFile(MakeGradient(40, 60), options));
  ASSERT_EQ(raw->unpack_thumb(), LIBRAW_SUCCESS);
  const auto& thumbnail = raw->imgdata.thumbnail;
  EXPECT_EQ(thumbnail.tformat, LIBRAW_THUMBNAIL_JPEG);
  EXPECT_EQ(thumbnail.twidth, 100);
  EXPECT_EQ(thumbnail.theight, 75);
  EXPECT_EQ(std::vector<uint8_t>(thumbnail.thumb, thumbnail.thumb + thumbnail.tlength), options.preview_jpeg);
}

TEST_P(RawPreviews, PreviewIsThePictureReduced) {
  const cv::Mat picture = MakeGradient(200, 320);
  OpenedRaw raw(MakeRawFile(picture, options));
  ASSERT_EQ(raw->unpack_thumb(), LIBRAW_SUCCESS);
  const auto& thumbnail = raw->imgdata.thumbnail;
  const std::vector<uint8_t> jpeg(thumbnail.thumb, thumbnail.thumb + thumbnail.tlength);
  cv::Mat preview = cv::imdecode(jpeg, cv::IMREAD_COLOR);
  cv::cvtColor(preview, preview, cv::COLOR_BGR2RGB);
  cv::Mat reduced;
  cv::resize(picture, reduced, {160, 100}, 0, 0, cv::INTER_AREA);
  ASSERT_EQ(preview.size(), reduced.size());
  EXPECT_GT(cv::PSNR(preview, reduced), 38.0);
}

TEST_P(RawPreviews, CanHaveNoPreview) {
  options.preview = RawPreview::kNone;
  const cv::Mat picture = MakeGradient(40, 60);
  OpenedRaw raw(MakeRawFile(picture, options));
  EXPECT_EQ(raw->unpack_thumb(), LIBRAW_NO_THUMBNAIL);
  EXPECT_EQ(raw.Develop().size(), picture.size());
}

TEST(RawBitmapPreview, ArrivesAsItIs) {
  RawOptions options;
  options.format = RawFormat::kDng;
  options.preview = RawPreview::kBitmap;
  options.preview_picture.create(31, 45, CV_8UC3);
  cv::RNG(3).fill(options.preview_picture, cv::RNG::UNIFORM, 0, 256);
  OpenedRaw raw(MakeRawFile(MakeGradient(40, 60), options));
  ASSERT_EQ(raw->unpack_thumb(), LIBRAW_SUCCESS);
  EXPECT_EQ(raw->imgdata.thumbnail.tformat, LIBRAW_THUMBNAIL_BITMAP);
  libraw_processed_image_t* bitmap = raw->dcraw_make_mem_thumb();
  ASSERT_NE(bitmap, nullptr);
  EXPECT_EQ(bitmap->type, LIBRAW_IMAGE_BITMAP);
  ASSERT_EQ(bitmap->data_size, 31u * 45u * 3u);
  const cv::Mat pixels(bitmap->height, bitmap->width, CV_8UC3, bitmap->data);
  EXPECT_EQ(cv::norm(pixels, options.preview_picture, cv::NORM_INF), 0);
  LibRaw::dcraw_clear_mem(bitmap);
}

}  // namespace
}  // namespace lumvik::test
