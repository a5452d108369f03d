/**
 * @file lumvik.h
 * Reference manual and interface of lumvik, a photo-development engine.
 *
 * lumvik loads a photograph (a camera RAW file or an ordinary image), develops it with a set of
 * adjustments, returns previews, histograms, metadata and suggestions, cuts out the subject, and
 * writes the result as JPEG, PNG or TIFF. One EngineContext holds one photograph.
 *
 * New hosts should use lumvik_host.h, which drives this interface and adds checked handles, locking,
 * failures that are always statuses, safe files and a neutral start. This one is fixed: it trusts its
 * caller and lets exceptions through.
 *
 * @code{.c}
 * EngineContext* ctx = lumvik_create_context();
 * if (ctx == NULL) return 1;
 * int status = lumvik_load_arw(ctx, "in.arw", 1);
 * if (status == LUMVIK_OK) {
 *   lumvik_set_temperature(ctx, 6500.0f);  // neutral; the default after a load, 5500, tints the photograph
 *   lumvik_set_exposure(ctx, 0.5f);
 *   status = lumvik_export_jpeg(ctx, "out.jpg", 90, 0, 1);
 * }
 * if (status != LUMVIK_OK) fprintf(stderr, "%s\n", lumvik_last_error(ctx));
 * lumvik_destroy_context(ctx);
 * @endcode
 *
 * The rules on this page apply to every function; each function documents only what it adds to them.
 *
 * @par Status
 * Functions that return a status return 0 (LUMVIK_OK) on success and -1 on failure; a few report
 * further failures as -2, -3 or -4. On failure, outputs are not written unless stated otherwise.
 *
 * @par Null
 * With a null context or a null pointer argument, a function returns -1, stores no error text and
 * changes nothing. Functions without a status do nothing; lumvik_get_width() and lumvik_get_height()
 * return 0.
 *
 * @par Last error
 * Any other failure of a call on a context replaces the text returned by lumvik_last_error(), unless
 * the function says "no text". Success never clears it, so read it only after a failure. This manual
 * quotes the texts byte for byte.
 *
 * @par Stale render
 * A render develops the whole loaded image with all adjustments, and the context keeps the result.
 * lumvik_process() and lumvik_get_preview() always render. The exports and lumvik_get_histogram()
 * use the last render and make a new one only if it is stale. A load (even a failed one),
 * lumvik_unload() and lumvik_reset_adjustments() make it stale. <b>Setters never do</b>: after a
 * setter, an export still writes the last render, if there is one, until the host renders again.
 * lumvik_process(), lumvik_get_preview() and lumvik_get_histogram() make the render current. An
 * export does not: while the render is stale, every export renders again.
 *
 * @par Memory
 * Output buffers belong to the host. Paths and curve points are copied and need not outlive the call.
 * The host releases contexts with lumvik_destroy_context() and thumbnails with lumvik_free_thumb(),
 * and nothing else: not the strings returned by lumvik_version() and lumvik_last_error().
 *
 * @par Paths
 * NUL-terminated UTF-8. Photographs are read and exports written under exactly that name. EXIF is
 * read and copied through the C runtime, which receives the bytes unchanged. Where the runtime does
 * not take UTF-8 (Windows with another code page), this fails for a non-ASCII path:
 * lumvik_get_exif() uses its fallback, and an exported JPEG has no EXIF.
 *
 * @par Threads
 * There are no locks. Use a context from one thread at a time; different contexts, and the functions
 * without a context, may be used in parallel. A call may use worker threads, and returns when all
 * its work is done.
 *
 * @par Processes
 * A child process made with fork() may use the library, which works with one thread there. It may use
 * contexts of its parent only if no other thread was in a call when it was forked.
 *
 * @par Standard error
 * lumvik writes nothing to standard output or standard error. The codecs of ordinary images do, when
 * they decode a damaged file: libjpeg and libpng print a line, OpenCV a warning and the failure of a
 * codec that throws, such as that of TIFF. LibRaw's messages are turned off: a truncated RAW file or JPEG
 * loads without any sign, its missing part black or of one color.
 *
 * @par Exceptions
 * Exceptions thrown by the image library (cv::Exception) and the C++ runtime propagate to the caller;
 * they are not converted to a status. The context is then as it was before the call, without an error
 * text, and can be used or destroyed; lumvik_get_preview() and lumvik_get_histogram() keep a render
 * they had already made. A C host cannot catch exceptions and should avoid their causes:
 * - a render with a positive sharpening amount and a sharpening radius that is not positive;
 * - an export to a path without a "." (std::out_of_range) or with an extension no encoder knows;
 * - lumvik_export_subject_png() when mask and render differ in size;
 * - adjustments that are not finite or lie far outside their documented range;
 * - running out of memory (except in lumvik_create_context(), which returns null).
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

/** Success. The failure codes are described under Status in lumvik.h. */
enum { LUMVIK_OK = 0 };

/** One photograph with its adjustments, last render, subject mask and last error. Opaque. */
typedef struct EngineContext EngineContext;

/** Does nothing and returns 0. The library needs no initialization. */
LUMVIK_API int lumvik_init(void);

/** Does nothing. Contexts stay valid. */
LUMVIK_API void lumvik_shutdown(void);

/** The version of this header: major, minor, patch. Compare with lumvik_version(). */
#define LUMVIK_VERSION_MAJOR 1
#define LUMVIK_VERSION_MINOR 0 /**< See LUMVIK_VERSION_MAJOR. */
#define LUMVIK_VERSION_PATCH 0 /**< See LUMVIK_VERSION_MAJOR. */

/** Returns the static string "1.0.0". */
LUMVIK_API const char* lumvik_version(void);

/**
 * Creates a context: no image, default adjustments, no mask, last error "".
 * Returns null if memory is exhausted. Release it with lumvik_destroy_context().
 */
LUMVIK_API EngineContext* lumvik_create_context(void);

/** Destroys @p ctx and everything it holds. Null is ignored. */
LUMVIK_API void lumvik_destroy_context(EngineContext* ctx);

/**
 * Returns the text of the latest failure on @p ctx, "" if there was none, "null context" for null.
 * The pointer is valid until the next call that fails on @p ctx or destroys it; copy the text to keep it.
 */
LUMVIK_API const char* lumvik_last_error(EngineContext* ctx);

/**
 * Returns the width in pixels of the image a viewer would show now.
 * That is the width of the last render while it is current, otherwise that of the loaded image; 0
 * without one. A crop counts only after lumvik_process(), lumvik_get_preview() or
 * lumvik_get_histogram() has rendered it; an export does not change the result.
 */
LUMVIK_API int lumvik_get_width(EngineContext* ctx);

/** Returns the height in pixels; see lumvik_get_width(). */
LUMVIK_API int lumvik_get_height(EngineContext* ctx);

/** @} */

/**
 * @defgroup lumvik_loading Loading
 * @{
 */

/**
 * Loads the photograph at @p path, replacing the one loaded before.
 *
 * Despite the function's name, the file may be an ordinary image or a RAW file of any make. The
 * extension decides: ".jpg", ".jpeg", ".png", ".tif", ".tiff", ".bmp" and ".webp" (in any case) are
 * ordinary images; everything else goes to the RAW decoder. The size of the image held in memory is,
 * before cropping, the size of every render and export.
 *
 * - Ordinary image: decoded to 8-bit color (higher bit depths reduced, gray expanded to color, alpha
 *   dropped), turned upright by its EXIF orientation, reduced to a long side of at most 4096 pixels.
 * - RAW: sRGB, as-shot white balance, a fixed base curve that lifts the mid-tones (0.5 becomes 0.58).
 *   @p quality, clamped to 1..4, trades detail for speed: 1 decodes at full resolution, 2 and 3 at
 *   half, both reduced to a long side of at most 2000 pixels; 4 at a quarter, at most 1000. Time and
 *   memory of each are in docs/performance.md: 1 takes 3 to 4 times the time of 2.
 *
 * Both are upright: RAW files are turned by the orientation that the camera recorded. Both are taken for
 * sRGB: a color profile embedded in an ordinary image is ignored.
 *
 * Success resets the adjustments as lumvik_reset_adjustments() does. The subject mask and the
 * background blur are kept, although they belong to the previous image. Failure keeps the previous
 * image and its adjustments but makes its render stale; so does an exception.
 *
 * @retval  0 loaded
 * @retval -1 Ordinary image missing or not decodable: "OpenCV could not read: " followed by the path
 *            as given. RAW file: "LibRaw open_file failed: " (also if missing),
 *            "LibRaw unpack failed: ", "LibRaw dcraw_process failed: " or
 *            "LibRaw dcraw_make_mem_image failed: ", followed by LibRaw's message.
 * @throws cv::Exception see Exceptions
 */
LUMVIK_API int lumvik_load_arw(EngineContext* ctx, const char* path, int quality);

/**
 * Removes image, render and path from the context.
 * Adjustments, last error, subject mask and background blur are kept.
 */
LUMVIK_API void lumvik_unload(EngineContext* ctx);

/** @} */

/**
 * @defgroup lumvik_developing Developing and reading back
 * @{
 */

/** The number of bins in each histogram. */
enum { LUMVIK_HISTOGRAM_BINS = 256 };

/**
 * Renders the loaded image with the current adjustments and makes the render current.
 *
 * @retval  0 rendered
 * @retval -1 "no image loaded"
 * @throws cv::Exception see Exceptions
 */
LUMVIK_API int lumvik_process(EngineContext* ctx);

/**
 * Renders like lumvik_process() and copies the result to @p out as 8-bit RGBA.
 *
 * Rows run from top to bottom without padding: width x height x 4 bytes for the rendered size, with
 * alpha 255. @p capacity is the size of @p out in bytes. If it is too small, the render is current
 * nevertheless, so lumvik_get_width() and lumvik_get_height() then return the size to allocate;
 * calling lumvik_process() first to find out costs a second render.
 *
 * With a subject mask and lumvik_set_bg_blur() above 0, the background is blurred, in this copy only.
 * A mask of a different size is stretched to fit the preview.
 *
 * @retval  0 copied
 * @retval -1 "no image loaded", "pipeline produced empty result" or "output buffer too small"
 * @throws cv::Exception see Exceptions
 */
LUMVIK_API int lumvik_get_preview(EngineContext* ctx, uint8_t* out, int capacity);

/**
 * Counts the pixels of the render by 8-bit level, for each channel and for luminance.
 *
 * Each array has LUMVIK_HISTOGRAM_BINS entries that sum to width x height. Luminance is
 * 0.2126 R + 0.7152 G + 0.0722 B. Renders only if the render is stale, and makes it current.
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
 * Unknown values are 0 or "", unknown coordinates NaN. Every string is NUL-terminated. "Fallback"
 * refers to the second source of lumvik_get_exif().
 */
typedef struct ExifInfo {
  char make[64];        /**< Camera maker. */
  char model[64];       /**< Camera model. */
  char lens[128];       /**< Lens model; fallback: "". */
  float focal_length;   /**< Millimeters. */
  float f_number;       /**< F-number, or computed from the APEX aperture. */
  float exposure_time;  /**< Seconds, or computed from the APEX shutter speed. */
  int32_t iso;          /**< ISO speed. */
  char datetime[32];    /**< Capture time as stored ("2024:05:31 18:20:00"); fallback: "". */
  int32_t width;        /**< Pixels, from the EXIF tag (SHORT or LONG); fallback: as held in memory. */
  int32_t height;       /**< Same as width. */
  int32_t orientation;  /**< EXIF code, 1 to 8; fallback: LibRaw's code, 0, 3, 5 or 6. Do not apply. */
  int32_t reserved;     /**< 0. */
  double gps_latitude;  /**< Degrees, south negative; fallback: NaN. */
  double gps_longitude; /**< Degrees, west negative; fallback: NaN. */
} ExifInfo;

/** @cond */
#if defined(__cplusplus)
#define LUMVIK_STATIC_ASSERT(condition, text) static_assert(condition, text)
#elif defined(__STDC_VERSION__) && __STDC_VERSION__ >= 201112L
#define LUMVIK_STATIC_ASSERT(condition, text) _Static_assert(condition, text)
#else /* Before C11 there is no static assertion: redeclare the struct instead. */
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
 * Reads the shooting data of the loaded file, which is opened again.
 *
 * If the file is gone or has no EXIF that libexif can load, @p info is filled from what the RAW
 * decoder reported (the fallback); for an ordinary image all of it is then unknown.
 *
 * @c orientation describes the file. The image in memory, its previews and exports are upright already:
 * applying it would turn them twice.
 *
 * @retval  0 filled
 * @retval -1 "no file loaded"
 */
LUMVIK_API int lumvik_get_exif(EngineContext* ctx, ExifInfo* info);

/** @} */

/**
 * @defgroup lumvik_export Export
 * These functions write the render at its own size and without alpha; see Stale render in lumvik.h.
 *
 * The extension of the path chooses the encoder, not the function: lumvik_export_jpeg() to "a.png"
 * writes a PNG. The extension starts at the last "." of the whole path, folders included.
 *
 * An existing file is replaced. It is not touched before encoding has succeeded; a write that fails
 * midway leaves it truncated.
 * @{
 */

/**
 * Writes 8 bits per channel.
 *
 * @p quality is clamped to 1..100; @p reserved is ignored. If @p keep_exif is not 0 and a JPEG is
 * written, the EXIF block of the loaded file replaces the JFIF and EXIF headers of the new one. It is
 * copied with its orientation and size tags, although the pixels may have been rotated and resized.
 * The status does not depend on whether it could be copied. A block of more than 65533 bytes is
 * written with a wrong length.
 *
 * @retval  0 written
 * @retval -1 "no image loaded" or "JPEG write failed"
 * @throws std::out_of_range for a path without a "."
 * @throws cv::Exception for an unknown extension; see Exceptions
 */
LUMVIK_API int lumvik_export_jpeg(EngineContext* ctx, const char* path, int quality, int reserved,
                                  int keep_exif);

/**
 * Writes 16 bits per channel if @p bit_depth is 16, otherwise 8.
 *
 * @retval  0 written
 * @retval -1 "no image loaded" or "PNG write failed"
 * @throws std::out_of_range for a path without a "."
 * @throws cv::Exception for an unknown extension; see Exceptions
 */
LUMVIK_API int lumvik_export_png(EngineContext* ctx, const char* path, int bit_depth);

/**
 * Writes 16 bits per channel.
 *
 * @retval  0 written
 * @retval -1 "no image loaded" or "TIFF write failed"
 * @throws std::out_of_range for a path without a "."
 * @throws cv::Exception for an unknown extension; see Exceptions
 */
LUMVIK_API int lumvik_export_tiff(EngineContext* ctx, const char* path);

/** @} */

/**
 * @defgroup lumvik_adjustments Adjustments
 * How the image is developed. Setters only store a value: they do not check, clamp or render, and do
 * not make the render stale.
 *
 * Each setter documents unit, normal range and default. Values outside the range are used as they
 * are; pass finite values. "Percent" means -100 to 100 unless stated otherwise. Levels are on a scale
 * from 0 (black) to 1 (white) of the gamma-encoded image. Distances are in pixels of the loaded
 * image, so the same setting covers relatively more of a smaller one.
 *
 * Order of a render: white balance, exposure, brightness, highlights and shadows, whites and
 * blacks, contrast, tone curves, clarity and texture, dehaze, saturation and vibrance, hue bands,
 * split toning, noise reduction, sharpening, lens corrections (distortion, chromatic aberration,
 * vignetting, defringe), geometry (flips, rotation, perspective, crop), vignette, grain.
 * @{
 */

/**
 * Restores the default of every adjustment and makes the render stale.
 * The image, the mask and lumvik_set_bg_blur() are kept. All four tone curves become exactly linear.
 */
LUMVIK_API void lumvik_reset_adjustments(EngineContext* ctx);

/**
 * Exposure in stops: 1 doubles, -1 halves. Default 0; useful from -5 to 5, and suggested values lie
 * between -0.25 and 1. At -10 everything is black in 8 bits, at 16 what is not black is nearly white;
 * from 128 on everything is black.
 * Any value except 0 also rolls off levels above 0.75, which desaturates them: with a value near 0,
 * white becomes 0.875.
 */
LUMVIK_API void lumvik_set_exposure(EngineContext* ctx, float stops);

/** Brightness of the mid-tones, by a power law. Percent, default 0; black and white do not move. */
LUMVIK_API void lumvik_set_brightness(EngineContext* ctx, float percent);

/**
 * Contrast, by an S-curve around 0.5: positive is steeper. Percent, default 0.
 * Not the identity near 0: any other value, however small, moves black to about 0.083 and white to
 * 0.917. Pure black and white are reached again only from about 31 % up.
 */
LUMVIK_API void lumvik_set_contrast(EngineContext* ctx, float percent);

/**
 * Brightens (positive) or darkens luminance above 0.45, bright tones more. Percent, default 0.
 * -100 halves white.
 */
LUMVIK_API void lumvik_set_highlights(EngineContext* ctx, float percent);

/** Lifts (positive) or darkens luminance below 0.55, dark tones more. Percent, default 0. */
LUMVIK_API void lumvik_set_shadows(EngineContext* ctx, float percent);

/**
 * Moves the white point. Percent, default 0.
 * Positive values <b>darken</b> (100 maps white to 0.83), negative ones brighten and clip.
 */
LUMVIK_API void lumvik_set_whites(EngineContext* ctx, float percent);

/**
 * Moves the black point. Percent, default 0.
 * Positive values clip dark tones (100 maps 0.1 to black), negative ones lift them (-100 maps black
 * to 0.09).
 */
LUMVIK_API void lumvik_set_blacks(EngineContext* ctx, float percent);

/**
 * White-balance temperature: higher is warmer. Kelvin, clamped to 1667..25000 on use, default 5500.
 * <b>Neutral is 6500, not the default</b>: colors are unchanged only within 1 of 6500 with a tint
 * within 0.1 of 0. At 5500, red and blue are multiplied by about 1.14 and 1.13; just outside the
 * neutral zone by 1.27 and 0.96. Below about 3500 almost no red remains.
 */
LUMVIK_API void lumvik_set_temperature(EngineContext* ctx, float kelvin);

/**
 * White-balance tint, -150 to 150, default 0. Positive is magenta (green x 0.85 at 150).
 * From 0.1 up, in either direction, red and blue are multiplied as well; see lumvik_set_temperature().
 */
LUMVIK_API void lumvik_set_tint(EngineContext* ctx, float tint);

/** Color intensity. Percent, default 0; -100 gives gray, 100 doubles. */
LUMVIK_API void lumvik_set_saturation(EngineContext* ctx, float percent);

/** Color intensity of muted colors. Percent, default 0; saturated colors are unchanged. */
LUMVIK_API void lumvik_set_vibrance(EngineContext* ctx, float percent);

/** Tone curves. */
enum {
  LUMVIK_CURVE_MASTER = 0, /**< All three channels, before their own curves. */
  LUMVIK_CURVE_RED = 1,
  LUMVIK_CURVE_GREEN = 2,
  LUMVIK_CURVE_BLUE = 3
};

/**
 * Sets one tone curve, a spline through @p count points. Default: none, which is exactly linear.
 *
 * @p points holds x0, y0, x1, y1, ...: 2 x @p count floats, input and output level, 0 to 1. Pass them
 * in ascending order of x: they are neither sorted nor checked. With null points, fewer than 2 points
 * or a channel outside 0..3 the call is ignored and the old curve stays.
 *
 * A curve of the two points (0, 0), (1, 1) counts as linear only while all four curves are linear.
 * Next to any other curve it is a mild S (0.25 becomes 0.203, 0.75 becomes 0.797).
 */
LUMVIK_API void lumvik_set_tone_curve(EngineContext* ctx, int channel, const float* points, int count);

/**
 * Sets one tone curve to (0, 0), (1, 1): an S next to another curve, see lumvik_set_tone_curve().
 * Only lumvik_reset_adjustments() and loading restore the exactly linear default. A channel outside
 * 0..3 is ignored.
 */
LUMVIK_API void lumvik_reset_tone_curve(EngineContext* ctx, int channel);

/** Local contrast at a scale of about 20 pixels. Percent, default 0; negative softens. */
LUMVIK_API void lumvik_set_clarity(EngineContext* ctx, float percent);

/** Local contrast at a scale of about 3 pixels. Percent, default 0; negative softens. */
LUMVIK_API void lumvik_set_texture(EngineContext* ctx, float percent);

/**
 * Removes haze. 0 to 100 percent, default 0; negative values do nothing, and no value adds haze.
 * Strong settings clip the haziest areas to 0 or 1.
 */
LUMVIK_API void lumvik_set_dehaze(EngineContext* ctx, float percent);

/** Hue bands and their centers. */
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
 * The effect of a band falls off from its center to zero at a distance of 32.4 degrees; where bands
 * overlap, their shifts add up. A luminance of 100 adds 0.5 to the lightness. Grays never change. A
 * band outside 0..7 is ignored.
 */
LUMVIK_API void lumvik_set_hsl(EngineContext* ctx, int band, float hue, float saturation, float luminance);

/** Zones of split toning. */
enum { LUMVIK_ZONE_HIGHLIGHTS = 0, LUMVIK_ZONE_SHADOWS = 1 };

/**
 * Tints the bright tones (zone 0) or the dark tones (any other zone).
 * @p hue in degrees, 0 to 360; @p saturation 0 to 100 percent. Off if both saturations are 0. All
 * defaults 0.
 *
 * @p balance, in percent, applies to both zones but is stored <b>by zone 0 only</b>; positive favors
 * the highlights. Hues are interpolated linearly from 0 to 360, not around the circle: near 0 or 360
 * a mixed color may pass through all other hues.
 */
LUMVIK_API void lumvik_set_split_toning(EngineContext* ctx, int zone, float hue, float saturation,
                                        float balance);

/**
 * Reduces luminance noise. 0 to 100 percent, default 0; negative is off.
 * The kernel grows from 3 to 13 pixels in steps of 20 %.
 */
LUMVIK_API void lumvik_set_nr_luminance(EngineContext* ctx, float percent);

/**
 * Reduces color noise by blurring all channels, including detail. 0 to 100 percent, default 0;
 * negative is off. The kernel grows from 3 to 11 pixels in steps of 25 %.
 */
LUMVIK_API void lumvik_set_nr_color(EngineContext* ctx, float percent);

/** Strength of sharpening, 0 to 150, default 0; negative is off. 150 adds all of the detail. */
LUMVIK_API void lumvik_set_sharpening_amount(EngineContext* ctx, float amount);

/**
 * Radius of sharpening, a Gaussian sigma. Pixels, positive, default 1; useful from 0.5 to 3. Below about 0.3
 * nothing is sharpened; above some 10 the effect is local contrast. More than 4096 counts as 4096.
 * <b>With a positive amount and a radius of 0 or less, every render throws cv::Exception.</b>
 */
LUMVIK_API void lumvik_set_sharpening_radius(EngineContext* ctx, float pixels);

/** Detail up to @p level is not sharpened. 0 to 65535, default 0. */
LUMVIK_API void lumvik_set_sharpening_threshold(EngineContext* ctx, float level);

/** Radial distortion. Percent, default 0; positive corrects barrel distortion. */
LUMVIK_API void lumvik_set_distortion(EngineContext* ctx, float percent);

/**
 * Corrects lateral color fringes. 0 to 100 percent, default 0; negative is off.
 * 100 enlarges red and shrinks blue by 0.3 % around the center, leaving a thin border without blue.
 */
LUMVIK_API void lumvik_set_ca_correction(EngineContext* ctx, float percent);

/** Brightens the corners, by a factor of 1.5 at 100. 0 to 100 percent, default 0; negative is off. */
LUMVIK_API void lumvik_set_lens_vignette(EngineContext* ctx, float percent);

/**
 * Desaturates strong purple (hues 234 to 306 degrees) and green (90 to 144), at 100 to half the
 * saturation. 0 to 100 percent, default 0; negative is off. Acts on all such colors, not only along
 * edges.
 */
LUMVIK_API void lumvik_set_defringe(EngineContext* ctx, float percent);

/** Flips the image horizontally if @p flip is not 0. Default 0. */
LUMVIK_API void lumvik_set_flip_h(EngineContext* ctx, int flip);

/** Flips the image vertically if @p flip is not 0. Default 0. */
LUMVIK_API void lumvik_set_flip_v(EngineContext* ctx, int flip);

/**
 * Rotates the image around its center. Degrees, positive is counter-clockwise, default 0.
 * Meant for leveling, up to some 45 degrees. Any angle works, and full turns count as 0, but the size never
 * changes: a quarter turn cuts off the ends of the long side. Mirrored content fills the corners and should
 * be cropped away.
 */
LUMVIK_API void lumvik_set_rotation(EngineContext* ctx, float degrees);

/**
 * Keystone: positive narrows the top and widens the bottom, at 100 by 15 % of the width on each side.
 * Percent, default 0. Mirrored content fills uncovered areas.
 */
LUMVIK_API void lumvik_set_perspective_h(EngineContext* ctx, float percent);

/**
 * Squeeze: positive moves the top edge down and the bottom edge up, at 100 by 15 % of the height.
 * Percent, default 0. Mirrored content fills uncovered areas.
 */
LUMVIK_API void lumvik_set_perspective_v(EngineContext* ctx, float percent);

/**
 * Crops to a rectangle, in fractions of width and height of the rotated image. Default 0, 0, 0, 0.
 * @p x and @p y are the top left corner. The rectangle is clipped at the right and bottom edges; a negative
 * @p x or @p y counts as 0, which moves the rectangle inward with its size.
 * Nothing is cropped if @p w or @p h is 0 or less, if @p x and @p y are 0 and @p w and @p h at least
 * 0.99, or if the result would be <b>less than 11 pixels</b> wide or high.
 */
LUMVIK_API void lumvik_set_crop(EngineContext* ctx, float x, float y, float w, float h);

/**
 * Vignette of the cropped frame. Percent, default 0.
 * <b>Brightens towards white for either sign</b>; no value darkens.
 */
LUMVIK_API void lumvik_set_vignette_amount(EngineContext* ctx, float percent);

/** Where the vignette starts, from the center (0) to the edge (100). Percent, default 50. */
LUMVIK_API void lumvik_set_vignette_midpoint(EngineContext* ctx, float percent);

/** Shape of the vignette: a rectangle at -100, an ellipse from 0 to 100. Percent, default 0. */
LUMVIK_API void lumvik_set_vignette_roundness(EngineContext* ctx, float percent);

/**
 * Adds monochrome grain. 0 to 100 percent, default 0; negative is off. At 100 its standard deviation
 * is 0.05 of full scale. <b>Not seeded</b>: the grain differs from render to render.
 */
LUMVIK_API void lumvik_set_grain_amount(EngineContext* ctx, float percent);

/** Grain size, 0 (single pixels) to 100 (a sigma of 2.5 pixels), default 25. */
LUMVIK_API void lumvik_set_grain_size(EngineContext* ctx, float percent);

/** @} */

/**
 * @defgroup lumvik_auto Automatic tools
 * These functions analyze the loaded image before development and suggest values. They neither read
 * nor change adjustments: the host passes the values it accepts to the setters.
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
 * Suggests a complete set of adjustments: LUMVIK_ENHANCE_SLOTS floats.
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
 * Slots 16 to 31 are 0 and unused.
 *
 * <b>Do not apply slot 12</b>: with the amount in slot 11, a radius of 0 makes every render throw an
 * exception. Leave the sharpening radius as it is.
 *
 * @retval  0 suggested
 * @retval -1 "no image loaded"
 * @throws cv::Exception see Exceptions
 */
LUMVIK_API int lumvik_auto_enhance(EngineContext* ctx, float* slots);

/**
 * Suggests a 3:2 landscape crop, in the fractions of lumvik_set_crop().
 * It is found in a copy 512 pixels wide and leaves a margin along every edge: 2 % of the side of that copy,
 * rounded down to whole pixels. That is between 1 and 2 %, and nothing if the copy is less than 50 pixels
 * high. If no crop fits, it is 0, 0, 1, 1.
 *
 * @retval  0 suggested
 * @retval -1 "no image loaded"
 * @throws cv::Exception see Exceptions
 */
LUMVIK_API int lumvik_auto_crop(EngineContext* ctx, float* x, float* y, float* w, float* h);

/**
 * Measures the tilt of the lines within 30 degrees of horizontal. Degrees, -30 to 30.
 * Positive if they rise to the right, 0 if there are none. Since lumvik_set_rotation() turns
 * counter-clockwise, pass it the <b>negated</b> value to level the image.
 *
 * @retval  0 measured
 * @retval -1 "no image loaded"
 * @throws cv::Exception see Exceptions
 */
LUMVIK_API int lumvik_auto_straighten(EngineContext* ctx, float* angle);

/** @} */

/**
 * @defgroup lumvik_subject Subject
 * A mask of the photographed subject: 8 bits, 255 on the subject, 0 on the background, with a soft
 * edge a few pixels wide. It is computed from the RAW image before development, at its size.
 *
 * The mask stays until the next successful segmentation: loads, lumvik_unload() and resets keep it,
 * although it belongs to the previous image, and geometry adjustments do not move it.
 * @{
 */

/**
 * Finds the subject around a point and stores the mask. RAW files only.
 *
 * The point is given in fractions of width and height of the loaded image: before crop, rotation and any
 * other geometry, unlike a point that a user picks in a preview. A negative value or NaN means the center.
 * The subject is searched for in a rectangle around it of 60 % of each side, clipped at the image border.
 * Failure keeps the previous mask. The render does not become stale.
 *
 * @retval  0 found
 * @retval -1 "no image loaded", also if an ordinary image is loaded
 * @retval -2 "GrabCut failed": the rectangle is empty (a point beyond 1.3, a tiny image) or the
 *            segmentation itself failed
 * @throws cv::Exception see Exceptions
 */
LUMVIK_API int lumvik_segment_subject(EngineContext* ctx, float subject_x, float subject_y);

/**
 * Copies the mask to @p out: one byte per pixel, rows from top to bottom without padding.
 *
 * Its size is that of the image it was made from: what lumvik_get_width() and lumvik_get_height()
 * returned right after that load, not the size of a cropped render. @p capacity is the size of
 * @p out in bytes.
 *
 * @retval  0 copied
 * @retval -1 "no segmentation mask — call lumvik_segment_subject first"
 * @retval -2 @p capacity is too small; no text
 */
LUMVIK_API int lumvik_get_mask(EngineContext* ctx, uint8_t* out, int capacity);

/**
 * Blurs the background in previews (never in exports) if there is a mask. 0 to 100 percent, default 0.
 * The value is clamped; NaN becomes 100. Resets and loads keep it.
 */
LUMVIK_API void lumvik_set_bg_blur(EngineContext* ctx, float percent);

/**
 * Writes the render with the mask as alpha, 8 bits per channel. The extension chooses the encoder, as
 * in Export, so the path must end in ".png".
 *
 * The mask must have the size of the render: do not crop, and segment the image that is loaded.
 *
 * @retval  0 written
 * @retval -1 "no segmentation mask"
 * @retval -2 "failed to write PNG"
 * @throws std::out_of_range for a path without a "."
 * @throws cv::Exception for an unknown extension, if mask and render differ in size, and if there is
 *         a mask but no image is loaded; see Exceptions
 */
LUMVIK_API int lumvik_export_subject_png(EngineContext* ctx, const char* path);

/** @} */

/**
 * @defgroup lumvik_paths Path-only tools
 * These functions read a file without a context. Failures are distinguished by status; there is no
 * text. The extension decides what is an ordinary image, as in lumvik_load_arw(); of a RAW file only
 * the embedded preview is read.
 * @{
 */

/**
 * Makes a small JPEG of an ordinary image, or extracts the preview of a RAW file.
 *
 * An ordinary image is reduced to a long side of at most 160 pixels. A JPEG preview of a RAW file is
 * returned unchanged, whatever its size; a bitmap preview is encoded with red and blue swapped.
 * "Unchanged" means as LibRaw delivers it: LibRaw adds an EXIF header with the orientation where there
 * is none, and the latitude reference in that header may differ from call to call.
 *
 * On success, release @p *data with lumvik_free_thumb(). On failure @p *data is null and @p *size 0,
 * except that a null argument leaves both untouched and -4 sets the size.
 *
 * @retval  0 @p *data points to @p *size bytes
 * @retval -1 null argument, or a file that cannot be read
 * @retval -2 the RAW file has no preview
 * @retval -3 the preview cannot be extracted, is a bitmap with fewer bytes than its size takes at 8
 *            bits in three channels, or has a side of more than 65500 pixels
 * @retval -4 out of memory
 * @throws cv::Exception see Exceptions
 */
LUMVIK_API int lumvik_extract_thumbnail(const char* path, uint8_t** data, int* size);

/** Releases the data of lumvik_extract_thumbnail(). Null is ignored. */
LUMVIK_API void lumvik_free_thumb(void* data);

/**
 * Computes a 64-bit perceptual hash, for finding copies of a photograph.
 *
 * The fewer bits differ between two hashes, the more similar the images. Resizing, recompression and
 * RAW versus JPEG change few bits. Rotation changes many: ordinary images and JPEG previews are turned
 * upright by their EXIF orientation, but a bitmap preview keeps the orientation of the sensor.
 * On failure @p *hash is 0; a null argument leaves it untouched.
 *
 * @retval  0 computed
 * @retval -1 null argument, or a file that cannot be read
 * @retval -2 the RAW file has no preview
 * @retval -3 the preview cannot be extracted
 * @retval -4 the preview cannot be decoded, or is a bitmap with too few bytes
 * @throws cv::Exception see Exceptions
 */
LUMVIK_API int lumvik_phash(const char* path, uint64_t* hash);

/** @} */

#ifdef __cplusplus
}
#endif

#endif /* LUMVIK_H_ */
