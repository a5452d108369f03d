// From a Bayer sensor's samples to the image in memory, tile by tile, on all threads.
#ifndef LUMVIK_IMAGE_RAW_TILED_DEVELOPER_H_
#define LUMVIK_IMAGE_RAW_TILED_DEVELOPER_H_

#include <cstdint>
#include <opencv2/core.hpp>

#include "image/raw/bayer_sensor.h"

namespace lumvik {

enum class SensorResolution {
  kFull,  // demosaiced
  kHalf,  // 2 x 2 samples to a pixel
};

struct TileSettings {
  SensorResolution resolution = SensorResolution::kFull;
  // Of the result relative to the turned image; 1 keeps the size, and AreaReduction::Supports() any other.
  double factor = 1;
  const uint32_t* tones = nullptr;  // 65536 values: the transfer curve and what follows it
};

// The size of the turned image, before any reduction.
cv::Size TurnedSize(const BayerSensor& sensor, SensorResolution resolution);

// CV_16UC4, opaque.
cv::Mat DevelopInTiles(const BayerSensor& sensor, const TileSettings& settings);

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_RAW_TILED_DEVELOPER_H_
