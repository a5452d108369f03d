// Symmetric kernels, and weighted sums with them.
#ifndef LUMVIK_PIPELINE_SYMMETRIC_KERNEL_H_
#define LUMVIK_PIPELINE_SYMMETRIC_KERNEL_H_

#include <utility>
#include <vector>

#include "base/vectorized.h"

namespace lumvik {

// One half of a symmetric kernel: the weight of the center, then those of its neighbors outward.
using SymmetricKernel = std::vector<float>;

inline int Radius(const SymmetricKernel& kernel) {
  return static_cast<int>(kernel.size()) - 1;
}

// Weighted sums at `vectors` vectors of neighboring values from x on. `pair(k)` gives two addresses: those of
// the values k away from `center` on either side, in other rows or along the same one.
template <int lanes, int vectors, typename Pair>
void AddWeighted(const SymmetricKernel& kernel, const float* center, const Pair& pair, int x, float* sums) {
  Lanes<lanes> added[vectors];
  for (int v = 0; v < vectors; ++v) added[v] = LoadLanes<lanes>(center + x + v * lanes) * kernel[0];
  for (int k = 1; k <= Radius(kernel); ++k) {
    const auto [before, after] = pair(k);
    const float weight = kernel[static_cast<size_t>(k)];
    for (int v = 0; v < vectors; ++v) {
      const int at = x + v * lanes;
      added[v] += (LoadLanes<lanes>(before + at) + LoadLanes<lanes>(after + at)) * weight;
    }
  }
  for (int v = 0; v < vectors; ++v) StoreLanes(added[v], sums + x + v * lanes);
}

// The same for `columns` values. Call it within VectorizedByLanes.
template <int lanes, typename Pair>
void AddWeighted(const SymmetricKernel& kernel, const float* center, const Pair& pair, int columns,
                 float* sums) {
  int x = 0;
  for (; x + 2 * lanes <= columns; x += 2 * lanes) AddWeighted<lanes, 2>(kernel, center, pair, x, sums);
  for (; x + lanes <= columns; x += lanes) AddWeighted<lanes, 1>(kernel, center, pair, x, sums);
  for (; x < columns; ++x) {
    float sum = center[x] * kernel[0];
    for (int k = 1; k <= Radius(kernel); ++k) {
      const auto [before, after] = pair(k);
      sum += (before[x] + after[x]) * kernel[static_cast<size_t>(k)];
    }
    sums[x] = sum;
  }
}

// Rows that are summed vertically together: they do not fit L1, and a row that several kernels cover is
// loaded once for all of them.
inline constexpr int kRowsPerBlock = 8;

// Vertical sums at one vector of columns from x on, for each of the rows 0..kRowsPerBlock - 1. One step
// further out a row's neighbors are those of the next row, except for the outermost.
template <int lanes>
void AddWeightedDown(const SymmetricKernel& kernel, const float* const* rows, int x, float* const* sums) {
  Lanes<lanes> above[kRowsPerBlock];
  Lanes<lanes> below[kRowsPerBlock];
  Lanes<lanes> added[kRowsPerBlock];
  for (int n = 0; n < kRowsPerBlock; ++n) {
    above[n] = below[n] = LoadLanes<lanes>(rows[n] + x);
    added[n] = above[n] * kernel[0];
  }
  for (int k = 1; k <= Radius(kernel); ++k) {
    for (int n = kRowsPerBlock - 1; n > 0; --n) above[n] = above[n - 1];
    for (int n = 0; n < kRowsPerBlock - 1; ++n) below[n] = below[n + 1];
    above[0] = LoadLanes<lanes>(rows[-k] + x);
    below[kRowsPerBlock - 1] = LoadLanes<lanes>(rows[kRowsPerBlock - 1 + k] + x);
    const float weight = kernel[static_cast<size_t>(k)];
    for (int n = 0; n < kRowsPerBlock; ++n) added[n] += (above[n] + below[n]) * weight;
  }
  for (int n = 0; n < kRowsPerBlock; ++n) StoreLanes(added[n], sums[n] + x);
}

// The same for `columns` columns, with the bytes of AddWeighted. Call it within VectorizedByLanes.
template <int lanes>
void AddWeightedDown(const SymmetricKernel& kernel, const float* const* rows, float* const* sums,
                     int columns) {
  const int whole = columns / lanes * lanes;
  for (int x = 0; x < whole; x += lanes) AddWeightedDown<lanes>(kernel, rows, x, sums);
  for (int n = 0; n < kRowsPerBlock; ++n) {
    const auto pair = [=](int k) { return std::pair(rows[n - k] + whole, rows[n + k] + whole); };
    AddWeighted<lanes>(kernel, rows[n] + whole, pair, columns - whole, sums[n] + whole);
  }
}

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_SYMMETRIC_KERNEL_H_
