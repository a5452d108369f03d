// Decoding a 24-megapixel RAW file, against LibRaw alone with the same settings.
#include <libraw/libraw.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <opencv2/imgproc.hpp>

#include "alternating.h"
#include "image/raw_decoder.h"
#include "support/raw_writer.h"
#include "support/test_images.h"

namespace lumvik::bench {
namespace {

constexpr int kColumns = 6000;
constexpr int kRows = 4000;

class TemporaryRawFile {
 public:
  TemporaryRawFile() : path_(std::filesystem::temp_directory_path() / "lumvik_bench_24mp.arw") {
    cv::Mat rgb;
    test::Photograph("cat.jpg", 600).convertTo(rgb, CV_16U);
    cv::cvtColor(rgb, rgb, cv::COLOR_RGBA2RGB);
    cv::resize(rgb, rgb, cv::Size(kColumns, kRows), 0, 0, cv::INTER_CUBIC);
    const std::vector<uint8_t> bytes = test::MakeRawFile(rgb);
    std::ofstream(path_, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  }
  ~TemporaryRawFile() { std::filesystem::remove(path_); }
  TemporaryRawFile(const TemporaryRawFile&) = delete;
  TemporaryRawFile& operator=(const TemporaryRawFile&) = delete;
  std::string Path() const { return path_.string(); }

 private:
  std::filesystem::path path_;
};

void DevelopWithLibRaw(const std::string& path, int half_size) {
  const auto raw = std::make_unique<LibRaw>();
  libraw_output_params_t& params = raw->imgdata.params;
  raw->open_file(path.c_str());
  params.half_size = half_size;
  params.use_camera_wb = 1;
  params.gamm[0] = 1 / 2.4;
  params.gamm[1] = 12.92;
  params.output_bps = 16;
  params.user_qual = 3;
  params.no_auto_bright = 1;
  raw->unpack();
  raw->dcraw_process();
  int code = 0;
  LibRaw::dcraw_clear_mem(raw->dcraw_make_mem_image(&code));
}

const bool kRegistered = [] {
  for (const int quality : {kRawFull, kRawHalf}) {
    RegisterComparison("decode_raw/quality" + std::to_string(quality), [quality] {
      const auto file = std::make_shared<TemporaryRawFile>();
      return Comparison{[=] {
                          DecodedImage decoded;
                          DecodeRaw(file->Path(), quality, decoded);
                        },
                        [=] { DevelopWithLibRaw(file->Path(), quality == kRawFull ? 0 : 1); },
                        int64_t{kColumns} * kRows, int64_t{kColumns} * kRows * 6};
    });
  }
  return true;
}();

}  // namespace
}  // namespace lumvik::bench
