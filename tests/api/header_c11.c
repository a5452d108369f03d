/* Compiling this file as C11 proves that lumvik.h is self-contained C and that each of the 68 functions has
   the type that hosts are built against. Nothing here runs or is linked: _Generic does not evaluate its
   operand. */
#include "lumvik.h"

#define FUNCTION(name, ...) \
  _Static_assert(_Generic(&name, __VA_ARGS__ : 1, default : 0), #name " has another type: " #__VA_ARGS__)

typedef void (*FloatSetter)(EngineContext*, float);
typedef void (*IntSetter)(EngineContext*, int);

FUNCTION(lumvik_init, int (*)(void));
FUNCTION(lumvik_shutdown, void (*)(void));
FUNCTION(lumvik_version, const char* (*)(void));
FUNCTION(lumvik_create_context, EngineContext* (*)(void));
FUNCTION(lumvik_destroy_context, void (*)(EngineContext*));
FUNCTION(lumvik_last_error, const char* (*)(EngineContext*));
FUNCTION(lumvik_get_width, int (*)(EngineContext*));
FUNCTION(lumvik_get_height, int (*)(EngineContext*));

FUNCTION(lumvik_load_arw, int (*)(EngineContext*, const char*, int));
FUNCTION(lumvik_unload, void (*)(EngineContext*));

FUNCTION(lumvik_process, int (*)(EngineContext*));
FUNCTION(lumvik_get_preview, int (*)(EngineContext*, uint8_t*, int));
FUNCTION(lumvik_get_histogram, int (*)(EngineContext*, uint32_t*, uint32_t*, uint32_t*, uint32_t*));

FUNCTION(lumvik_get_exif, int (*)(EngineContext*, ExifInfo*));

FUNCTION(lumvik_export_jpeg, int (*)(EngineContext*, const char*, int, int, int));
FUNCTION(lumvik_export_png, int (*)(EngineContext*, const char*, int));
FUNCTION(lumvik_export_tiff, int (*)(EngineContext*, const char*));

FUNCTION(lumvik_reset_adjustments, void (*)(EngineContext*));
FUNCTION(lumvik_set_exposure, FloatSetter);
FUNCTION(lumvik_set_brightness, FloatSetter);
FUNCTION(lumvik_set_contrast, FloatSetter);
FUNCTION(lumvik_set_highlights, FloatSetter);
FUNCTION(lumvik_set_shadows, FloatSetter);
FUNCTION(lumvik_set_whites, FloatSetter);
FUNCTION(lumvik_set_blacks, FloatSetter);
FUNCTION(lumvik_set_temperature, FloatSetter);
FUNCTION(lumvik_set_tint, FloatSetter);
FUNCTION(lumvik_set_saturation, FloatSetter);
FUNCTION(lumvik_set_vibrance, FloatSetter);
FUNCTION(lumvik_set_tone_curve, void (*)(EngineContext*, int, const float*, int));
FUNCTION(lumvik_reset_tone_curve, IntSetter);
FUNCTION(lumvik_set_clarity, FloatSetter);
FUNCTION(lumvik_set_texture, FloatSetter);
FUNCTION(lumvik_set_dehaze, FloatSetter);
FUNCTION(lumvik_set_hsl, void (*)(EngineContext*, int, float, float, float));
FUNCTION(lumvik_set_split_toning, void (*)(EngineContext*, int, float, float, float));
FUNCTION(lumvik_set_nr_luminance, FloatSetter);
FUNCTION(lumvik_set_nr_color, FloatSetter);
FUNCTION(lumvik_set_sharpening_amount, FloatSetter);
FUNCTION(lumvik_set_sharpening_radius, FloatSetter);
FUNCTION(lumvik_set_sharpening_threshold, FloatSetter);
FUNCTION(lumvik_set_distortion, FloatSetter);
FUNCTION(lumvik_set_ca_correction, FloatSetter);
FUNCTION(lumvik_set_lens_vignette, FloatSetter);
FUNCTION(lumvik_set_defringe, FloatSetter);
FUNCTION(lumvik_set_flip_h, IntSetter);
FUNCTION(lumvik_set_flip_v, IntSetter);
FUNCTION(lumvik_set_rotation, FloatSetter);
FUNCTION(lumvik_set_perspective_h, FloatSetter);
FUNCTION(lumvik_set_perspective_v, FloatSetter);
FUNCTION(lumvik_set_crop, void (*)(EngineContext*, float, float, float, float));
FUNCTION(lumvik_set_vignette_amount, FloatSetter);
FUNCTION(lumvik_set_vignette_midpoint, FloatSetter);
FUNCTION(lumvik_set_vignette_roundness, FloatSetter);
FUNCTION(lumvik_set_grain_amount, FloatSetter);
FUNCTION(lumvik_set_grain_size, FloatSetter);

FUNCTION(lumvik_auto_exposure, int (*)(EngineContext*, float*));
FUNCTION(lumvik_auto_white_balance, int (*)(EngineContext*, float*, float*));
FUNCTION(lumvik_auto_enhance, int (*)(EngineContext*, float*));
FUNCTION(lumvik_auto_crop, int (*)(EngineContext*, float*, float*, float*, float*));
FUNCTION(lumvik_auto_straighten, int (*)(EngineContext*, float*));

FUNCTION(lumvik_segment_subject, int (*)(EngineContext*, float, float));
FUNCTION(lumvik_get_mask, int (*)(EngineContext*, uint8_t*, int));
FUNCTION(lumvik_set_bg_blur, FloatSetter);
FUNCTION(lumvik_export_subject_png, int (*)(EngineContext*, const char*));

FUNCTION(lumvik_extract_thumbnail, int (*)(const char*, uint8_t**, int*));
FUNCTION(lumvik_free_thumb, void (*)(void*));
FUNCTION(lumvik_phash, int (*)(const char*, uint64_t*));
