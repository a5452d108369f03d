// Turning the sensor's image into the orientation that the camera recorded.
#ifndef LUMVIK_IMAGE_RAW_ORIENTATION_H_
#define LUMVIK_IMAGE_RAW_ORIENTATION_H_

#include <opencv2/core.hpp>
#include <utility>

namespace lumvik {

// LibRaw's flip code: the turned image's rows run along the sensor's columns (4), up from the bottom (2),
// or its columns from the right (1), both in terms of the sensor.
class Orientation {
 public:
  Orientation(int flip, cv::Size sensor)
      : swaps_axes_((flip & 4) != 0),
        from_bottom_((flip & 2) != 0),
        from_right_((flip & 1) != 0),
        sensor_(sensor) {}

  cv::Size TurnedSize() const { return Swapped(sensor_); }
  cv::Size Swapped(cv::Size size) const { return swaps_axes_ ? cv::Size(size.height, size.width) : size; }

  // The area of the sensor that an area of the turned image comes from.
  cv::Rect OnSensor(cv::Rect turned) const {
    if (swaps_axes_) turned = {turned.y, turned.x, turned.height, turned.width};
    if (from_bottom_) turned.y = sensor_.height - turned.y - turned.height;
    if (from_right_) turned.x = sensor_.width - turned.x - turned.width;
    return turned;
  }

  // The position of a sensor's pixel in the turned image, and the step from there to the next pixel on the
  // right.
  cv::Point Turned(cv::Point pixel) const {
    if (from_bottom_) pixel.y = sensor_.height - 1 - pixel.y;
    if (from_right_) pixel.x = sensor_.width - 1 - pixel.x;
    return swaps_axes_ ? cv::Point(pixel.y, pixel.x) : pixel;
  }
  cv::Point TurnedStep() const {
    const int step = from_right_ ? -1 : 1;
    return swaps_axes_ ? cv::Point(0, step) : cv::Point(step, 0);
  }

 private:
  bool swaps_axes_;
  bool from_bottom_;
  bool from_right_;
  cv::Size sensor_;
};

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_RAW_ORIENTATION_H_
