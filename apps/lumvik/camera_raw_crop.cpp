#include "camera_raw_crop.h"

#include <algorithm>
#include <cmath>

namespace lumvik {
namespace {

struct Point {
  double x;
  double y;
};

// Where a point of the stored picture, in fractions, lies in the upright one.
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

// Turns a point counter-clockwise about the middle of a picture with these sides; y points down.
Point Turn(Point p, double degrees, double width, double height) {
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
  // The rectangle is turned clockwise; turning the picture the other way puts it upright.
  const double rotation = IsMirrored(orientation) ? 0 - crop.angle : crop.angle;
  if (rotation != 0) {
    const bool lying = orientation >= 5;  // the sides change places
    const double width = lying ? frame.height : frame.width;
    const double height = lying ? frame.width : frame.height;
    a = Turn(a, rotation, width, height);
    b = Turn(b, rotation, width, height);
  }
  return {std::min(a.x, b.x), std::min(a.y, b.y), std::abs(a.x - b.x), std::abs(a.y - b.y), rotation};
}

}  // namespace lumvik
