// The reference implementation of the RAW decode, step by step with LibRaw's own calls.
#ifndef LUMVIK_TESTS_SUPPORT_PLAIN_RAW_DECODE_H_
#define LUMVIK_TESTS_SUPPORT_PLAIN_RAW_DECODE_H_

#include <gtest/gtest.h>
#include <libraw/libraw.h>

#include <algorithm>
#include <memory>
#include <opencv2/imgproc.hpp>
#include <string>

#include "image/base_curve.h"

namespace lumvik::test {

class PlainDecode {
 public:
  PlainDecode(const std::string& path, int quality) : raw_(std::make_unique<LibRaw>()) {
    EXPECT_EQ(raw_->open_file(path.c_str()), LIBRAW_SUCCESS);
    auto& params = raw_->imgdata.params;
    params.half_size = quality >= 2 ? 1 : 0;
    params.use_camera_wb = 1;
    params.output_color = 1;
    params.gamm[0] = 0.4166666666666667;
    params.gamm[1] = 12.92;
    params.output_bps = 16;
    params.user_qual = 3;
    params.no_auto_bright = 1;
    EXPECT_EQ(raw_->unpack(), LIBRAW_SUCCESS);
    EXPECT_EQ(raw_->dcraw_process(), LIBRAW_SUCCESS);
    int code = 0;
    libraw_processed_image_t* memory = raw_->dcraw_make_mem_image(&code);
    image_ = cv::Mat(memory->height, memory->width, CV_16UC3, memory->data).clone();
    LibRaw::dcraw_clear_mem(memory);
    for (int y = 0; y < image_.rows; ++y) {
      for (int i = 0; i < image_.cols * 3; ++i) {
        auto& sample = image_.ptr<uint16_t>(y)[i];
        sample = BaseCurveTable()[sample];
      }
    }
    Reduce(quality);
  }

  // 16-bit red, green, blue.
  const cv::Mat& Image() const { return image_; }
  const libraw_data_t& Data() const { return raw_->imgdata; }

 private:
  void Reduce(int quality) {
    const int long_side = std::max(image_.cols, image_.rows);
    if (quality == 4) {
      cv::resize(image_, image_, cv::Size(image_.cols / 2, image_.rows / 2), 0, 0, cv::INTER_AREA);
    }
    if (long_side > 2000) {
      const auto factor = static_cast<double>(2000.0F / static_cast<float>(long_side));
      cv::resize(image_, image_, cv::Size(), factor, factor, cv::INTER_AREA);
    }
  }

  std::unique_ptr<LibRaw> raw_;
  cv::Mat image_;
};

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_PLAIN_RAW_DECODE_H_
