// Values of Camera Raw settings as text.
#ifndef LUMVIK_HOST_SETTINGS_CAMERA_RAW_TEXT_H_
#define LUMVIK_HOST_SETTINGS_CAMERA_RAW_TEXT_H_

#include <array>
#include <optional>
#include <string>

namespace lumvik::host {

// The level 1 of a curve.
inline constexpr double kCurveTop = 255;

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
