// The settings of Camera Raw that are one number each and have a counterpart here.
#ifndef LUMVIK_APPS_CAMERA_RAW_NAMES_H_
#define LUMVIK_APPS_CAMERA_RAW_NAMES_H_

#include <limits>

namespace lumvik {

struct CameraRawNumber {
  const char* name = "";
  const char* key = "";                                 // of the setting here
  double factor = 1;                                    // between the two scales
  float lowest = std::numeric_limits<float>::lowest();  // where less has no counterpart, though the key has
};

// Where two have one key, the greater wins.
inline constexpr CameraRawNumber kCameraRawNumbers[] = {
    {"Exposure2012", "exposure"},
    {"Contrast2012", "contrast"},
    {"Highlights2012", "highlights"},
    {"Shadows2012", "shadows"},
    {"Whites2012", "whites", -1},  // above 0 darkens here
    {"Blacks2012", "blacks", -1},
    {"Temperature", "temperature"},
    {"Tint", "tint"},
    {"Saturation", "saturation"},
    {"Vibrance", "vibrance"},
    {"Clarity2012", "clarity"},
    {"Texture", "texture"},
    {"Dehaze", "dehaze"},
    {"Sharpness", "sharpening_amount"},
    {"SharpenRadius", "sharpening_radius"},
    {"LuminanceSmoothing", "nr_luminance"},
    {"ColorNoiseReduction", "nr_color"},
    {"LensManualDistortionAmount", "distortion"},
    {"VignetteAmount", "lens_vignette"},
    {"DefringePurpleAmount", "defringe", 5},  // from 0..20
    {"DefringeGreenAmount", "defringe", 5},
    {"PerspectiveVertical", "perspective_h"},             // which narrows the top as well
    {"PostCropVignetteAmount", "vignette_amount", 1, 0},  // below 0 it darkens, which nothing here does
    {"PostCropVignetteMidpoint", "vignette_midpoint"},
    {"PostCropVignetteRoundness", "vignette_roundness"},
    {"GrainAmount", "grain_amount"},
    {"GrainSize", "grain_size"},
    {"SplitToningHighlightHue", "split_toning.highlight_hue"},
    {"SplitToningHighlightSaturation", "split_toning.highlight_saturation"},
    {"SplitToningShadowHue", "split_toning.shadow_hue"},
    {"SplitToningShadowSaturation", "split_toning.shadow_saturation"},
    {"SplitToningBalance", "split_toning.balance"},
};

// Three for each color: "HueAdjustmentRed" is "hsl.red.hue". A hue at 100 reaches the neighboring color,
// some 30 degrees away.
struct CameraRawBandNumber {
  const char* name;
  const char* key;
  double factor;
};
inline constexpr CameraRawBandNumber kCameraRawBandNumbers[] = {
    {"HueAdjustment", ".hue", 0.3},
    {"SaturationAdjustment", ".saturation", 1},
    {"LuminanceAdjustment", ".luminance", 1},
};

}  // namespace lumvik

#endif  // LUMVIK_APPS_CAMERA_RAW_NAMES_H_
