#include "image/raw_decoder.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <opencv2/core/utility.hpp>
#include <opencv2/imgproc.hpp>

#include "base/fixed_text.h"
#include "image/base_curve.h"
#include "image/guarded_libraw.h"

namespace lumvik {
namespace {

constexpr int kDecodedLongSide = 2000;
constexpr int kRgbColors = 3;
constexpr int kBitsPerSample = 16;
// More than any camera has. LibRaw's own sizes overflow at 715 million.
constexpr size_t kMaxPixels = size_t{1} << 29;

using MemoryImage = std::unique_ptr<libraw_processed_image_t, decltype(&LibRaw::dcraw_clear_mem)>;

void SetProcessingParameters(libraw_output_params_t& params, int quality) {
  constexpr int kSrgb = 1;
  constexpr int kAhd = 3;
  params.half_size = quality >= kRawHalf ? 1 : 0;
  params.use_camera_wb = 1;
  params.output_color = kSrgb;
  params.gamm[0] = 1.0 / 2.4;
  params.gamm[1] = 12.92;
  params.output_bps = kBitsPerSample;
  params.user_qual = kAhd;
  params.no_auto_bright = 1;
}

std::string Failure(const char* step, int code) {
  return std::string("LibRaw ") + step + " failed: " + libraw_strerror(code);
}

// Checks what LibRaw is about to deliver. A monochrome sensor has one color, which must not be read as three,
// and a file's pixel aspect can stretch its image beyond all bounds.
bool HasThreeDeepColors(const LibRaw& raw) {
  int width = 0;
  int height = 0;
  int colors = 0;
  int bits = 0;
  raw.get_mem_image_format(&width, &height, &colors, &bits);
  return colors == kRgbColors && bits == kBitsPerSample &&
         static_cast<size_t>(width) * static_cast<size_t>(height) <= kMaxPixels;
}

// Runs LibRaw up to the finished image in memory. Null, with `error` set, when a step fails.
MemoryImage Develop(GuardedLibRaw& raw, const std::string& path, int quality, std::string& error) {
  MemoryImage image(nullptr, &LibRaw::dcraw_clear_mem);
  const auto failed = [&error](const char* step, int code) {
    if (code != LIBRAW_SUCCESS) error = Failure(step, code);
    return code != LIBRAW_SUCCESS;
  };
  if (failed("open_file", raw.OpenFile(path))) return image;
  SetProcessingParameters(raw.imgdata.params, quality);
  const libraw_image_sizes_t& sizes = raw.imgdata.sizes;
  const bool too_big = size_t{sizes.raw_width} * sizes.raw_height > kMaxPixels;
  if (failed("unpack", too_big ? LIBRAW_TOO_BIG : raw.UnpackSensor())) return image;
  if (failed("dcraw_process", raw.dcraw_process())) return image;
  int code = HasThreeDeepColors(raw) ? LIBRAW_SUCCESS : LIBRAW_FILE_UNSUPPORTED;
  if (code == LIBRAW_SUCCESS) image.reset(raw.dcraw_make_mem_image(&code));
  if (!image) error = Failure("dcraw_make_mem_image", code);
  return image;
}

cv::Mat ThroughBaseCurve(const libraw_processed_image_t& image) {
  const auto& table = BaseCurveTable();
  const size_t row_samples = size_t{image.width} * kRgbColors;
  const auto* samples = reinterpret_cast<const uint16_t*>(image.data);
  cv::Mat curved(image.height, image.width, CV_16UC3);
  cv::parallel_for_(cv::Range(0, image.height), [&](const cv::Range& rows) {
    for (int y = rows.start; y < rows.end; ++y) {
      const uint16_t* from = samples + static_cast<size_t>(y) * row_samples;
      std::transform(from, from + row_samples, curved.ptr<uint16_t>(y),
                     [&table](uint16_t sample) { return table[sample]; });
    }
  });
  return curved;
}

// A quarter-size decode is halved and then scaled by the factor of its size before the halving: a large file
// ends up at about half the usual long side, as a quick proxy.
void ReduceToWorkingSize(cv::Mat& image, int quality) {
  const int long_side = std::max(image.cols, image.rows);
  if (quality == kRawQuarter) {
    cv::resize(image, image, cv::Size(image.cols / 2, image.rows / 2), 0, 0, cv::INTER_AREA);
  }
  if (long_side > kDecodedLongSide) {
    ShrinkImage(image, static_cast<float>(kDecodedLongSide) / static_cast<float>(long_side));
  }
}

void CopyMetadata(const libraw_data_t& data, DecodedImage& decoded) {
  decoded.iso_speed = data.other.iso_speed;
  decoded.shutter = data.other.shutter;
  decoded.aperture = data.other.aperture;
  decoded.focal_len = data.other.focal_len;
  CopyText(decoded.make, data.idata.make);
  CopyText(decoded.model, data.idata.model);
  std::copy(std::begin(data.color.cam_mul), std::end(data.color.cam_mul), decoded.cam_mul.begin());
  decoded.orientation = data.sizes.flip;
  for (size_t row = 0; row < decoded.rgb_cam.size(); ++row) {
    std::copy(std::begin(data.color.rgb_cam[row]), std::end(data.color.rgb_cam[row]),
              decoded.rgb_cam[row].begin());
  }
}

}  // namespace

bool DecodeRaw(const std::string& path, int quality, DecodedImage& decoded) {
  DecodedImage result;
  result.path = path;
  const auto raw = std::make_unique<GuardedLibRaw>();
  MemoryImage memory = Develop(*raw, path, quality, result.error);
  if (!memory) {
    decoded.path = std::move(result.path);
    decoded.error = std::move(result.error);
    return false;
  }
  CopyMetadata(raw->imgdata, result);
  cv::Mat image = ThroughBaseCurve(*memory);
  memory.reset();
  raw->recycle();
  ReduceToWorkingSize(image, quality);
  result.image = ToImageBuffer(image);
  result.width = result.image.cols;
  result.height = result.image.rows;
  decoded = std::move(result);
  return true;
}

}  // namespace lumvik
