// The arithmetic of a RAW decode, row by row, compiled once for each instruction set.
//
// A row of the sensor is kept split into its even and its odd columns: all samples of such a half row have
// the same color, and every loop runs over neighbors in memory without branches. Half rows have
// kHalfRowMargin accessible values before the first and after the last one, of any content: what depends on
// them is never used.
#ifndef LUMVIK_IMAGE_RAW_KERNELS_ROW_KERNELS_H_
#define LUMVIK_IMAGE_RAW_KERNELS_ROW_KERNELS_H_

#include <cstddef>
#include <cstdint>

#include "image/raw/bayer_sensor.h"

namespace lumvik {

inline constexpr int kHalfRowMargin = 32;
inline constexpr int kRgbaChannels = 4;

// AHD's two candidates for a pixel: green interpolated along the row, or along the column.
enum Direction { kHorizontal, kVertical, kDirections };

template <typename T>
struct HalfRows {
  T* half[2];  // even columns, odd columns
};

// A row, its rows above and below, and which of its columns (0 even, 1 odd) hold red or blue.
struct MosaicNeighborhood {
  HalfRows<const uint16_t> rows[5];  // from two above to two below
  int colored;
};

struct GreenCandidates {
  uint16_t* direction[kDirections];  // at the columns that hold red or blue
};

struct RgbRow {
  HalfRows<uint16_t> color[3];
};

struct LabRow {
  HalfRows<int16_t> lightness;
  HalfRows<int16_t> a;
  HalfRows<int16_t> b;
};

// Of each pixel to the one on its left, or above.
struct DifferenceRow {
  HalfRows<uint16_t> lightness;
  HalfRows<uint32_t> chroma;  // squared distance
};

struct PixelDifferences {
  DifferenceRow to_left[kDirections];
  DifferenceRow to_above[kDirections];
  DifferenceRow below_to_here[kDirections];
};

struct HomogeneityRow {
  HalfRows<uint8_t> direction[kDirections];  // 0..4
};

// The taps of one pixel of a reduced row.
struct AreaTaps {
  int first;  // source column
  int count;
  const float* weights;
};

struct RowKernels {
  // The largest sample of the even and of the odd columns.
  void (*maximum)(const uint16_t* samples, int columns, uint16_t largest[2]);
  // Subtracts the black level, scales, and splits the row. `halves` is the length of a half row.
  void (*scale)(const uint16_t* samples, int columns, const BayerSite sites[2], HalfRows<uint16_t> row);
  void (*green)(const MosaicNeighborhood& mosaic, int halves, GreenCandidates green);
  // `green`: the candidates of one direction in the row above, this row and the row below; `row_color` is the
  // color that this row holds besides green.
  void (*red_and_blue)(const MosaicNeighborhood& mosaic, const uint16_t* const green[3], int halves,
                       SensorColor row_color, const RgbRow& rgb);
  void (*lab)(const RgbRow& rgb, int halves, const ColorMatrix& xyz_from_camera, const float* cube_root,
              const LabRow& lab);
  void (*differences)(const LabRow& here, const LabRow& above, int halves, const DifferenceRow& to_left,
                      const DifferenceRow& to_above);
  void (*homogeneity)(const PixelDifferences& differences, int halves, const HomogeneityRow& counts);
  // Takes each pixel from the direction that is more homogeneous around it, or the mean.
  void (*choose)(const HomogeneityRow rows[3], const RgbRow candidates[kDirections], int halves,
                 const RgbRow& rgb);
  // Two rows of the sensor become one of half the length; `even` and `odd` have rows' sites.
  void (*half_size)(const HalfRows<const uint16_t> rows[2], const BayerSite sites[2][2], int halves,
                    uint16_t* const rgb[3]);
  // Color matrix and tone table; `rgba` receives opaque pixels.
  void (*finish_split)(const RgbRow& rgb, int halves, const ColorMatrix& matrix, const uint32_t* tones,
                       uint16_t* rgba);
  void (*finish)(const uint16_t* const rgb[3], int columns, const ColorMatrix& matrix, const uint32_t* tones,
                 uint16_t* rgba);
  // Weighted sums of a row's pixels: four floats for each of `columns` reduced pixels.
  void (*reduce_row)(const uint16_t* rgba, const AreaTaps* taps, int columns, float* sums);
  void (*add_weighted)(const float* sums, float weight, int values, float* total);
  // Rounded to nearest, ties to even, with an opaque alpha.
  void (*round)(const float* total, int columns, uint16_t* rgba);
};

// For the best instruction set that is enabled.
const RowKernels& BestRowKernels();

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_RAW_KERNELS_ROW_KERNELS_H_
