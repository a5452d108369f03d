// The crop of Camera Raw in terms of the engine's.
#ifndef LUMVIK_APPS_CAMERA_RAW_CROP_H_
#define LUMVIK_APPS_CAMERA_RAW_CROP_H_

#include "camera_raw_settings.h"

namespace lumvik {

// A rectangle on the stored picture, turned clockwise by the angle: left, top and right, bottom are where two
// of its corners come to lie, in fractions of the picture's width and height.
struct CameraRawCrop {
  double left;
  double top;
  double right;
  double bottom;
  double angle;  // degrees
};

// An upright rectangle on the upright picture after it has been turned about its center.
struct TurnedCrop {
  double x;  // fractions of the upright picture
  double y;
  double w;
  double h;
  double rotation;  // degrees, positive counter-clockwise
};

// The same part of the picture. The width and the height of the frame must be known unless the angle is 0.
TurnedCrop TurnCrop(const CameraRawCrop& crop, const StoredFrame& frame);

}  // namespace lumvik

#endif  // LUMVIK_APPS_CAMERA_RAW_CROP_H_
