#include "image/raw/bayer_libraw.h"

#include <algorithm>
#include <mutex>
#include <opencv2/core/utility.hpp>

#include "image/raw/kernels/row_kernels.h"
#include "image/raw/known_libraw.h"

namespace lumvik {
namespace {

constexpr int kRgb = 3;  // colors
constexpr int kSecondGreen = 3;
constexpr int kMaximumRowsPerTask = 64;

// On other processors LibRaw's compiler may fuse multiplications and additions, and numbers beyond the range
// of an int become others.
#if defined(__x86_64__)
constexpr bool kComputesLikeLibRaw = true;
#else
constexpr bool kComputesLikeLibRaw = false;
#endif

BayerLibRaw& Object(void* libraw) {
  return dynamic_cast<BayerLibRaw&>(*static_cast<LibRaw*>(libraw));
}

// LibRaw's code of a site's color: red, green, blue, green of the other rows.
SensorColor ColorOf(int code) {
  return code == kSecondGreen ? kGreen : static_cast<SensorColor>(code);
}

}  // namespace

int BayerLibRaw::ColorAt(int row, int column) const {
  return static_cast<int>(filters_ >> (((row << 1 & 14) | (column & 1)) << 1) & 3);
}

// Two rows of two columns, repeated, with green on a diagonal. LibRaw looks for the second green, and makes
// it a first one, where the pattern's lower left corner sends it: elsewhere it would go on with zeros.
bool BayerLibRaw::HasBayerPattern() const {
  constexpr unsigned kRepeated = 0x01010101;
  if (filters_ != (filters_ & 0xFF) * kRepeated) return false;
  const bool is_upper_green = ColorAt(0, 0) % 2 != 0;
  for (int row = 0; row < 2; ++row) {
    for (int column = 0; column < 2; ++column) {
      if ((ColorAt(row, column) % 2 != 0) != (is_upper_green == (row == column))) return false;
    }
  }
  const int colors = 1 << ColorAt(0, 0) | 1 << ColorAt(0, 1) | 1 << ColorAt(1, 0) | 1 << ColorAt(1, 1);
  const int second_row = ColorAt(1, 0) >> 1;
  return colors == 0xF && ColorAt(second_row, ColorAt(second_row, 1) & 1) == kSecondGreen;
}

// LibRaw folds a pattern of at most 2 x 2 black levels into those of the four colors.
bool BayerLibRaw::LeavesBlackPattern() const {
  const unsigned rows = imgdata.color.cblack[4];
  const unsigned columns = imgdata.color.cblack[5];
  const bool folds = (rows + 1) / 2 == 1 && (columns + 1) / 2 == 1;
  return rows != 0 && columns != 0 && !folds;
}

bool BayerLibRaw::IsOrdinaryBayer() {
  constexpr unsigned kLastSpecialPattern = 1000;
  constexpr int kMinSide = 16;  // more than the frames that LibRaw does not demosaic
  constexpr float kNoCameraBalance = 1e-5F;
  constexpr double kMinSquareAspect = 0.995;
  constexpr double kMaxSquareAspect = 1.005;
  const libraw_image_sizes_t& sizes = imgdata.sizes;
  const auto& internal = libraw_internal_data.internal_output_params;
  filters_ = imgdata.idata.filters;
  if (!kComputesLikeLibRaw || !IsKnownLibRaw()) return false;
  // One sample per pixel, in a pattern of red, green and blue.
  if (imgdata.rawdata.raw_image == nullptr) return false;
  if (filters_ <= kLastSpecialPattern || !HasBayerPattern()) return false;
  if (imgdata.idata.colors != kRgb || imgdata.idata.is_foveon != 0) return false;
  // Rows that are the image's rows, within what was unpacked, and pixels that are square.
  if (internal.fuji_width != 0) return false;
  if (sizes.width < kMinSide || sizes.height < kMinSide) return false;
  if (sizes.left_margin + sizes.width > sizes.raw_width) return false;
  if (sizes.top_margin + sizes.height > sizes.raw_height) return false;
  if (sizes.raw_pitch < sizes.raw_width * sizeof(uint16_t)) return false;
  if (!(sizes.pixel_aspect >= kMinSquareAspect && sizes.pixel_aspect <= kMaxSquareAspect)) return false;
  // No correction of the samples before the usual steps.
  if (internal.zero_is_bad != 0) return false;
  if (is_phaseone_compressed() != 0 || is_canon_600() != 0) return false;
  if (LeavesBlackPattern()) return false;
  // Otherwise LibRaw balances the colors by the image itself.
  return imgdata.color.cam_mul[0] > kNoCameraBalance;
}

int BayerLibRaw::ProcessWithoutPixels() {
  records_ = true;
  visible_width_ = imgdata.sizes.width;
  visible_height_ = imgdata.sizes.height;
  callbacks.pre_preinterpolate_cb = HideRows;
  callbacks.pre_interpolate_cb = ShowRows;
  callbacks.interpolate_bayer_cb = DoNothing;
  const int status = dcraw_process();
  callbacks.pre_preinterpolate_cb = nullptr;
  callbacks.pre_interpolate_cb = nullptr;
  callbacks.interpolate_bayer_cb = nullptr;
  records_ = false;
  return status;
}

// At full size LibRaw moves the second green of all rows into the first one's channel; ours are one from the
// start.
void BayerLibRaw::HideRows(void* libraw) {
  BayerLibRaw& raw = Object(libraw);
  if (raw.imgdata.params.half_size == 0) raw.imgdata.sizes.height = 0;
}

// At half size LibRaw would now average the two greens and go on with three colors.
void BayerLibRaw::ShowRows(void* libraw) {
  BayerLibRaw& raw = Object(libraw);
  if (raw.imgdata.params.half_size == 0) {
    raw.imgdata.sizes.height = static_cast<ushort>(raw.visible_height_);
  } else {
    raw.libraw_internal_data.internal_output_params.mix_green = 0;
    raw.imgdata.idata.colors = kRgb;
  }
}

const uint16_t* BayerLibRaw::Samples() const {
  const libraw_image_sizes_t& sizes = imgdata.rawdata.sizes;
  return imgdata.rawdata.raw_image + static_cast<ptrdiff_t>(sizes.top_margin) * (sizes.raw_pitch / 2) +
         sizes.left_margin;
}

// LibRaw needs the largest sample above black: it may lower the white level.
void BayerLibRaw::copy_bayer(unsigned short black[4], unsigned short* data_maximum) {
  if (!records_) return GuardedLibRaw::copy_bayer(black, data_maximum);
  std::copy_n(black, black_.size(), black_.begin());
  const ptrdiff_t stride = imgdata.rawdata.sizes.raw_pitch / 2;
  const RowKernels& kernels = BestRowKernels();
  std::mutex mutex;
  int largest = 0;
  const int tasks = (visible_height_ + kMaximumRowsPerTask - 1) / kMaximumRowsPerTask;
  cv::parallel_for_(cv::Range(0, tasks), [&](const cv::Range& range) {
    uint16_t samples[2][2] = {};
    const int end = std::min(range.end * kMaximumRowsPerTask, visible_height_);
    for (int y = range.start * kMaximumRowsPerTask; y < end; ++y) {
      kernels.maximum(Samples() + y * stride, visible_width_, samples[y % 2]);
    }
    const std::lock_guard lock(mutex);
    for (int site = 0; site < 4; ++site) {
      const int level = black_[static_cast<size_t>(ColorAt(site / 2, site % 2))];
      largest = std::max(largest, samples[site / 2][site % 2] - level);
    }
  });
  *data_maximum = static_cast<unsigned short>(largest);
}

void BayerLibRaw::scale_colors_loop(float multipliers[4]) {
  if (!records_) return GuardedLibRaw::scale_colors_loop(multipliers);
  std::copy_n(multipliers, multipliers_.size(), multipliers_.begin());
}

// Without a color matrix LibRaw delivers the camera's colors.
void BayerLibRaw::convert_to_rgb_loop(float matrix[3][4]) {
  if (!records_) return GuardedLibRaw::convert_to_rgb_loop(matrix);
  const bool keeps_colors = libraw_internal_data.internal_output_params.raw_color != 0;
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) {
      const float identity = row == column ? 1.0F : 0.0F;
      srgb_from_camera_[row][column] = keeps_colors ? identity : matrix[row][column];
    }
  }
}

BayerSensor BayerLibRaw::Sensor() {
  BayerSensor sensor;
  sensor.samples = Samples();
  sensor.stride = imgdata.rawdata.sizes.raw_pitch / 2;
  sensor.width = visible_width_;
  sensor.height = visible_height_;
  sensor.flip = imgdata.sizes.flip;
  for (int row = 0; row < 2; ++row) {
    for (int column = 0; column < 2; ++column) {
      const int code = ColorAt(row, column);
      const auto index = static_cast<size_t>(code);
      sensor.sites[row][column] = {ColorOf(code), black_[index], multipliers_[index]};
    }
  }
  std::copy_n(&srgb_from_camera_[0][0], 9, &sensor.srgb_from_camera[0][0]);
  // LibRaw's initializing call: the table depends on the C library's power function.
  cielab(nullptr, nullptr);
  for (int row = 0; row < 3; ++row) std::copy_n(tls->ahd_data.xyz_cam[row], 3, sensor.xyz_from_camera[row]);
  sensor.cube_root = tls->ahd_data.cbrt;
  return sensor;
}

const uint16_t* BayerLibRaw::TransferCurve() {
  constexpr int kForward = 2;
  constexpr int kWhite = 0x10000;
  gamma_curve(imgdata.params.gamm[0], imgdata.params.gamm[1], kForward, kWhite);
  return imgdata.color.curve;
}

}  // namespace lumvik
