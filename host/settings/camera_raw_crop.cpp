#include "settings/camera_raw_crop.h"

#include <algorithm>
#include <cmath>

namespace lumvik::host {
namespace {

struct Point {
  double x;
  double y;
};

// Maps a point of the stored image to the upright one, both in fractions.
Point Upright(Point p, int orientation) {
  switch (orientation) {
    case 2:
      return {1 - p.x, p.y};
    case 3:
      return {1 - p.x, 1 - p.y};
    case 4:
      return {p.x, 1 - p.y};
    case 5:
      return {p.y, p.x};
    case 6:
      return {1 - p.y, p.x};
    case 7:
      return {1 - p.y, 1 - p.x};
    case 8:
      return {p.y, 1 - p.x};
    default:
      return p;
  }
}

bool IsMirrored(int orientation) {
  return orientation == 2 || orientation == 4 || orientation == 5 || orientation == 7;
}

// Rotates a point counterclockwise about the center of an image of this size; y points down.
Point Rotated(Point p, double degrees, double width, double height) {
  const double radians = degrees * std::acos(-1.0) / 180;
  const double x = (p.x - 0.5) * width;
  const double y = (p.y - 0.5) * height;
  return {0.5 + (x * std::cos(radians) + y * std::sin(radians)) / width,
          0.5 + (y * std::cos(radians) - x * std::sin(radians)) / height};
}

}  // namespace

TurnedCrop TurnCrop(const CameraRawCrop& crop, const StoredFrame& frame) {
  const int orientation = frame.orientation;
  Point a = Upright({crop.left, crop.top}, orientation);
  Point b = Upright({crop.right, crop.bottom}, orientation);
  // Rotating the image counterclockwise undoes the clockwise rotation of the rectangle.
  const double rotation = IsMirrored(orientation) ? 0 - crop.angle : crop.angle;
  if (rotation != 0) {
    const bool is_transposed = orientation >= 5;
    const double width = is_transposed ? frame.height : frame.width;
    const double height = is_transposed ? frame.width : frame.height;
    a = Rotated(a, rotation, width, height);
    b = Rotated(b, rotation, width, height);
  }
  return {std::min(a.x, b.x), std::min(a.y, b.y), std::abs(a.x - b.x), std::abs(a.y - b.y), rotation};
}

}  // namespace lumvik::host
