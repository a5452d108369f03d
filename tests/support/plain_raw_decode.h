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
#include "image/guarded_libraw.h"

namespace lumvik::test {

class PlainDecode {
 public:
  PlainDecode(const std::string& path, int quality) : raw_(std::make_unique<LibRaw>()) {
    Run("open_file", raw_->open_file(path.c_str()));
    if (error_.empty()) Decode(quality, [this] { return raw_->unpack(); });
  }

  // For damaged files, of which LibRaw leaves part of its memory unset: what is missing is zero.
  static PlainDecode OfDamaged(const std::string& path, int quality) {
    auto guarded = std::make_unique<GuardedLibRaw>();
    GuardedLibRaw& raw = *guarded;
    PlainDecode plain(std::move(guarded));
    plain.Run("open_file", raw.OpenFile(path));
    if (plain.error_.empty()) plain.Decode(quality, [&raw] { return raw.UnpackSensor(); });
    return plain;
  }

  // The step that failed and LibRaw's text; empty after a success.
  const std::string& Error() const { return error_; }
  // 16-bit red, green, blue.
  const cv::Mat& Image() const {
    EXPECT_EQ(error_, "");
    return image_;
  }
  const libraw_data_t& Data() const { return raw_->imgdata; }

 private:
  explicit PlainDecode(std::unique_ptr<LibRaw> raw) : raw_(std::move(raw)) {}

  bool Run(const char* step, int code) {
    if (code != LIBRAW_SUCCESS) error_ = std::string("LibRaw ") + step + " failed: " + libraw_strerror(code);
    return code == LIBRAW_SUCCESS;
  }

  template <typename Unpack>
  void Decode(int quality, const Unpack& unpack) {
    raw_->set_dataerror_handler(nullptr, nullptr);  // the default one prints
    auto& params = raw_->imgdata.params;
    params.half_size = quality >= 2 ? 1 : 0;
    params.use_camera_wb = 1;
    params.output_color = 1;
    params.gamm[0] = 0.4166666666666667;
    params.gamm[1] = 12.92;
    params.output_bps = 16;
    params.user_qual = 3;
    params.no_auto_bright = 1;
    if (Run("unpack", unpack()) && Run("dcraw_process", raw_->dcraw_process())) Fetch(quality);
  }

  // An image of other than three colors counts as unsupported.
  void Fetch(int quality) {
    int code = LIBRAW_SUCCESS;
    libraw_processed_image_t* memory = raw_->dcraw_make_mem_image(&code);
    if (memory != nullptr && memory->colors != 3) code = LIBRAW_FILE_UNSUPPORTED;
    if (Run("dcraw_make_mem_image", code)) {
      image_ = cv::Mat(memory->height, memory->width, CV_16UC3, memory->data).clone();
      ApplyBaseCurve();
      Reduce(quality);
    }
    LibRaw::dcraw_clear_mem(memory);
  }

  void ApplyBaseCurve() {
    for (int y = 0; y < image_.rows; ++y) {
      for (int i = 0; i < image_.cols * 3; ++i) {
        auto& sample = image_.ptr<uint16_t>(y)[i];
        sample = BaseCurveTable()[sample];
      }
    }
  }

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
  std::string error_;
};

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_PLAIN_RAW_DECODE_H_
