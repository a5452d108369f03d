// The record of every develop parameter. A plain record that all subsystems may read.
#ifndef LUMVIK_BASE_ADJUSTMENTS_H_
#define LUMVIK_BASE_ADJUSTMENTS_H_

#include <array>
#include <vector>

namespace lumvik {

// One control point of a tone curve, both coordinates on the 0..1 scale.
struct CurvePoint {
  float x = 0;
  float y = 0;
};

// Control points in the order the host gave them; fewer than two stand for the identity.
using ToneCurve = std::vector<CurvePoint>;

// Which curve of Adjustments::tone_curves acts on what.
enum ToneCurveChannel { kMasterCurve, kRedCurve, kGreenCurve, kBlueCurve, kToneCurveCount };

// Shifts of one hue band: hue in degrees, saturation and luminance in percent.
struct HslBand {
  float hue = 0;
  float saturation = 0;
  float luminance = 0;
};

inline constexpr int kHslBandCount = 8;

// Hues in degrees, saturations and balance in percent.
struct SplitToningSettings {
  float highlight_hue = 0;
  float highlight_saturation = 0;
  float shadow_hue = 0;
  float shadow_saturation = 0;
  float balance = 0;
};

// Fractions of the frame's width and height; a width or height of 0 is no crop.
struct CropRectangle {
  float x = 0;
  float y = 0;
  float w = 0;
  float h = 0;
};

// All settings of one photograph, stored as the host gave them: no range is enforced here. Percent
// unless said otherwise.
struct Adjustments {
  float exposure = 0;  // stops
  float brightness = 0;
  float contrast = 0;
  float highlights = 0;
  float shadows = 0;
  float whites = 0;
  float blacks = 0;
  float temperature = 5500;  // kelvin
  float tint = 0;
  float saturation = 0;
  float vibrance = 0;
  float sharpening_amount = 0;
  float sharpening_radius = 1;     // Gaussian sigma in pixels
  float sharpening_threshold = 0;  // 16-bit code values
  float nr_luminance = 0;
  float nr_color = 0;
  float clarity = 0;
  float texture = 0;
  float dehaze = 0;
  std::array<ToneCurve, kToneCurveCount> tone_curves;
  std::array<HslBand, kHslBandCount> hsl;
  SplitToningSettings split_toning;
  float distortion = 0;
  float ca_correction = 0;
  float lens_vignette = 0;
  float defringe = 0;
  CropRectangle crop;
  float rotation = 0;  // degrees, positive is counter-clockwise
  float perspective_h = 0;
  float perspective_v = 0;
  int flip_h = 0;
  int flip_v = 0;
  float vignette_amount = 0;
  float vignette_midpoint = 50;
  float vignette_roundness = 0;
  float grain_amount = 0;
  float grain_size = 25;
};

}  // namespace lumvik

#endif  // LUMVIK_BASE_ADJUSTMENTS_H_
