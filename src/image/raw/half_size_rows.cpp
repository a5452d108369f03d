#include "image/raw/half_size_rows.h"

#include <algorithm>

namespace lumvik {

void HalveSensor(const BayerSensor& sensor, Span rows, Span columns, const RowKernels& kernels,
                 RowArena& arena, const TakeHalfSizeRow& take) {
  const int halves = columns.end - columns.begin;
  const int first_column = 2 * columns.begin;
  const int last_column = std::min(2 * columns.end, sensor.width);
  arena.Restart();
  uint16_t* samples[2][2];
  for (auto& row : samples) {
    for (uint16_t*& half : row) half = arena.HalfRow<uint16_t>(halves);
  }
  uint16_t* const rgb[3] = {arena.HalfRow<uint16_t>(halves), arena.HalfRow<uint16_t>(halves),
                            arena.HalfRow<uint16_t>(halves)};
  for (int row = rows.begin; row < rows.end; ++row) {
    for (int i = 0; i < 2; ++i) {
      const int y = 2 * row + i;
      // Present or not, by column: an odd last column lacks its right neighbor.
      for (uint16_t* half : samples[i]) {
        if (y >= sensor.height) std::fill_n(half, halves, uint16_t{0});
        half[halves - 1] = 0;
      }
      if (y < sensor.height) {
        kernels.scale(sensor.samples + y * sensor.stride + first_column, last_column - first_column,
                      sensor.sites[i], {{samples[i][0], samples[i][1]}});
      }
    }
    const HalfRows<const uint16_t> pair[2] = {{{samples[0][0], samples[0][1]}},
                                              {{samples[1][0], samples[1][1]}}};
    kernels.half_size(pair, sensor.sites, halves, rgb);
    take(row, rgb);
  }
}

}  // namespace lumvik
