// The names of settings in XMP.
#ifndef LUMVIK_HOST_SETTINGS_CAMERA_RAW_NAMES_H_
#define LUMVIK_HOST_SETTINGS_CAMERA_RAW_NAMES_H_

#include <limits>

namespace lumvik::host {

// Our own namespace holds a settings file in one property.
inline constexpr char kOwnPrefix[] = "lumvik";
inline constexpr char kOwnNamespace[] = "https://lumvik.invalid/ns/1.0/";
inline constexpr char kOwnSettings[] = "Settings";

// The master curve; those of the channels append the color.
inline constexpr char kCameraRawCurve[] = "ToneCurvePV2012";

// The numeric Camera Raw settings that have a counterpart here.
struct CameraRawNumber {
  const char* name = "";
  const char* key = "";                                 // of our setting
  double factor = 1;                                    // from their scale to ours
  float lowest = std::numeric_limits<float>::lowest();  // values beyond these have no counterpart
  float highest = std::numeric_limits<float>::max();
};

// When two settings share a key, the greater value wins.
// The white balance is not among them: theirs is absolute, ours relative to that of the camera.
inline constexpr CameraRawNumber kCameraRawNumbers[] = {
    {"Exposure2012", "exposure"},
    {"Contrast2012", "contrast"},
    {"Highlights2012", "highlights"},
    {"Shadows2012", "shadows"},
    {"Whites2012", "whites", -1},  // ours darkens above 0
    {"Blacks2012", "blacks", -1},
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
    {"PerspectiveVertical", "perspective_h"},             // both narrow the top above 0
    {"PostCropVignetteAmount", "vignette_amount", 1, 0},  // below 0 it darkens, ours never does
    {"PostCropVignetteMidpoint", "vignette_midpoint"},
    {"PostCropVignetteRoundness", "vignette_roundness", 1, -100, 0},  // above 0 ours stays an ellipse
    {"GrainAmount", "grain_amount"},
    {"GrainSize", "grain_size"},
    {"SplitToningHighlightHue", "split_toning.highlight_hue"},
    {"SplitToningHighlightSaturation", "split_toning.highlight_saturation"},
    {"SplitToningShadowHue", "split_toning.shadow_hue"},
    {"SplitToningShadowSaturation", "split_toning.shadow_saturation"},
    {"SplitToningBalance", "split_toning.balance"},
};

// Each exists per color: "HueAdjustmentRed" becomes "hsl.red.hue". A hue of 100 shifts to the neighboring
// color, about 30 degrees away.
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

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_SETTINGS_CAMERA_RAW_NAMES_H_
