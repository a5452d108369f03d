// Symmetric windows, and weighted sums with them.
#ifndef LUMVIK_PIPELINE_SYMMETRIC_KERNEL_H_
#define LUMVIK_PIPELINE_SYMMETRIC_KERNEL_H_

#include <opencv2/core.hpp>
#include <utility>
#include <vector>

#include "base/vectorized.h"

namespace lumvik {

// One half of a symmetric window: the weight of the middle, then those of its neighbors outward.
using SymmetricKernel = std::vector<float>;

// So many rows a window reaches up and down.
inline int Radius(const SymmetricKernel& window) {
  return static_cast<int>(window.size()) - 1;
}

// The position within 0..count - 1 that stands at `at`, also before and behind them: mirrored without the one
// at the end, as cv::borderInterpolate does it, which takes longer.
inline int Mirrored(int at, int count) {
  const int behind = at < count ? at : 2 * (count - 1) - at;
  const int inside = at < 0 ? -at : behind;
  const bool once = inside >= 0 && inside < count;
  return once ? inside : cv::borderInterpolate(at, count, cv::BORDER_REFLECT_101);
}

// The weighted sums of `vectors` times so many `lanes` of neighboring values from x on, and of those at the
// same place in the rows (or from the same row, moved) that lie k away on either side, at the two addresses
// `pair(k)`.
template <int lanes, int vectors, typename Pair>
void AddWeighted(const SymmetricKernel& window, const float* middle, const Pair& pair, int x, float* sums) {
  Lanes<lanes> added[vectors];
  for (int v = 0; v < vectors; ++v) added[v] = LoadLanes<lanes>(middle + x + v * lanes) * window[0];
  for (int k = 1; k <= Radius(window); ++k) {
    const auto [before, after] = pair(k);
    const float weight = window[static_cast<size_t>(k)];
    for (int v = 0; v < vectors; ++v) {
      const int at = x + v * lanes;
      added[v] += (LoadLanes<lanes>(before + at) + LoadLanes<lanes>(after + at)) * weight;
    }
  }
  for (int v = 0; v < vectors; ++v) StoreLanes(added[v], sums + x + v * lanes);
}

// The same for so many columns. To be called within VectorizedByLanes.
template <int lanes, typename Pair>
void AddWeighted(const SymmetricKernel& window, const float* middle, const Pair& pair, int columns,
                 float* sums) {
  int x = 0;
  for (; x + 2 * lanes <= columns; x += 2 * lanes) AddWeighted<lanes, 2>(window, middle, pair, x, sums);
  for (; x + lanes <= columns; x += lanes) AddWeighted<lanes, 1>(window, middle, pair, x, sums);
  for (; x < columns; ++x) {
    float sum = middle[x] * window[0];
    for (int k = 1; k <= Radius(window); ++k) {
      const auto [before, after] = pair(k);
      sum += (before[x] + after[x]) * window[static_cast<size_t>(k)];
    }
    sums[x] = sum;
  }
}

// So many rows are summed down at a time: a row that several windows reach is loaded once for all of them, as
// the rows do not fit the first cache.
inline constexpr int kRowsAtOnce = 8;

// The weighted sums of so many neighboring values from x on in each of the rows 0..kRowsAtOnce - 1 and those
// above and below it. One step farther out each row's neighbors are those of the next row, but for the
// outermost.
template <int lanes>
void AddWeightedDown(const SymmetricKernel& window, const float* const* rows, int x, float* const* sums) {
  Lanes<lanes> above[kRowsAtOnce];
  Lanes<lanes> below[kRowsAtOnce];
  Lanes<lanes> added[kRowsAtOnce];
  for (int n = 0; n < kRowsAtOnce; ++n) {
    above[n] = below[n] = LoadLanes<lanes>(rows[n] + x);
    added[n] = above[n] * window[0];
  }
  for (int k = 1; k <= Radius(window); ++k) {
    for (int n = kRowsAtOnce - 1; n > 0; --n) above[n] = above[n - 1];
    for (int n = 0; n < kRowsAtOnce - 1; ++n) below[n] = below[n + 1];
    above[0] = LoadLanes<lanes>(rows[-k] + x);
    below[kRowsAtOnce - 1] = LoadLanes<lanes>(rows[kRowsAtOnce - 1 + k] + x);
    const float weight = window[static_cast<size_t>(k)];
    for (int n = 0; n < kRowsAtOnce; ++n) added[n] += (above[n] + below[n]) * weight;
  }
  for (int n = 0; n < kRowsAtOnce; ++n) StoreLanes(added[n], sums[n] + x);
}

// The same for so many columns, with AddWeighted's bytes. To be called within VectorizedByLanes.
template <int lanes>
void AddWeightedDown(const SymmetricKernel& window, const float* const* rows, float* const* sums,
                     int columns) {
  const int whole = columns / lanes * lanes;
  for (int x = 0; x < whole; x += lanes) AddWeightedDown<lanes>(window, rows, x, sums);
  for (int n = 0; n < kRowsAtOnce; ++n) {
    const auto pair = [=](int k) { return std::pair(rows[n - k] + whole, rows[n + k] + whole); };
    AddWeighted<lanes>(window, rows[n] + whole, pair, columns - whole, sums[n] + whole);
  }
}

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_SYMMETRIC_KERNEL_H_
