// Decoding a 24-megapixel RAW file, against LibRaw's own calls followed by the base curve and the reduction.
#include <libraw/libraw.h>

#include <algorithm>
#include <memory>
#include <opencv2/core/utility.hpp>
#include <opencv2/imgproc.hpp>

#include "alternating.h"
#include "image/base_curve.h"
#include "image/raw_decoder.h"
#include "instruction_set.h"
#include "large_raw.h"
#include "support/file_bytes.h"
#include "support/temp_dir.h"

namespace lumvik::bench {
namespace {

constexpr int kDecodedLongSide = 2000;

struct LargeRawFile {
  LargeRawFile() { test::WriteBytes(path, LargeRaw()); }

  const test::TempDir folder;
  const std::string path = folder.File("24mp.arw");
};

void SetParameters(libraw_output_params_t& params, int quality) {
  params.half_size = quality == kRawFull ? 0 : 1;
  params.use_camera_wb = 1;
  params.gamm[0] = 1 / 2.4;
  params.gamm[1] = 12.92;
  params.output_bps = 16;
  params.user_qual = 3;
  params.no_auto_bright = 1;
}

// On all threads.
cv::Mat Curved(const libraw_processed_image_t& memory) {
  const auto& table = BaseCurveTable();
  const auto samples = static_cast<size_t>(memory.width) * memory.colors;
  const auto* from = reinterpret_cast<const uint16_t*>(memory.data);
  cv::Mat curved(memory.height, memory.width, CV_16UC3);
  cv::parallel_for_(cv::Range(0, curved.rows), [&](const cv::Range& rows) {
    for (int y = rows.start; y < rows.end; ++y) {
      const uint16_t* row = from + static_cast<size_t>(y) * samples;
      std::transform(row, row + samples, curved.ptr<uint16_t>(y),
                     [&table](uint16_t sample) { return table[sample]; });
    }
  });
  return curved;
}

void Reduce(cv::Mat& image, int quality) {
  const int long_side = std::max(image.cols, image.rows);
  if (quality == kRawQuarter) {
    cv::resize(image, image, cv::Size(image.cols / 2, image.rows / 2), 0, 0, cv::INTER_AREA);
  }
  if (long_side > kDecodedLongSide) {
    ShrinkImage(image, static_cast<float>(kDecodedLongSide) / static_cast<float>(long_side));
  }
}

void DecodeWithLibRaw(const std::string& path, int quality) {
  auto raw = std::make_unique<LibRaw>();
  raw->open_file(path.c_str());
  SetParameters(raw->imgdata.params, quality);
  raw->unpack();
  raw->dcraw_process();
  int code = 0;
  libraw_processed_image_t* memory = raw->dcraw_make_mem_image(&code);
  cv::Mat image = Curved(*memory);
  LibRaw::dcraw_clear_mem(memory);
  raw.reset();
  Reduce(image, quality);
  benchmark::DoNotOptimize(ToImageBuffer(image));
}

Comparison Decode(int quality) {
  const auto file = std::make_shared<LargeRawFile>();
  constexpr int64_t kPixels = int64_t{kRawColumns} * kRawRows;
  return {[=] {
            DecodedImage decoded;
            DecodeRaw(file->path, quality, decoded);
          },
          [=] { DecodeWithLibRaw(file->path, quality); }, kPixels, kPixels * 6};
}

const bool kRegistered = [] {
  for (const int quality : {kRawFull, kRawHalf, kRawQuarter}) {
    const std::string name = "decode_raw/quality" + std::to_string(quality);
    RegisterComparison(name, [quality] { return Decode(quality); });
    for (const NarrowerSet& narrower : kNarrowerSets) {
      RegisterComparison(name + "/" + narrower.name,
                         [=] { return WithInstructionSet(narrower.set, Decode(quality)); });
    }
  }
  return true;
}();

}  // namespace
}  // namespace lumvik::bench
