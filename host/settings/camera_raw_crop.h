// Converts a Camera Raw crop to the engine's crop and rotation.
#ifndef LUMVIK_HOST_SETTINGS_CAMERA_RAW_CROP_H_
#define LUMVIK_HOST_SETTINGS_CAMERA_RAW_CROP_H_

#include "metadata/metadata_module.h"

namespace lumvik::host {

// A rectangle on the image as stored, rotated clockwise by `angle`. (left, top) and (right, bottom) are two
// opposite corners after rotation, as fractions of the image's width and height.
struct CameraRawCrop {
  double left;
  double top;
  double right;
  double bottom;
  double angle;  // degrees
};

// An axis-aligned rectangle on the upright image after it has been rotated about its center.
struct TurnedCrop {
  double x;  // fractions of the upright image
  double y;
  double w;
  double h;
  double rotation;  // degrees, positive counter-clockwise
};

// The same part of the image. Unless the angle is 0, the frame's width and height must be known.
TurnedCrop TurnCrop(const CameraRawCrop& crop, const StoredFrame& frame);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_SETTINGS_CAMERA_RAW_CROP_H_
