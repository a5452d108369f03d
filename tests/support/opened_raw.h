// A RAW file in memory, opened with LibRaw.
#ifndef LUMVIK_TESTS_SUPPORT_OPENED_RAW_H_
#define LUMVIK_TESTS_SUPPORT_OPENED_RAW_H_

#include <gtest/gtest.h>
#include <libraw/libraw.h>

#include <cstdint>
#include <memory>
#include <opencv2/core.hpp>
#include <string>
#include <utility>
#include <vector>

namespace lumvik::test {

// Set up for the camera's white balance, sRGB and AHD demosaicing.
class OpenedRaw {
 public:
  explicit OpenedRaw(std::vector<uint8_t> file) : file_(std::move(file)) {
    EXPECT_EQ(raw_->open_buffer(file_.data(), file_.size()), LIBRAW_SUCCESS);
    auto& params = raw_->imgdata.params;
    params.use_camera_wb = 1;
    params.output_color = 1;
    params.gamm[0] = 1 / 2.4;
    params.gamm[1] = 12.92;
    params.output_bps = 16;
    params.user_qual = 3;
    params.no_auto_bright = 1;
  }

  LibRaw* operator->() { return raw_.get(); }

  std::string DecoderName() {
    libraw_decoder_info_t info;
    return raw_->get_decoder_info(&info) == LIBRAW_SUCCESS ? info.decoder_name : "";
  }

  // 16 bits, one channel for each color LibRaw delivers; empty on failure.
  cv::Mat Develop() {
    EXPECT_EQ(raw_->unpack(), LIBRAW_SUCCESS);
    EXPECT_EQ(raw_->dcraw_process(), LIBRAW_SUCCESS);
    libraw_processed_image_t* image = raw_->dcraw_make_mem_image();
    if (image == nullptr) {
      ADD_FAILURE() << "no image";
      return {};
    }
    EXPECT_EQ(image->bits, 16);
    EXPECT_EQ(image->data_size, 2u * image->colors * image->width * image->height);
    const cv::Mat pixels = cv::Mat(image->height, image->width, CV_16UC(image->colors), image->data).clone();
    LibRaw::dcraw_clear_mem(image);
    return pixels;
  }

 private:
  std::vector<uint8_t> file_;
  std::unique_ptr<LibRaw> raw_ = std::make_unique<LibRaw>();
};

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_OPENED_RAW_H_
