// The color of a light as a correlated color temperature and a tint.
#ifndef LUMVIK_HOST_COLOR_CORRELATED_TEMPERATURE_H_
#define LUMVIK_HOST_COLOR_CORRELATED_TEMPERATURE_H_

#include <array>
#include <limits>

namespace lumvik::host {

// NaN if unknown.
struct WhitePoint {
  double temperature = std::numeric_limits<double>::quiet_NaN();  // kelvin
  // 3000 times the distance Duv from the Planckian locus in the CIE 1960 UCS. Positive for greenish light,
  // which takes that much magenta to neutralize: daylight of 5500 kelvin has about 10.
  double tint = std::numeric_limits<double>::quiet_NaN();
};

// The light with the CIE 1931 tristimulus values `xyz`, by A. R. Robertson, "Computation of Correlated Color
// Temperature and Distribution Temperature", JOSA 58 (1968), with the isotherms of G. Wyszecki and W. S.
// Stiles, Color Science, 2nd ed., table 1(3.11). Unknown below 1667 kelvin, and for what is not a color.
WhitePoint WhitePointOf(const std::array<double, 3>& xyz);

using ColorMatrix = std::array<std::array<double, 3>, 3>;

// The light that a camera renders neutral with these multipliers. `matrix` converts XYZ to its red, green and
// blue. Unknown without multipliers or for a singular matrix.
WhitePoint WhitePointOfCamera(const ColorMatrix& matrix, const std::array<double, 3>& multipliers);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_COLOR_CORRELATED_TEMPERATURE_H_
