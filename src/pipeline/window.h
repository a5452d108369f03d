// Symmetric windows, and weighted sums with them.
#ifndef LUMVIK_PIPELINE_WINDOW_H_
#define LUMVIK_PIPELINE_WINDOW_H_

#include <opencv2/core.hpp>
#include <vector>

#include "image/vectorized.h"

namespace lumvik {

// One half of a symmetric window: the weight of the middle, then those of its neighbours outward.
using Window = std::vector<float>;

// So many rows a window reaches up and down.
inline int Reach(const Window& window) {
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

// The weighted sums of 16 `vectors` neighbouring values from x on, and of those at the same place in the rows
// (or from the same row, moved) that lie k away on either side, at the two addresses `pair(k)`.
template <int vectors, typename Pair>
void AddWeighted(const Window& window, const float* middle, const Pair& pair, int x, float* sums) {
  Lanes added[vectors];
  for (int v = 0; v < vectors; ++v) added[v] = LoadLanes(middle + x + v * kLanes) * window[0];
  for (int k = 1; k <= Reach(window); ++k) {
    const auto [before, after] = pair(k);
    const float weight = window[static_cast<size_t>(k)];
    for (int v = 0; v < vectors; ++v) {
      const int at = x + v * kLanes;
      added[v] += (LoadLanes(before + at) + LoadLanes(after + at)) * weight;
    }
  }
  for (int v = 0; v < vectors; ++v) StoreLanes(added[v], sums + x + v * kLanes);
}

// The same for so many columns. To be called within Vectorized.
template <typename Pair>
void AddWeighted(const Window& window, const float* middle, const Pair& pair, int columns, float* sums) {
  int x = 0;
  for (; x + 2 * kLanes <= columns; x += 2 * kLanes) AddWeighted<2>(window, middle, pair, x, sums);
  for (; x + kLanes <= columns; x += kLanes) AddWeighted<1>(window, middle, pair, x, sums);
  for (; x < columns; ++x) {
    float sum = middle[x] * window[0];
    for (int k = 1; k <= Reach(window); ++k) {
      const auto [before, after] = pair(k);
      sum += (before[x] + after[x]) * window[static_cast<size_t>(k)];
    }
    sums[x] = sum;
  }
}

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_WINDOW_H_
