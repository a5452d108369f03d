#include "image/raw/tiled_developer.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <opencv2/core/utility.hpp>
#include <optional>

#include "base/large_image.h"
#include "image/raw/ahd_rows.h"
#include "image/raw/area_reduction.h"
#include "image/raw/half_size_rows.h"
#include "image/raw/kernels/row_kernels.h"
#include "image/raw/orientation.h"

namespace lumvik {
namespace {

// Of a tile, in pixels of the sensor's image: its rows of all steps and its pixels fit into a second-level
// cache, and what neighboring tiles compute twice is small beside it.
constexpr int kTileColumns = 640;
constexpr int kTileRows = 128;

cv::Size UprightSize(const BayerSensor& sensor, SensorResolution resolution) {
  if (resolution == SensorResolution::kFull) return {sensor.width, sensor.height};
  return {(sensor.width + 1) / 2, (sensor.height + 1) / 2};
}

// What a thread keeps from tile to tile.
struct Workspace {
  RowArena arena;
  std::vector<uint16_t> row;
  cv::Mat tile;
};

class Developer {
 public:
  Developer(const BayerSensor& sensor, const TileSettings& settings)
      : sensor_(sensor),
        settings_(settings),
        kernels_(BestRowKernels()),
        orientation_(sensor.flip, UprightSize(sensor, settings.resolution)) {
    if (settings.factor != 1) reduction_.emplace(orientation_.TurnedSize(), settings.factor);
    image_ = LargeImage(reduction_ ? reduction_->Reduced() : orientation_.TurnedSize(), CV_16UC4);
    const cv::Size tile = orientation_.Swapped({kTileColumns, kTileRows});
    tile_ = {std::max(static_cast<int>(tile.width * settings.factor), 1),
             std::max(static_cast<int>(tile.height * settings.factor), 1)};
  }

  cv::Mat Run() {
    const int across = (image_.cols + tile_.width - 1) / tile_.width;
    const int down = (image_.rows + tile_.height - 1) / tile_.height;
    cv::parallel_for_(cv::Range(0, across * down), [&](const cv::Range& range) {
      Workspace workspace;
      for (int i = range.start; i < range.end; ++i) {
        const cv::Point corner(i % across * tile_.width, i / across * tile_.height);
        DevelopTile(cv::Rect(corner, tile_) & cv::Rect({0, 0}, image_.size()), workspace);
      }
    });
    return image_;
  }

 private:
  // `area` of the image: from the sensor's samples to pixels in the turned image's orientation, and to
  // reduced ones.
  void DevelopTile(const cv::Rect& area, Workspace& workspace) {
    if (!reduction_) return DevelopPixels(area, workspace, image_(area));
    const cv::Rect source = reduction_->Source(area);
    workspace.tile.create(source.size(), CV_16UC4);
    DevelopPixels(source, workspace, workspace.tile);
    reduction_->Reduce(workspace.tile, area, kernels_, image_);
  }

  // `area` of the turned image, before any reduction.
  void DevelopPixels(const cv::Rect& area, Workspace& workspace, const cv::Mat& pixels) {
    const cv::Rect upright = orientation_.OnSensor(area);
    const Span rows = {upright.y, upright.y + upright.height};
    const Span columns = {upright.x, upright.x + upright.width};
    workspace.row.resize((static_cast<size_t>(upright.width) + 2 * kHalfRowMargin) * kRgbaChannels);
    uint16_t* const row = workspace.row.data();
    if (settings_.resolution == SensorResolution::kFull) {
      DemosaicAhd(sensor_, rows, columns, kernels_, workspace.arena,
                  [&](int y, int first_column, const RgbRow& rgb) {
                    const int halves = (columns.end - first_column + 1) / 2;
                    kernels_.finish_split(rgb, halves, sensor_.srgb_from_camera, settings_.tones, row);
                    StoreRow(row + (columns.begin - first_column) * kRgbaChannels, {columns.begin, y},
                             upright.width, area, pixels);
                  });
    } else {
      HalveSensor(sensor_, rows, columns, kernels_, workspace.arena,
                  [&](int y, const uint16_t* const rgb[3]) {
                    kernels_.finish(rgb, upright.width, sensor_.srgb_from_camera, settings_.tones, row);
                    StoreRow(row, {columns.begin, y}, upright.width, area, pixels);
                  });
    }
  }

  // Puts the pixels of a row of the sensor, from `first` on, where they belong in the turned image.
  void StoreRow(const uint16_t* rgba, cv::Point first, int columns, const cv::Rect& area,
                const cv::Mat& pixels) const {
    constexpr size_t kPixelBytes = kRgbaChannels * sizeof(uint16_t);
    const cv::Point to = orientation_.Turned(first) - area.tl();
    const cv::Point step = orientation_.TurnedStep();
    uint8_t* target =
        pixels.data + to.y * static_cast<ptrdiff_t>(pixels.step) + to.x * static_cast<ptrdiff_t>(kPixelBytes);
    const ptrdiff_t stride =
        step.y * static_cast<ptrdiff_t>(pixels.step) + step.x * static_cast<ptrdiff_t>(kPixelBytes);
    if (stride == kPixelBytes) {
      std::memcpy(target, rgba, static_cast<size_t>(columns) * kPixelBytes);
      return;
    }
    for (int x = 0; x < columns; ++x, target += stride, rgba += kRgbaChannels)
      std::memcpy(target, rgba, kPixelBytes);
  }

  const BayerSensor& sensor_;
  const TileSettings& settings_;
  const RowKernels& kernels_;
  Orientation orientation_;
  std::optional<AreaReduction> reduction_;
  cv::Mat image_;
  cv::Size tile_;  // of the image
};

}  // namespace

cv::Size TurnedSize(const BayerSensor& sensor, SensorResolution resolution) {
  return Orientation(sensor.flip, UprightSize(sensor, resolution)).TurnedSize();
}

cv::Mat DevelopInTiles(const BayerSensor& sensor, const TileSettings& settings) {
  return Developer(sensor, settings).Run();
}

}  // namespace lumvik
