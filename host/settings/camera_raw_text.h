// Values of Camera Raw settings as text.
#ifndef LUMVIK_HOST_SETTINGS_CAMERA_RAW_TEXT_H_
#define LUMVIK_HOST_SETTINGS_CAMERA_RAW_TEXT_H_

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "metadata/metadata_module.h"

namespace lumvik::host {

// The level 1 of a curve.
inline constexpr double kCurveTop = 255;

// The items of a list as one text.
std::string Joined(const std::vector<std::string>& parts);

// The value of a property; "" if there is none.
std::string TextOf(const CameraRawSettings& settings, const std::string& name);

// A finite number such as "+0.50".
std::optional<double> ReadNumber(const std::string& text);

// A point of a curve such as "51, 102": two numbers separated by a comma and usually a space, as fractions.
std::optional<std::array<float, 2>> ReadPoint(const std::string& text);

// The inverse of ReadPoint.
std::string PointText(const std::array<float, 2>& point);

// The text of ours / factor, from which reading and multiplying give `ours` again if any text can.
std::string ScaledText(float ours, double factor);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_SETTINGS_CAMERA_RAW_TEXT_H_
