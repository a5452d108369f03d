/**
 * @file lumvik.h
 * Reference manual and interface of lumvik, a photo-development engine.
 *
 * lumvik loads a photograph (a camera RAW file or an ordinary image), develops it by a set of
 * adjustments, hands back previews, histograms, metadata and suggestions, cuts out the subject, and
 * writes the result as JPEG, PNG or TIFF. One EngineContext holds one photograph.
 *
 * @code{.c}
 * EngineContext* ctx = lumvik_create_context();
 * if (ctx == NULL) return 1;
 * int status = lumvik_load_arw(ctx, "in.arw", 1);
 * if (status == LUMVIK_OK) {
 *   lumvik_set_temperature(ctx, 6500.0f);  // after the load, which resets every adjustment
 *   lumvik_set_exposure(ctx, 0.5f);
 *   status = lumvik_export_jpeg(ctx, "out.jpg", 90, 0, 1);
 * }
 * if (status != LUMVIK_OK) fprintf(stderr, "%s\n", lumvik_last_error(ctx));
 * lumvik_destroy_context(ctx);
 * @endcode
 *
 * The rules of this page hold for every function; the functions state only what they add.
 *
 * @par Status
 * Functions returning a status give 0 (LUMVIK_OK) on success and -1 on failure; a few mark other
 * failures by -2, -3 or -4. On failure the outputs are not written, except where stated.
 *
 * @par Null
 * A null context or a null pointer argument gives -1, stores no text and changes nothing. Functions
 * without a status do nothing; lumvik_get_width() and lumvik_get_height() give 0.
 *
 * @par Last error
 * Every other failure of a call on a context replaces the text of lumvik_last_error(), unless the
 * function says "no text". Success never clears it: look at the text only after a failure. The
 * texts are quoted in this manual exactly, byte for byte.
 *
 * @par Stale render
 * A render develops the whole loaded image by all adjustments, and the context keeps the result.
 * lumvik_process() and lumvik_get_preview() always render. The exports and lumvik_get_histogram()
 * use the last render and make a new one only when it is stale: after a load (even a failed one),
 * lumvik_unload() and lumvik_reset_adjustments(). <b>Setters never make it stale</b>: after a
 * setter, an export still writes the last render, if there is one, until the host renders again.
 * The other three make a render current; an export leaves a stale one stale, so that until one of
 * them is called every export renders anew.
 *
 * @par Memory
 * Output buffers are the host's. Paths and curve points are copied, and need not outlive the call.
 * Only contexts (lumvik_destroy_context()) and thumbnails (lumvik_free_thumb()) are released by the
 * host; the strings returned by lumvik_version() and lumvik_last_error() are not.
 *
 * @par Paths
 * NUL-terminated UTF-8. Photographs are read and exports written under exactly that name. The EXIF
 * of any file is read and carried over through the C runtime with the bytes as given. Where that
 * does not take UTF-8 (Windows with another code page) a path beyond ASCII fails there:
 * lumvik_get_exif() falls back, and a JPEG export carries no EXIF.
 *
 * @par Threads
 * There are no locks. One context must be used by one thread at a time; different contexts, and the
 * functions without a context, may be used in parallel. A call may spread its work over worker
 * threads, and returns when all of it is done.
 *
 * @par Exceptions
 * Exceptions of the image library (cv::Exception) and of the C++ runtime leave the call; they are
 * not turned into a status. The context is then as it was before the call, without a text, and can
 * be used or destroyed; lumvik_get_preview() and lumvik_get_histogram() keep a render that they made
 * before. A C host cannot catch exceptions and should avoid their causes:
 * - a render with a positive sharpening amount and a sharpening radius that is not positive;
 * - an export to a path without a "." (std::out_of_range), or whose ending no encoder knows;
 * - lumvik_export_subject_png() when mask and render differ in size;
 * - adjustments that are not finite or lie far outside the ranges given;
 * - exhausted memory (but lumvik_create_context() then returns null).
 *
 * @par Determinism
 * The same file, settings and calls give the same bytes for any number of threads. Two things are
 * random: film grain (lumvik_set_grain_amount()) and the seeding of lumvik_segment_subject().
 */
#ifndef LUMVIK_H_
#define LUMVIK_H_

#include <stddef.h>
#include <stdint.h>

/** @cond */
#if defined(_WIN32)
#if defined(LUMVIK_BUILDING)
#define LUMVIK_API __declspec(dllexport)
#else
#define LUMVIK_API __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define LUMVIK_API __attribute__((visibility("default")))
#else
#define LUMVIK_API
#endif
/** @endcond */

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @defgroup lumvik_context Library and context
 * @{
 */

/** The status of success; see Status in lumvik.h for the others. */
enum { LUMVIK_OK = 0 };

/** One photograph with its adjustments, last render, subject mask and last error. Opaque. */
typedef struct EngineContext EngineContext;

/** Does nothing and returns 0. No call is needed before the first use of the library. */
LUMVIK_API int lumvik_init(void);

/** Does nothing. Contexts stay valid. */
LUMVIK_API void lumvik_shutdown(void);

/** Returns the static string "1.0.0". */
LUMVIK_API const char* lumvik_version(void);

/**
 * Creates a context: nothing loaded, default adjustments, no mask, last error "".
 * Returns null when memory is exhausted. The host releases it by lumvik_destroy_context().
 */
LUMVIK_API EngineContext* lumvik_create_context(void);

/** Releases @p ctx and all it holds. Null is ignored. */
LUMVIK_API void lumvik_destroy_context(EngineContext* ctx);

/**
 * Returns the text of the latest failure on @p ctx, "" if there was none, "null context" for null.
 * The pointer is valid until the next call that fails on @p ctx or destroys it; copy to keep.
 */
LUMVIK_API const char* lumvik_last_error(EngineContext* ctx);

/**
 * Returns the width in pixels of the image a viewer would see now.
 * That is the last render's while it is current, else the loaded image's; 0 with nothing loaded.
 * Crops count only once lumvik_process(), lumvik_get_preview() or lumvik_get_histogram() has
 * rendered them; an export changes nothing here.
 */
LUMVIK_API int lumvik_get_width(EngineContext* ctx);

/** Returns the height in pixels, by the rule of lumvik_get_width(). */
LUMVIK_API int lumvik_get_height(EngineContext* ctx);

/** @} */

/**
 * @defgroup lumvik_loading Loading
 * @{
 */

/**
 * Loads the photograph at @p path in place of the one loaded before.
 *
 * Despite the function's name it may be an ordinary image, or a RAW file of any make. The ending of
 * the name decides: ".jpg", ".jpeg", ".png", ".tif", ".tiff", ".bmp" and ".webp" (in any case) are
 * ordinary images, everything else goes to the RAW decoder. The size held is, before cropping, the
 * size of every render and export.
 *
 * - Ordinary: decoded to 8-bit color (deeper files are reduced, gray expanded, alpha dropped),
 *   turned upright by its EXIF orientation, shrunk to a long side of at most 4096.
 * - RAW: sRGB, as-shot white balance, a fixed curve that lifts the mid-tones (0.5 becomes 0.58).
 *   @p quality, clamped to 1..4, trades detail for speed: 1 decodes at full resolution, 2 and 3 at
 *   half, both shrunk to a long side of at most 2000; 4 at a quarter, at most 1000.
 *
 * Success resets the adjustments as lumvik_reset_adjustments() does. The subject mask and the
 * background blur are kept, though they belong to the earlier image. Failure keeps the earlier
 * image and its adjustments, but makes its render stale; so does an exception.
 *
 * @retval  0 loaded
 * @retval -1 An ordinary image that is missing or cannot be decoded: "OpenCV could not read: "
 *            followed by the path as given. A RAW file: "LibRaw open_file failed: " (a missing file
 *            too), "LibRaw unpack failed: ", "LibRaw dcraw_process failed: " or
 *            "LibRaw dcraw_make_mem_image failed: ", followed by LibRaw's own text.
 * @throws cv::Exception see Exceptions
 */
LUMVIK_API int lumvik_load_arw(EngineContext* ctx, const char* path, int quality);

/**
 * Empties the context of image, render and path.
 * Adjustments, last error, subject mask and background blur are kept.
 */
LUMVIK_API void lumvik_unload(EngineContext* ctx);

/** @} */

/**
 * @defgroup lumvik_developing Developing and reading back
 * @{
 */

/** The number of bins of each histogram. */
enum { LUMVIK_HISTOGRAM_BINS = 256 };

/**
 * Renders the loaded image by the current adjustments and makes the render current.
 *
 * @retval  0 rendered
 * @retval -1 "no image loaded"
 * @throws cv::Exception see Exceptions
 */
LUMVIK_API int lumvik_process(EngineContext* ctx);

/**
 * Renders as lumvik_process() does, and copies the result to @p out as 8-bit RGBA.
 *
 * Rows run from top to bottom without padding: width x height x 4 bytes of the rendered size, with
 * alpha 255. @p capacity is the size of @p out in bytes. When that is too small the render is current
 * all the same, so lumvik_get_width() and lumvik_get_height() then give the size to allocate; calling
 * lumvik_process() first to learn it costs a second render.
 *
 * With a subject mask and lumvik_set_bg_blur() above 0 the background is blurred, in the copy only.
 * A mask of another size is stretched to the preview.
 *
 * @retval  0 copied
 * @retval -1 "no image loaded", "pipeline produced empty result" or "output buffer too small"
 * @throws cv::Exception see Exceptions
 */
LUMVIK_API int lumvik_get_preview(EngineContext* ctx, uint8_t* out, int capacity);

/**
 * Counts the pixels of the render by 8-bit level, per channel and by luminance.
 *
 * Each array has LUMVIK_HISTOGRAM_BINS entries and sums to width x height. Luminance is
 * 0.2126 R + 0.7152 G + 0.0722 B. Renders only when the render is stale, and makes it current.
 *
 * @retval  0 counted
 * @retval -1 "no image loaded"
 * @throws cv::Exception see Exceptions
 */
LUMVIK_API int lumvik_get_histogram(EngineContext* ctx, uint32_t* red, uint32_t* green, uint32_t* blue,
                                    uint32_t* luminance);

/** @} */

/**
 * @defgroup lumvik_metadata Metadata
 * @{
 */

/**
 * Shooting data of a photograph: 336 bytes with the same layout in every build.
 * What is not known is 0 or "", but NaN for the two coordinates. Every string is NUL-terminated.
 */
typedef struct ExifInfo {
  char make[64];        /**< Camera maker. */
  char model[64];       /**< Camera model. */
  char lens[128];       /**< Lens model; "" in a fallback. */
  float focal_length;   /**< Millimeters. */
  float f_number;       /**< Or derived from the APEX aperture. */
  float exposure_time;  /**< Seconds; or derived from the APEX shutter speed. */
  int32_t iso;          /**< ISO speed. */
  char datetime[32];    /**< Time taken, as in the file ("2024:05:31 18:20:00"); "" in a fallback. */
  int32_t width;        /**< Pixels by the EXIF tag (SHORT or LONG); fallback: as held. */
  int32_t height;       /**< Like width. */
  int32_t orientation;  /**< EXIF code, 1 to 8; fallback: LibRaw's, 0, 3, 5 or 6. */
  int32_t reserved;     /**< 0. */
  double gps_latitude;  /**< Degrees, south negative; NaN in a fallback. */
  double gps_longitude; /**< Degrees, west negative; NaN in a fallback. */
} ExifInfo;

/** @cond */
#if defined(__cplusplus)
#define LUMVIK_STATIC_ASSERT(condition, text) static_assert(condition, text)
#elif defined(__STDC_VERSION__) && __STDC_VERSION__ >= 201112L
#define LUMVIK_STATIC_ASSERT(condition, text) _Static_assert(condition, text)
#else /* Older C has no such assertion: declare the struct once more instead. */
#define LUMVIK_STATIC_ASSERT(condition, text) struct ExifInfo
#endif
#define LUMVIK_EXIF_FIELD(field, offset) \
  LUMVIK_STATIC_ASSERT(offsetof(ExifInfo, field) == (offset), "ExifInfo." #field " starts at byte " #offset)
LUMVIK_EXIF_FIELD(make, 0);
LUMVIK_EXIF_FIELD(model, 64);
LUMVIK_EXIF_FIELD(lens, 128);
LUMVIK_EXIF_FIELD(focal_length, 256);
LUMVIK_EXIF_FIELD(f_number, 260);
LUMVIK_EXIF_FIELD(exposure_time, 264);
LUMVIK_EXIF_FIELD(iso, 268);
LUMVIK_EXIF_FIELD(datetime, 272);
LUMVIK_EXIF_FIELD(width, 304);
LUMVIK_EXIF_FIELD(height, 308);
LUMVIK_EXIF_FIELD(orientation, 312);
LUMVIK_EXIF_FIELD(reserved, 316);
LUMVIK_EXIF_FIELD(gps_latitude, 320);
LUMVIK_EXIF_FIELD(gps_longitude, 328);
LUMVIK_STATIC_ASSERT(sizeof(ExifInfo) == 336, "ExifInfo has 336 bytes");
#undef LUMVIK_EXIF_FIELD
#undef LUMVIK_STATIC_ASSERT
/** @endcond */

/**
 * Reads the shooting data of the loaded file, opening the file anew.
 *
 * When it holds no EXIF that libexif can load, or is gone, @p info falls back to what the RAW
 * decoder reported; for an ordinary image everything is then empty.
 *
 * @retval  0 filled
 * @retval -1 "no file loaded"
 */
LUMVIK_API int lumvik_get_exif(EngineContext* ctx, ExifInfo* info);

/** @} */

/**
 * @defgroup lumvik_export Export
 * Write the render, by the rule of Stale render, at its own size and without alpha.
 *
 * The ending of the path chooses the encoder, not the function: lumvik_export_jpeg() to "a.png"
 * writes a PNG. The ending begins at the last "." of the whole path, folders included.
 *
 * A file of that name is replaced. It is touched only after the encoding has succeeded; a write
 * that fails midway leaves it short.
 * @{
 */

/**
 * Writes 8 bits per channel.
 *
 * @p quality is clamped to 1..100; @p reserved is not read. With @p keep_exif not 0, and a JPEG
 * written, the EXIF block of the loaded file replaces the JFIF and EXIF headers of the new one.
 * It is copied with its orientation and size tags, although the pixels may have been turned and
 * resized. Whether it could be copied does not change the result. A block of more than 65533 bytes
 * gets a wrong length.
 *
 * @retval  0 written
 * @retval -1 "no image loaded" or "JPEG write failed"
 * @throws std::out_of_range for a path without a "."
 * @throws cv::Exception for an unknown ending; see Exceptions
 */
LUMVIK_API int lumvik_export_jpeg(EngineContext* ctx, const char* path, int quality, int reserved,
                                  int keep_exif);

/**
 * Writes 16 bits per channel when @p bit_depth is 16, else 8.
 *
 * @retval  0 written
 * @retval -1 "no image loaded" or "PNG write failed"
 * @throws std::out_of_range for a path without a "."
 * @throws cv::Exception for an unknown ending; see Exceptions
 */
LUMVIK_API int lumvik_export_png(EngineContext* ctx, const char* path, int bit_depth);

/**
 * Writes 16 bits per channel.
 *
 * @retval  0 written
 * @retval -1 "no image loaded" or "TIFF write failed"
 * @throws std::out_of_range for a path without a "."
 * @throws cv::Exception for an unknown ending; see Exceptions
 */
LUMVIK_API int lumvik_export_tiff(EngineContext* ctx, const char* path);

/** @} */

/**
 * @defgroup lumvik_adjustments Adjustments
 * How the image is to be developed. Setters only store: they do not check, clamp or render, and do
 * not make the render stale.
 *
 * Each setter states unit, normal range and default. Values outside the range are taken as they
 * are, so pass finite values. Percent means -100 to 100 unless stated. Levels are on the scale
 * 0 (black) to 1 (white) of the gamma-encoded image; distances are in pixels of the loaded image,
 * so the same setting reaches relatively further in a smaller one.
 *
 * Order of a render: white balance, exposure, brightness, highlights and shadows, whites and
 * blacks, contrast, tone curves, clarity and texture, dehaze, saturation and vibrance, hue bands,
 * split toning, noise reduction, sharpening, lens corrections (distortion, chromatic aberration,
 * vignetting, defringe), geometry (flips, rotation, perspective, crop), vignette, grain.
 * @{
 */

/**
 * Restores the default of every adjustment and makes the render stale.
 * The image, the mask and lumvik_set_bg_blur() are kept. All four tone curves become exactly
 * straight.
 */
LUMVIK_API void lumvik_reset_adjustments(EngineContext* ctx);

/**
 * Exposure in stops: 1 doubles, -1 halves. Default 0; suggestions lie in -0.25 to 1.
 * Any value but 0 also rolls off levels above 0.75 towards white, losing color on the way:
 * with a value near 0, white comes out at 0.875.
 */
LUMVIK_API void lumvik_set_exposure(EngineContext* ctx, float stops);

/** Brightness of the mid-tones by a power law. Percent, default 0; white and black stay. */
LUMVIK_API void lumvik_set_brightness(EngineContext* ctx, float percent);

/**
 * Contrast by an S-curve about 0.5: positive is steeper. Percent, default 0.
 * Not the identity near 0: any other value, however small, moves black to about 0.083 and white to
 * 0.917. Only from about 31 % up are pure black and white reached again.
 */
LUMVIK_API void lumvik_set_contrast(EngineContext* ctx, float percent);

/**
 * Brightens (positive) or darkens luminance above 0.45, the more the brighter. Percent, default 0.
 * -100 halves white.
 */
LUMVIK_API void lumvik_set_highlights(EngineContext* ctx, float percent);

/** Lifts (positive) or darkens luminance below 0.55, the more the darker. Percent, default 0. */
LUMVIK_API void lumvik_set_shadows(EngineContext* ctx, float percent);

/**
 * Moves the white point. Percent, default 0.
 * Positive values <b>darken</b> (100 maps white to 0.83), negative ones brighten and clip.
 */
LUMVIK_API void lumvik_set_whites(EngineContext* ctx, float percent);

/**
 * Moves the black point. Percent, default 0.
 * Positive values clip the darks (100 maps 0.1 to black), negative ones lift them (-100 maps black
 * to 0.09).
 */
LUMVIK_API void lumvik_set_blacks(EngineContext* ctx, float percent);

/**
 * White-balance temperature: higher is warmer. Kelvin, 1667 to 25000 (held within), default 5500.
 * <b>Neutral is 6500, not the default</b>: only within 1 of 6500, with a tint within 0.1 of 0, are
 * the colors left alone. At 5500 red and blue are multiplied by about 1.14 and 1.13; just outside
 * the neutral zone by 1.27 and 0.96. Below about 3500 almost no red remains.
 */
LUMVIK_API void lumvik_set_temperature(EngineContext* ctx, float kelvin);

/**
 * White-balance tint, -150 to 150, default 0. Positive is magenta (green x 0.85 at 150).
 * From 0.1 up, either way, red and blue are multiplied too, as told at lumvik_set_temperature().
 */
LUMVIK_API void lumvik_set_tint(EngineContext* ctx, float tint);

/** Color intensity. Percent, default 0; -100 gives gray, 100 doubles. */
LUMVIK_API void lumvik_set_saturation(EngineContext* ctx, float percent);

/** Color intensity of muted colors. Percent, default 0; strong colors are left alone. */
LUMVIK_API void lumvik_set_vibrance(EngineContext* ctx, float percent);

/** Channels of the tone curves. */
enum {
  LUMVIK_CURVE_MASTER = 0, /**< All three colors, ahead of their own curves. */
  LUMVIK_CURVE_RED = 1,
  LUMVIK_CURVE_GREEN = 2,
  LUMVIK_CURVE_BLUE = 3
};

/**
 * Sets one tone curve, a spline through @p count points. Default: none, which is exactly straight.
 *
 * @p points holds x0, y0, x1, y1, ...: 2 x @p count floats, input and output level, 0 to 1. Pass
 * them in ascending x: they are neither sorted nor checked. Null points, fewer than 2 points or a
 * channel outside 0..3 is ignored, and the old curve stays.
 *
 * A curve of the two points (0, 0), (1, 1) counts as straight only while all four curves are
 * straight. Beside any other curve it is a mild S (0.25 becomes 0.203, 0.75 becomes 0.797).
 */
LUMVIK_API void lumvik_set_tone_curve(EngineContext* ctx, int channel, const float* points, int count);

/**
 * Sets one tone curve to (0, 0), (1, 1): beside another curve an S, see lumvik_set_tone_curve().
 * Only lumvik_reset_adjustments() and loading bring back the exactly straight default. A channel
 * outside 0..3 is ignored.
 */
LUMVIK_API void lumvik_reset_tone_curve(EngineContext* ctx, int channel);

/** Local contrast over some 20 pixels. Percent, default 0; negative softens. */
LUMVIK_API void lumvik_set_clarity(EngineContext* ctx, float percent);

/** Local contrast over some 3 pixels. Percent, default 0; negative softens. */
LUMVIK_API void lumvik_set_texture(EngineContext* ctx, float percent);

/**
 * Removes haze. 0 to 100 percent, default 0; negative values do nothing, no value adds haze.
 * Strong settings drive the most hazy parts to pure 0 or 1.
 */
LUMVIK_API void lumvik_set_dehaze(EngineContext* ctx, float percent);

/** Hue bands, with their centers. */
enum {
  LUMVIK_BAND_RED = 0,     /**< 0 degrees. */
  LUMVIK_BAND_ORANGE = 1,  /**< 30 degrees. */
  LUMVIK_BAND_YELLOW = 2,  /**< 60 degrees. */
  LUMVIK_BAND_GREEN = 3,   /**< 120 degrees. */
  LUMVIK_BAND_AQUA = 4,    /**< 180 degrees. */
  LUMVIK_BAND_BLUE = 5,    /**< 240 degrees. */
  LUMVIK_BAND_PURPLE = 6,  /**< 280 degrees. */
  LUMVIK_BAND_MAGENTA = 7, /**< 300 degrees. */
  LUMVIK_BAND_COUNT = 8
};

/**
 * Shifts one hue band: @p hue in degrees, -180 to 180, @p saturation and @p luminance in percent.
 * Defaults 0.
 *
 * A band's effect falls from its center to nothing at 32.4 degrees away; where bands overlap, their
 * shifts add up. A luminance of 100 adds 0.5 to the lightness. Grays never change. A band outside
 * 0..7 is ignored.
 */
LUMVIK_API void lumvik_set_hsl(EngineContext* ctx, int band, float hue, float saturation, float luminance);

/** Zones of split toning. */
enum { LUMVIK_ZONE_HIGHLIGHTS = 0, LUMVIK_ZONE_SHADOWS = 1 };

/**
 * Tints the bright (zone 0) or the dark tones (any other zone).
 * @p hue in degrees, 0 to 360; @p saturation 0 to 100 percent. Both saturations 0 is off. All
 * defaults 0.
 *
 * @p balance, in percent, is stored <b>by zone 0 only</b>, for both zones; positive favors the
 * highlights. Hues mix along the scale, not around the circle: on the way to a hue near 0 or 360 a
 * color may pass through all the others.
 */
LUMVIK_API void lumvik_set_split_toning(EngineContext* ctx, int zone, float hue, float saturation,
                                        float balance);

/**
 * Smooths brightness noise. 0 to 100 percent, default 0; negative is off.
 * The kernel grows from 3 to 13 pixels in steps of 20 %.
 */
LUMVIK_API void lumvik_set_nr_luminance(EngineContext* ctx, float percent);

/**
 * Smooths color noise by blurring all channels, detail included. 0 to 100 percent, default 0;
 * negative is off. The kernel grows from 3 to 11 pixels in steps of 25 %.
 */
LUMVIK_API void lumvik_set_nr_color(EngineContext* ctx, float percent);

/** Strength of sharpening, 0 to 150, default 0; negative is off. 150 adds the full detail. */
LUMVIK_API void lumvik_set_sharpening_amount(EngineContext* ctx, float amount);

/**
 * Radius of sharpening, a Gaussian sigma. Pixels, positive, default 1.
 * <b>With a positive amount and a radius of 0 or less, every render raises cv::Exception.</b>
 */
LUMVIK_API void lumvik_set_sharpening_radius(EngineContext* ctx, float pixels);

/** The detail that is not sharpened: differences up to @p level of 65535. 0 to 65535, default 0. */
LUMVIK_API void lumvik_set_sharpening_threshold(EngineContext* ctx, float level);

/** Radial distortion. Percent, default 0; positive corrects barrel distortion. */
LUMVIK_API void lumvik_set_distortion(EngineContext* ctx, float percent);

/**
 * Corrects lateral color fringes. 0 to 100 percent, default 0; negative is off.
 * 100 enlarges red and shrinks blue by 0.3 % about the center, leaving a thin border without blue.
 */
LUMVIK_API void lumvik_set_ca_correction(EngineContext* ctx, float percent);

/** Brightens the corners, 1.5 times at 100. 0 to 100 percent, default 0; negative is off. */
LUMVIK_API void lumvik_set_lens_vignette(EngineContext* ctx, float percent);

/**
 * Mutes saturated purple (hues 234 to 306 degrees) and green (90 to 144), at 100 to half the
 * saturation. 0 to 100 percent, default 0; negative is off. Acts on all such colors, not only at
 * edges.
 */
LUMVIK_API void lumvik_set_defringe(EngineContext* ctx, float percent);

/** Mirrors left and right when @p flip is not 0. Default 0. */
LUMVIK_API void lumvik_set_flip_h(EngineContext* ctx, int flip);

/** Mirrors top and bottom when @p flip is not 0. Default 0. */
LUMVIK_API void lumvik_set_flip_v(EngineContext* ctx, int flip);

/**
 * Turns the image about its center. Degrees, positive counter-clockwise, default 0.
 * The size stays, and mirrored content fills the corners: crop it away.
 */
LUMVIK_API void lumvik_set_rotation(EngineContext* ctx, float degrees);

/**
 * Keystone: positive narrows the top and widens the bottom, each side by 15 % of the width at 100.
 * Percent, default 0. Mirrored content fills what is uncovered.
 */
LUMVIK_API void lumvik_set_perspective_h(EngineContext* ctx, float percent);

/**
 * Squeeze: positive moves the top edge down and the bottom edge up, by 15 % of the height at 100.
 * Percent, default 0. Mirrored content fills what is uncovered.
 */
LUMVIK_API void lumvik_set_perspective_v(EngineContext* ctx, float percent);

/**
 * Crops to a rectangle, in fractions of width and height of the turned image. Default 0, 0, 0, 0.
 * @p x and @p y are the top left corner. What reaches over the right or bottom edge is cut off.
 * There is no crop when @p w or @p h is 0 or less, when @p x and @p y are 0 with @p w and @p h at
 * least 0.99, or when the result would be <b>less than 11 pixels</b> wide or high.
 */
LUMVIK_API void lumvik_set_crop(EngineContext* ctx, float x, float y, float w, float h);

/**
 * Vignette of the cropped frame. Percent, default 0.
 * <b>Brightens towards white for either sign</b>; no value darkens.
 */
LUMVIK_API void lumvik_set_vignette_amount(EngineContext* ctx, float percent);

/** Where the vignette begins, from the center (0) to the edge (100). Percent, default 50. */
LUMVIK_API void lumvik_set_vignette_midpoint(EngineContext* ctx, float percent);

/** Shape of the vignette: rectangle at -100, ellipse from 0 to 100. Percent, default 0. */
LUMVIK_API void lumvik_set_vignette_roundness(EngineContext* ctx, float percent);

/**
 * Adds colorless grain. 0 to 100 percent, default 0; negative is off. Its standard deviation at
 * 100 is 0.05 of full scale. <b>Not seeded</b>: every render has other grain.
 */
LUMVIK_API void lumvik_set_grain_amount(EngineContext* ctx, float percent);

/** Coarseness of the grain, 0 (single pixels) to 100 (a sigma of 2.5 pixels), default 25. */
LUMVIK_API void lumvik_set_grain_size(EngineContext* ctx, float percent);

/** @} */

/**
 * @defgroup lumvik_auto Automatic tools
 * Suggest values from the loaded image before development. They read no adjustment and change none:
 * the host passes what it accepts to the setters.
 * @{
 */

/**
 * Suggests an exposure in stops, -0.25 to 1, for lumvik_set_exposure().
 *
 * @retval  0 suggested
 * @retval -1 "no image loaded"
 * @throws cv::Exception see Exceptions
 */
LUMVIK_API int lumvik_auto_exposure(EngineContext* ctx, float* exposure);

/**
 * Suggests the neutral white balance: always temperature 6500 and tint 0.
 *
 * @retval  0 suggested
 * @retval -1 "no image loaded"
 * @throws cv::Exception see Exceptions
 */
LUMVIK_API int lumvik_auto_white_balance(EngineContext* ctx, float* temperature, float* tint);

/** The number of floats that lumvik_auto_enhance() writes. */
enum { LUMVIK_ENHANCE_SLOTS = 32 };

/**
 * Suggests a whole set of adjustments: LUMVIK_ENHANCE_SLOTS floats.
 *
 * Slot | Adjustment  | Value      | Slot | Adjustment           | Value
 * ---- | ----------- | ---------- | ---- | -------------------- | -------
 * 0    | exposure    | -0.25 to 1 | 8    | tint                 | 0
 * 1    | brightness  | 0          | 9    | saturation           | 5
 * 2    | contrast    | -15 to 28  | 10   | vibrance             | 16
 * 3    | highlights  | -40 to 0   | 11   | sharpening_amount    | 6
 * 4    | shadows     | 15 to 25   | 12   | sharpening_radius    | 0
 * 5    | whites      | 0          | 13   | sharpening_threshold | 0
 * 6    | blacks      | 5          | 14   | nr_luminance         | 0 to 35
 * 7    | temperature | 6500       | 15   | nr_color             | 1
 *
 * Slots 16 to 31 are 0 and stand for nothing to apply.
 *
 * <b>Do not apply slot 12</b>: a radius of 0 with the amount of slot 11 makes every render raise an
 * exception. Leave lumvik_set_sharpening_radius() as it is.
 *
 * @retval  0 suggested
 * @retval -1 "no image loaded"
 * @throws cv::Exception see Exceptions
 */
LUMVIK_API int lumvik_auto_enhance(EngineContext* ctx, float* slots);

/**
 * Suggests a 3:2 landscape crop, in the fractions of lumvik_set_crop().
 * It keeps at least 2 % away from every edge; when nothing fits, it is 0, 0, 1, 1.
 *
 * @retval  0 suggested
 * @retval -1 "no image loaded"
 * @throws cv::Exception see Exceptions
 */
LUMVIK_API int lumvik_auto_crop(EngineContext* ctx, float* x, float* y, float* w, float* h);

/**
 * Measures the lean of the lines within 30 degrees of the horizontal. Degrees, -30 to 30.
 * Positive when they rise to the right, 0 when there are none. lumvik_set_rotation() turns
 * counter-clockwise, so levelling lines that rise to the right takes the <b>negated</b> value.
 *
 * @retval  0 measured
 * @retval -1 "no image loaded"
 * @throws cv::Exception see Exceptions
 */
LUMVIK_API int lumvik_auto_straighten(EngineContext* ctx, float* angle);

/** @} */

/**
 * @defgroup lumvik_subject Subject
 * A mask of the photographed subject: 8 bits, 255 on the subject, 0 on the background, a soft edge
 * of a few pixels between. Made of the RAW image before development, at its size.
 *
 * The mask stays until the next successful segmentation: loads, lumvik_unload() and resets keep it,
 * though it belongs to the earlier image, and geometry adjustments do not move it.
 * @{
 */

/**
 * Finds the subject around a point and stores the mask. Works on RAW files only.
 *
 * The point is given in fractions of width and height; a negative value or NaN means the middle.
 * The subject is sought in a rectangle of 60 % of each side about it, cut off at the borders.
 * Failure keeps the earlier mask. The render does not become stale.
 *
 * @retval  0 found
 * @retval -1 "no image loaded", also when an ordinary image is loaded
 * @retval -2 "GrabCut failed": the rectangle is empty (a point past 1.3, a tiny image), or the
 *            segmentation broke down
 * @throws cv::Exception see Exceptions
 */
LUMVIK_API int lumvik_segment_subject(EngineContext* ctx, float subject_x, float subject_y);

/**
 * Copies the mask to @p out: a byte per pixel, rows from top to bottom without padding.
 *
 * Its size is that of the loaded image when it was made: the answer of lumvik_get_width() and
 * lumvik_get_height() right after that load, not the size of a cropped render. @p capacity is the
 * size of @p out in bytes.
 *
 * @retval  0 copied
 * @retval -1 "no segmentation mask — call lumvik_segment_subject first"
 * @retval -2 @p capacity is too small; no text
 */
LUMVIK_API int lumvik_get_mask(EngineContext* ctx, uint8_t* out, int capacity);

/**
 * Blurs the background in previews (never in exports) when there is a mask. 0 to 100, default 0.
 * The value is clamped; NaN gives 100. Resets and loads keep it.
 */
LUMVIK_API void lumvik_set_bg_blur(EngineContext* ctx, float percent);

/**
 * Writes the render with the mask as alpha, 8 bits per channel. The rules of Export hold, so the
 * path must end in ".png".
 *
 * The mask must have the size of the render: do not crop, and segment the image that is loaded.
 *
 * @retval  0 written
 * @retval -1 "no segmentation mask"
 * @retval -2 "failed to write PNG"
 * @throws std::out_of_range for a path without a "."
 * @throws cv::Exception for an unknown ending, when mask and render differ in size, and when a mask
 *         is left but no image is loaded; see Exceptions
 */
LUMVIK_API int lumvik_export_subject_png(EngineContext* ctx, const char* path);

/** @} */

/**
 * @defgroup lumvik_paths Path-only tools
 * Read a file without a context. The codes tell the failures apart; there is no text. Which file is
 * an ordinary image is decided as in lumvik_load_arw(); of RAW files only the embedded preview is
 * read.
 * @{
 */

/**
 * Makes a small JPEG of an ordinary image, or takes the preview out of a RAW file.
 *
 * An ordinary image is shrunk to a long side of at most 160 pixels. A RAW file's JPEG preview comes
 * unchanged, at whatever size; a bitmap preview is encoded with red and blue swapped. "Unchanged" is
 * what LibRaw delivers, which adds an EXIF header with the orientation where there is none; the
 * latitude reference in it may differ from call to call.
 *
 * On success the host releases @p *data by lumvik_free_thumb(). On failure @p *data is null and
 * @p *size 0; but a null argument leaves both untouched, and -4 sets the size.
 *
 * @retval  0 @p *data points to @p *size bytes
 * @retval -1 null argument, or a file that cannot be read
 * @retval -2 the RAW file has no preview
 * @retval -3 the preview cannot be taken out, or is a bitmap of fewer bytes than three colors of
 *            8 bits take, or with a side of more than 65500 pixels
 * @retval -4 no memory for the bytes
 * @throws cv::Exception see Exceptions
 */
LUMVIK_API int lumvik_extract_thumbnail(const char* path, uint8_t** data, int* size);

/** Releases the bytes of lumvik_extract_thumbnail(). Null is ignored. */
LUMVIK_API void lumvik_free_thumb(void* data);

/**
 * Computes a 64-bit hash of how the picture looks, to find copies of it.
 *
 * The fewer bits differ between two hashes, the more alike the pictures; resizing, recompressing
 * and RAW against JPEG change few. Turning changes many: an ordinary image is turned upright by its
 * EXIF orientation, and so is a JPEG preview, but a bitmap preview lies as the sensor did.
 * On failure @p *hash is 0; a null argument leaves it untouched.
 *
 * @retval  0 computed
 * @retval -1 null argument, or a file that cannot be read
 * @retval -2 the RAW file has no preview
 * @retval -3 the preview cannot be taken out
 * @retval -4 the preview cannot be decoded, or is a bitmap of too few bytes
 * @throws cv::Exception see Exceptions
 */
LUMVIK_API int lumvik_phash(const char* path, uint64_t* hash);

/** @} */

#ifdef __cplusplus
}
#endif

#endif /* LUMVIK_H_ */
