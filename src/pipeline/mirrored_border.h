// Positions beyond the border of an image, mirrored into it. Unlike cv::borderInterpolate in constant time,
// however far outside a position lies.
#ifndef LUMVIK_PIPELINE_MIRRORED_BORDER_H_
#define LUMVIK_PIPELINE_MIRRORED_BORDER_H_

namespace lumvik {

// Mirrored at the centers of the outermost pixels, as cv::BORDER_REFLECT_101 does.
inline int Mirrored(int at, int count) {
  const int beyond_end = at < count ? at : 2 * (count - 1) - at;
  const int once = at < 0 ? -at : beyond_end;
  if (once >= 0 && once < count) return once;
  if (count == 1) return 0;
  const int period = 2 * (count - 1);
  const int distance = (at < 0 ? -at : at) % period;
  return distance < count ? distance : period - distance;
}

// Mirrored at the outer edges, the outermost pixels repeated, as cv::BORDER_REFLECT does.
inline int MirroredAtEdge(int at, int count) {
  if (at >= 0 && at < count) return at;
  const int once = at < 0 ? -1 - at : 2 * count - 1 - at;
  if (once >= 0 && once < count) return once;
  const int period = 2 * count;
  const int distance = (at < 0 ? -1 - at : at) % period;
  return distance < count ? distance : period - 1 - distance;
}

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_MIRRORED_BORDER_H_
