// Where a point of a render comes from.
#ifndef LUMVIK_HOST_PHOTO_SOURCE_POINT_H_
#define LUMVIK_HOST_PHOTO_SOURCE_POINT_H_

#include <opencv2/core/types.hpp>

#include "settings/settings.h"

namespace lumvik::host {

// Maps a point of the render to the image of `size` that it was rendered from, both in fractions: undoes the
// crop, perspective, rotation, flips and distortion of the settings, which must be complete.
cv::Point2d SourcePoint(cv::Point2d rendered, cv::Size size, const Settings& complete);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_PHOTO_SOURCE_POINT_H_
