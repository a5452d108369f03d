// Adaptive homogeneity-directed demosaicing (Hirakawa and Parks, "Adaptive homogeneity-directed demosaicing
// algorithm", 2005), row by row, with LibRaw's bytes.
#ifndef LUMVIK_IMAGE_RAW_AHD_ROWS_H_
#define LUMVIK_IMAGE_RAW_AHD_ROWS_H_

#include <cstdint>
#include <functional>
#include <vector>

#include "image/raw/bayer_sensor.h"
#include "image/raw/kernels/row_kernels.h"

namespace lumvik {

// A half-open range of rows or columns.
struct Span {
  int begin = 0;
  int end = 0;
};

// The memory of a strip's rows; reused from strip to strip.
class RowArena {
 public:
  // Forgets what was handed out.
  void Restart() { used_ = 0; }

  // The first of `count` values, with kHalfRowMargin accessible ones on both sides.
  template <typename T>
  T* HalfRow(int count) {
    const size_t bytes = (static_cast<size_t>(count) + 2 * kHalfRowMargin) * sizeof(T);
    return reinterpret_cast<T*>(Take(bytes)) + kHalfRowMargin;
  }

 private:
  uint8_t* Take(size_t bytes);

  std::vector<std::vector<uint8_t>> blocks_;
  size_t used_ = 0;
};

// Receives a row's pixels, split into even and odd columns. The first one belongs to `first_column` of the
// sensor, an even number.
using TakeRgbRow = std::function<void(int row, int first_column, const RgbRow& rgb)>;

// Demosaics the given rows and columns of the visible area, in ascending order of rows.
void DemosaicAhd(const BayerSensor& sensor, Span rows, Span columns, const RowKernels& kernels,
                 RowArena& arena, const TakeRgbRow& take);

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_RAW_AHD_ROWS_H_
