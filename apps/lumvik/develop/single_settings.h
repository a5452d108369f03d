// The settings with a single number. A row in this table defines the command-line option, the key in settings
// files and the engine call.
#ifndef LUMVIK_APPS_DEVELOP_SINGLE_SETTINGS_H_
#define LUMVIK_APPS_DEVELOP_SINGLE_SETTINGS_H_

#include "lumvik.h"
#include "options/range.h"

namespace lumvik {

// Headings in the help.
inline constexpr char kTone[] = "Tone";
inline constexpr char kColor[] = "Color";
inline constexpr char kDetail[] = "Detail";
inline constexpr char kLens[] = "Lens";
inline constexpr char kGeometry[] = "Geometry";
inline constexpr char kEffects[] = "Effects";

struct SingleSetting {
  const char* group;
  const char* key;  // in settings files; the option has dashes for underscores
  void (*set)(EngineContext*, float);
  float initial;  // the engine's default
  Range<float> range;
  const char* unit;
  const char* help;
};

// clang-format off
inline constexpr SingleSetting kSingleSettings[] = {
    {kTone, "exposure", lumvik_set_exposure, 0, {-10, 10}, "STOPS", "Exposure compensation"},
    {kTone, "brightness", lumvik_set_brightness, 0, {-100, 100}, "PERCENT",
     "Darken or brighten the midtones"},
    {kTone, "contrast", lumvik_set_contrast, 0, {-100, 100}, "PERCENT",
     "Decrease or increase contrast around middle gray"},
    {kTone, "highlights", lumvik_set_highlights, 0, {-100, 100}, "PERCENT",
     "Darken or brighten the highlights"},
    {kTone, "shadows", lumvik_set_shadows, 0, {-100, 100}, "PERCENT", "Darken or lift the shadows"},
    {kTone, "whites", lumvik_set_whites, 0, {-100, 100}, "PERCENT",
     "Move the white point: above 0 darkens, below 0 brightens and clips"},
    {kTone, "blacks", lumvik_set_blacks, 0, {-100, 100}, "PERCENT",
     "Move the black point: above 0 darkens and clips, below 0 lifts"},
    {kColor, "temperature", lumvik_set_temperature, 5500, {1667, 25000}, "KELVIN",
     "Color temperature; higher is warmer, 6500 with tint 0 keeps the colors (default 5500)"},
    {kColor, "tint", lumvik_set_tint, 0, {-150, 150}, "TINT",
     "Shift toward green (below 0) or magenta (above 0)"},
    {kColor, "saturation", lumvik_set_saturation, 0, {-100, 100}, "PERCENT",
     "Decrease or increase saturation; -100 is grayscale"},
    {kColor, "vibrance", lumvik_set_vibrance, 0, {-100, 100}, "PERCENT",
     "Decrease or increase the saturation of muted colors"},
    {kDetail, "clarity", lumvik_set_clarity, 0, {-100, 100}, "PERCENT",
     "Soften or enhance local contrast at a radius of about 20 pixels"},
    {kDetail, "texture", lumvik_set_texture, 0, {-100, 100}, "PERCENT",
     "Soften or enhance fine detail at a radius of about 3 pixels"},
    {kDetail, "dehaze", lumvik_set_dehaze, 0, {0, 100}, "PERCENT", "Remove haze"},
    {kDetail, "nr_luminance", lumvik_set_nr_luminance, 0, {0, 100}, "PERCENT",
     "Reduce luminance noise"},
    {kDetail, "nr_color", lumvik_set_nr_color, 0, {0, 100}, "PERCENT", "Reduce color noise"},
    {kDetail, "sharpening_amount", lumvik_set_sharpening_amount, 0, {0, 150}, "AMOUNT",
     "Amount of sharpening"},
    // The engine does not support a radius of 0.
    {kDetail, "sharpening_radius", lumvik_set_sharpening_radius, 1, {0.01F, 100}, "PIXELS",
     "Radius of sharpening (default 1)"},
    {kDetail, "sharpening_threshold", lumvik_set_sharpening_threshold, 0, {0, 65535}, "LEVEL",
     "Leave differences up to this level, of 65535, unsharpened"},
    {kLens, "distortion", lumvik_set_distortion, 0, {-100, 100}, "PERCENT",
     "Correct pincushion (below 0) or barrel distortion (above 0)"},
    {kLens, "ca_correction", lumvik_set_ca_correction, 0, {0, 100}, "PERCENT",
     "Correct lateral chromatic aberration of red and blue"},
    {kLens, "lens_vignette", lumvik_set_lens_vignette, 0, {0, 100}, "PERCENT",
     "Correct lens vignetting by brightening the corners"},
    {kLens, "defringe", lumvik_set_defringe, 0, {0, 100}, "PERCENT", "Desaturate purple and green fringes"},
    {kGeometry, "rotation", lumvik_set_rotation, 0, {-180, 180}, "DEGREES",
     "Rotate clockwise (below 0) or counterclockwise (above 0)"},
    {kGeometry, "perspective_h", lumvik_set_perspective_h, 0, {-100, 100}, "PERCENT",
     "Narrow the bottom (below 0) or the top (above 0)"},
    {kGeometry, "perspective_v", lumvik_set_perspective_v, 0, {-100, 100}, "PERCENT",
     "Stretch (below 0) or compress (above 0) the height"},
    {kEffects, "vignette_amount", lumvik_set_vignette_amount, 0, {-100, 100}, "PERCENT",
     "Fade the edges to white, whatever the sign"},
    {kEffects, "vignette_midpoint", lumvik_set_vignette_midpoint, 50, {0, 100}, "PERCENT",
     "Where the vignette starts, from the center to the edge (default 50)"},
    {kEffects, "vignette_roundness", lumvik_set_vignette_roundness, 0, {-100, 100}, "PERCENT",
     "Shape of the vignette: a rectangle at -100, an ellipse at 0 and above"},
    {kEffects, "grain_amount", lumvik_set_grain_amount, 0, {0, 100}, "PERCENT",
     "Add film grain; it differs from run to run"},
    {kEffects, "grain_size", lumvik_set_grain_size, 25, {0, 100}, "PERCENT",
     "Coarseness of the grain (default 25)"},
};
// clang-format on

}  // namespace lumvik

#endif  // LUMVIK_APPS_DEVELOP_SINGLE_SETTINGS_H_
