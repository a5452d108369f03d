#include "image/raw_decoder.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <opencv2/core/utility.hpp>
#include <opencv2/imgproc.hpp>
#include <vector>

#include "base/fixed_text.h"
#include "image/base_curve.h"
#include "image/raw/area_reduction.h"
#include "image/raw/bayer_libraw.h"
#include "image/raw/own_thread.h"
#include "image/raw/tiled_developer.h"

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

// Why a photograph could not be developed; empty after success.
using Failure = std::string;

Failure FailureOf(const char* step, int code) {
  return code == LIBRAW_SUCCESS ? Failure()
                                : std::string("LibRaw ") + step + " failed: " + libraw_strerror(code);
}

Failure Unpack(BayerLibRaw& raw, const std::string& path, int quality) {
  if (Failure failure = FailureOf("open_file", raw.OpenFile(path)); !failure.empty()) return failure;
  SetProcessingParameters(raw.imgdata.params, quality);
  const libraw_image_sizes_t& sizes = raw.imgdata.sizes;
  const bool too_big = size_t{sizes.raw_width} * sizes.raw_height > kMaxPixels;
  return FailureOf("unpack", too_big ? LIBRAW_TOO_BIG : raw.UnpackSensor());
}

// The transfer curve of the processing parameters, which are always the same, followed by the base curve.
const uint32_t* Tones(BayerLibRaw& raw) {
  static const auto kTones = [&raw] {
    std::vector<uint32_t> tones(kCurveTableSize);
    const uint16_t* transfer = raw.TransferCurve();
    std::transform(transfer, transfer + kCurveTableSize, tones.begin(),
                   [](uint16_t sample) { return BaseCurveTable()[sample]; });
    return tones;
  }();
  return kTones.data();
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

// By which an image is reduced to working size.
float WorkingFactor(cv::Size image) {
  const int long_side = std::max(image.width, image.height);
  return std::min(static_cast<float>(kDecodedLongSide) / static_cast<float>(long_side), 1.0F);
}

// A quarter-size decode is halved and then scaled by the factor of its size before the halving: a large file
// ends up at about half the usual long side, as a quick proxy.
void ReduceToWorkingSize(cv::Mat& image, int quality) {
  const float factor = WorkingFactor(image.size());
  if (quality == kRawQuarter) {
    cv::resize(image, image, cv::Size(image.cols / 2, image.rows / 2), 0, 0, cv::INTER_AREA);
  }
  if (factor < 1) ShrinkImage(image, factor);
}

Failure DevelopInTiles(BayerLibRaw& raw, int quality, ImageBuffer& image) {
  if (Failure failure = FailureOf("dcraw_process", raw.ProcessWithoutPixels()); !failure.empty())
    return failure;
  if (!raw.HasSensor()) return FailureOf("dcraw_make_mem_image", LIBRAW_FILE_UNSUPPORTED);
  const BayerSensor sensor = raw.Sensor();
  TileSettings settings;
  settings.resolution = quality >= kRawHalf ? SensorResolution::kHalf : SensorResolution::kFull;
  settings.tones = Tones(raw);
  const cv::Size size = TurnedSize(sensor, settings.resolution);
  const double factor = WorkingFactor(size);
  const bool reduces_tiles = quality != kRawQuarter && AreaReduction::Supports(size, factor);
  if (reduces_tiles) settings.factor = factor;
  image = DevelopInTiles(sensor, settings);
  if (reduces_tiles || (quality != kRawQuarter && factor == 1)) return {};
  cv::Mat rgb = ToRgb16(image);
  ReduceToWorkingSize(rgb, quality);
  image = ToImageBuffer(rgb);
  return {};
}

Failure DevelopWithLibRaw(BayerLibRaw& raw, int quality, ImageBuffer& image) {
  int code = LIBRAW_SUCCESS;
  InOwnThread([&] { code = raw.dcraw_process(); });
  if (code != LIBRAW_SUCCESS) return FailureOf("dcraw_process", code);
  if (!HasThreeDeepColors(raw)) return FailureOf("dcraw_make_mem_image", LIBRAW_FILE_UNSUPPORTED);
  MemoryImage memory(raw.dcraw_make_mem_image(&code), &LibRaw::dcraw_clear_mem);
  if (!memory) return FailureOf("dcraw_make_mem_image", code);
  cv::Mat rgb = ThroughBaseCurve(*memory);
  memory.reset();
  raw.free_image();
  ReduceToWorkingSize(rgb, quality);
  image = ToImageBuffer(rgb);
  return {};
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
  const auto raw = std::make_unique<BayerLibRaw>();
  result.error = Unpack(*raw, path, quality);
  if (result.error.empty()) {
    const bool in_tiles = raw->IsOrdinaryBayer();
    result.developer = in_tiles ? RawDeveloper::kTiles : RawDeveloper::kLibRaw;
    result.error = in_tiles ? DevelopInTiles(*raw, quality, result.image)
                            : DevelopWithLibRaw(*raw, quality, result.image);
  }
  if (!result.error.empty()) {
    decoded.path = std::move(result.path);
    decoded.error = std::move(result.error);
    return false;
  }
  CopyMetadata(raw->imgdata, result);
  result.width = result.image.cols;
  result.height = result.image.rows;
  decoded = std::move(result);
  return true;
}

}  // namespace lumvik
