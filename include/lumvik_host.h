/**
 * @file lumvik_host.h
 * Reference manual and interface of the host library of lumvik (liblumvik_host).
 *
 * The library is what an application, a language binding or a service builds on. It drives the engine
 * (lumvik.h) and adds what every host needs: failures that are always statuses, handles that are checked,
 * photographs that may be used from any thread, develop settings that describe themselves and are read from
 * and written to files, previews of any size, safe files, metadata, color profiles and checks for damaged
 * files.
 *
 * @code{.c}
 * lumvik_host_photo* photo = NULL;
 * lumvik_host_settings* settings = NULL;
 * lumvik_host_status status = lumvik_host_open("in.arw", NULL, &photo);
 * if (status == LUMVIK_HOST_OK) status = lumvik_host_settings_create(&settings);
 * if (status == LUMVIK_HOST_OK) status = lumvik_host_settings_set_number(settings, "exposure", 0.5f);
 * if (status == LUMVIK_HOST_OK) status = lumvik_host_set_settings(photo, settings);
 * if (status == LUMVIK_HOST_OK) status = lumvik_host_save(photo, "out.jpg", NULL);
 * if (status != LUMVIK_HOST_OK) fprintf(stderr, "%s\n", lumvik_host_last_error());
 * lumvik_host_settings_close(settings);
 * lumvik_host_close(photo);
 * @endcode
 *
 * The rules on this page apply to every function; each function documents only what it adds to them.
 *
 * @par Status
 * Functions return a ::lumvik_host_status unless stated otherwise. On failure, outputs are not written
 * unless stated otherwise, and the objects involved are as they were before the call. No exception leaves
 * the library, and no misuse that it can see ends the process.
 *
 * @par Error text
 * Every failure sets the text of the calling thread, lumvik_host_last_error(), and for a call on a photo
 * also the text of that photo, lumvik_host_get_error(). The text is one sentence for a person: what failed,
 * on which file, and the cause as the system or the decoder reported it. Success does not clear it.
 *
 * @par Null
 * A null pointer gives ::LUMVIK_HOST_INVALID_ARGUMENT, except where an argument is documented as optional.
 *
 * @par Handles
 * ::lumvik_host_photo and ::lumvik_host_settings are handles, not addresses: a null, closed or made-up
 * handle gives ::LUMVIK_HOST_INVALID_HANDLE. The value of a closed handle is never used again. Closing null
 * does nothing.
 *
 * @par Memory
 * Output buffers and structs belong to the host. Arguments are copied and need not outlive the call. Texts
 * and data that a function returns through a pointer to a pointer are released with lumvik_host_free().
 * Constant strings belong to the library.
 *
 * @par Structs
 * The first field of a struct that may grow is @c struct_size, which the host sets to @c sizeof the struct;
 * a smaller one than the library has ever had gives ::LUMVIK_HOST_INVALID_ARGUMENT. In a struct of options,
 * zero selects the default, and a null pointer stands for a struct of zeros.
 *
 * @par Paths and texts
 * NUL-terminated UTF-8. A text that is not UTF-8 is accepted as a path where the system does.
 *
 * @par Threads
 * Every function may be called from any thread at any time. Calls on one photo, or on one settings object,
 * are served one after another in the order of their arrival, with the settings that the photo then had.
 * Setting and getting settings, posting, waiting and canceling do not wait for a render. Closing a photo
 * drops the renders that were posted, lets running calls end, and gives waiting ones
 * ::LUMVIK_HOST_INVALID_HANDLE.
 *
 * @par Processes
 * A child process made with fork() cannot use the handles of its parent (::LUMVIK_HOST_FORKED) but can open
 * photos itself.
 *
 * @par Standard error
 * The library writes nothing to standard output or standard error. The decoders that it uses may, for a
 * damaged image: libjpeg and libpng a line, OpenCV a warning and the failure of a codec.
 */
#ifndef LUMVIK_HOST_H_
#define LUMVIK_HOST_H_

#include <stddef.h>
#include <stdint.h>

/** @cond */
#if defined(_WIN32)
#if defined(LUMVIK_HOST_BUILDING)
#define LUMVIK_HOST_API __declspec(dllexport)
#else
#define LUMVIK_HOST_API __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define LUMVIK_HOST_API __attribute__((visibility("default")))
#else
#define LUMVIK_HOST_API
#endif
/** @endcond */

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @defgroup lumvik_host_general Statuses and texts
 * @{
 */

/** The version of this header: major, minor, patch. Compare with lumvik_host_version(). */
#define LUMVIK_HOST_VERSION_MAJOR 1
#define LUMVIK_HOST_VERSION_MINOR 0 /**< See LUMVIK_HOST_VERSION_MAJOR. */
#define LUMVIK_HOST_VERSION_PATCH 0 /**< See LUMVIK_HOST_VERSION_MAJOR. */

/** How a call ended. */
typedef enum lumvik_host_status {
  LUMVIK_HOST_OK = 0,               /**< Success. */
  LUMVIK_HOST_INVALID_ARGUMENT = 1, /**< A null pointer, a value out of range, an unknown key. */
  LUMVIK_HOST_INVALID_HANDLE = 2,   /**< A null, closed or made-up handle, or one of another kind. */
  LUMVIK_HOST_FORKED = 3,           /**< A handle of the parent process. */
  LUMVIK_HOST_NOT_FOUND = 4,        /**< No such file, folder or preset. */
  LUMVIK_HOST_NOT_A_PHOTOGRAPH = 5, /**< Neither a RAW file nor an image of a known format. */
  LUMVIK_HOST_DAMAGED = 6,          /**< A file that is truncated or corrupt. */
  LUMVIK_HOST_UNSUPPORTED = 7,   /**< Not possible for this photo, or the module for it is not installed. */
  LUMVIK_HOST_OUT_OF_MEMORY = 8, /**< Memory is exhausted. */
  LUMVIK_HOST_CANCELED = 9,      /**< Dropped by lumvik_host_cancel() or lumvik_host_close(). */
  LUMVIK_HOST_STALE = 10,        /**< A posted render that a newer one replaced. */
  LUMVIK_HOST_TIMED_OUT = 11,    /**< A wait ended before what it waited for. */
  LUMVIK_HOST_BUFFER_TOO_SMALL = 12, /**< The output buffer does not hold the result. */
  LUMVIK_HOST_EXISTS = 13,           /**< The file exists and overwriting was not requested. */
  LUMVIK_HOST_ACCESS_DENIED = 14,    /**< The system denies access to the file or folder. */
  LUMVIK_HOST_DISK_FULL = 15,        /**< No space left, a quota or a file-size limit. */
  LUMVIK_HOST_IO_ERROR = 16,         /**< Another failure of the file system. */
  LUMVIK_HOST_INTERNAL = 17          /**< An unexpected failure in the engine or a library; see the text. */
} lumvik_host_status;

/** Returns the version of the library, such as "1.0.0". */
LUMVIK_HOST_API const char* lumvik_host_version(void);

/** Returns the version of the engine that the library uses. */
LUMVIK_HOST_API const char* lumvik_host_engine_version(void);

/** Returns a short name, such as "not_found"; "unknown" for a value that is no status. */
LUMVIK_HOST_API const char* lumvik_host_status_name(int32_t status);

/**
 * Returns the text of the latest failure in the calling thread, "" if there was none. Never null; valid
 * until the next failing call in this thread.
 */
LUMVIK_HOST_API const char* lumvik_host_last_error(void);

/**
 * Releases a text or data returned by this library. Null, and an address that the library did not return or
 * that was released before, is ignored.
 */
LUMVIK_HOST_API void lumvik_host_free(void* memory);

/** @} */

/**
 * @defgroup lumvik_host_settings_group Develop settings
 *
 * A settings object holds a value for some of the settings; every other setting has its neutral value, which
 * leaves the photograph as the camera rendered it. Settings are named by keys such as "exposure" or
 * "hsl.red.hue". Everything known about a setting is in its description, so that a page, a binding or a
 * command line can be made from the list alone.
 * @{
 */

/** Develop settings. A handle. */
typedef struct lumvik_host_settings lumvik_host_settings;

/** The kind of a setting. Numbers, bands and zones have a float. */
typedef enum lumvik_host_setting_kind {
  LUMVIK_HOST_NUMBER = 0, /**< A number in a range. */
  LUMVIK_HOST_FLAG = 1,   /**< True or false. */
  LUMVIK_HOST_CURVE = 2,  /**< Points (x, y) in 0 to 1, in ascending order of x; no points: linear. */
  LUMVIK_HOST_BAND = 3,   /**< A number for one of eight bands of hue. */
  LUMVIK_HOST_ZONE = 4    /**< A number for the highlights or the shadows. */
} lumvik_host_setting_kind;

/** The description of a setting. */
typedef struct lumvik_host_setting_info {
  uint32_t struct_size; /**< Set by the host. */
  int32_t kind;         /**< A ::lumvik_host_setting_kind. */
  const char* key;      /**< Such as "hsl.red.hue". */
  const char* label;    /**< For a person: "Red hue". */
  const char* group;    /**< For a person: "Color". Settings of one group follow one another. */
  const char* unit;     /**< "stops", "kelvin", "percent", "degrees", "pixels", "fraction" or "". */
  const char* help;     /**< One sentence. */
  float minimum;        /**< For numbers; 0 otherwise. */
  float maximum;        /**< For numbers; 1 for a flag. */
  float neutral_value;  /**< What a setting without a value has: no effect on the photograph. */
  float engine_value;   /**< What the engine has after loading; differs for the temperature only. */
} lumvik_host_setting_info;

/** Returns the number of settings. */
LUMVIK_HOST_API size_t lumvik_host_setting_count(void);

/** Describes the setting with this index, in the order of a settings file. */
LUMVIK_HOST_API lumvik_host_status lumvik_host_describe_setting(size_t index, lumvik_host_setting_info* info);

/** Finds the index of a setting by its key. Unknown keys give ::LUMVIK_HOST_INVALID_ARGUMENT. */
LUMVIK_HOST_API lumvik_host_status lumvik_host_find_setting(const char* key, size_t* index);

/**
 * Describes all settings as a JSON array of objects with the fields of ::lumvik_host_setting_info; kinds are
 * the names "number", "flag", "curve", "band" and "zone".
 */
LUMVIK_HOST_API lumvik_host_status lumvik_host_describe_settings_json(char** json);

/** Makes an object without values: neutral. Release it with lumvik_host_settings_close(). */
LUMVIK_HOST_API lumvik_host_status lumvik_host_settings_create(lumvik_host_settings** settings);

/** Makes an object with the same values. */
LUMVIK_HOST_API lumvik_host_status lumvik_host_settings_copy(lumvik_host_settings* settings,
                                                             lumvik_host_settings** copy);

/** Closes the handle. Null is ignored. */
LUMVIK_HOST_API lumvik_host_status lumvik_host_settings_close(lumvik_host_settings* settings);

/** Removes all values. */
LUMVIK_HOST_API lumvik_host_status lumvik_host_settings_clear(lumvik_host_settings* settings);

/** Gives every setting the value that the engine has after loading. */
LUMVIK_HOST_API lumvik_host_status lumvik_host_settings_set_engine_values(lumvik_host_settings* settings);

/** Sets @p *has to 1 if the object has a value for the setting, otherwise 0. */
LUMVIK_HOST_API lumvik_host_status lumvik_host_settings_has(lumvik_host_settings* settings, const char* key,
                                                            int32_t* has);

/** Removes the value of a setting. */
LUMVIK_HOST_API lumvik_host_status lumvik_host_settings_remove(lumvik_host_settings* settings,
                                                               const char* key);

/** Sets a number. A value outside its range, or NaN, gives ::LUMVIK_HOST_INVALID_ARGUMENT. */
LUMVIK_HOST_API lumvik_host_status lumvik_host_settings_set_number(lumvik_host_settings* settings,
                                                                   const char* key, float value);

/** Gets a number, the neutral one if the object has none. */
LUMVIK_HOST_API lumvik_host_status lumvik_host_settings_get_number(lumvik_host_settings* settings,
                                                                   const char* key, float* value);

/** Sets a flag; any @p value but 0 is true. */
LUMVIK_HOST_API lumvik_host_status lumvik_host_settings_set_flag(lumvik_host_settings* settings,
                                                                 const char* key, int32_t value);

/** Gets a flag as 0 or 1. */
LUMVIK_HOST_API lumvik_host_status lumvik_host_settings_get_flag(lumvik_host_settings* settings,
                                                                 const char* key, int32_t* value);

/**
 * Sets a tone curve: @p count points as x and y in turn, each in 0 to 1, in ascending order of x. 0 points
 * make it linear (@p points may then be null); otherwise there are 2 to 1024.
 */
LUMVIK_HOST_API lumvik_host_status lumvik_host_settings_set_curve(lumvik_host_settings* settings,
                                                                  const char* key, const float* points,
                                                                  size_t count);

/**
 * Copies a tone curve to @p points, which holds @p capacity points, and sets @p *count. @p *count is also set
 * with ::LUMVIK_HOST_BUFFER_TOO_SMALL. @p points may be null if @p capacity is 0.
 */
LUMVIK_HOST_API lumvik_host_status lumvik_host_settings_get_curve(lumvik_host_settings* settings,
                                                                  const char* key, float* points,
                                                                  size_t capacity, size_t* count);

/** Takes over every value that @p other has. */
LUMVIK_HOST_API lumvik_host_status lumvik_host_settings_merge(lumvik_host_settings* settings,
                                                              lumvik_host_settings* other);

/** Removes the values that are neutral: what is left is what differs from the neutral look. */
LUMVIK_HOST_API lumvik_host_status lumvik_host_settings_remove_neutral(lumvik_host_settings* settings);

/** Sets @p *equal to 1 if both develop a photograph alike: all values are equal, neutral where not held. */
LUMVIK_HOST_API lumvik_host_status lumvik_host_settings_equal(lumvik_host_settings* settings,
                                                              lumvik_host_settings* other, int32_t* equal);

/** Writes the values as JSON, in the format of a settings file. */
LUMVIK_HOST_API lumvik_host_status lumvik_host_settings_to_json(lumvik_host_settings* settings, char** json);

/**
 * Makes an object from JSON of @p size bytes. Text that is not a settings file, up to 256 KiB, gives
 * ::LUMVIK_HOST_INVALID_ARGUMENT and a text with line and key. A file of version 1 without a temperature
 * has that of the engine, 5500, with which it was made.
 */
LUMVIK_HOST_API lumvik_host_status lumvik_host_settings_from_json(const char* json, size_t size,
                                                                  lumvik_host_settings** settings);

/** Reads a settings file; see lumvik_host_settings_from_json(). */
LUMVIK_HOST_API lumvik_host_status lumvik_host_settings_read(const char* path,
                                                             lumvik_host_settings** settings);

/** Writes a settings file, as lumvik_host_write_file() does. */
LUMVIK_HOST_API lumvik_host_status lumvik_host_settings_write(lumvik_host_settings* settings,
                                                              const char* path, int32_t overwrite);

/**
 * Finds the file with develop settings next to a photograph: for "a/IMG.ARW" and the extension ".lumvik.json"
 * it is "a/IMG.ARW.lumvik.json", else "a/IMG.lumvik.json". Without one, @p *sidecar is null and the status
 * is ::LUMVIK_HOST_OK.
 */
LUMVIK_HOST_API lumvik_host_status lumvik_host_find_sidecar(const char* photograph, const char* extension,
                                                            char** sidecar);

/**
 * Imports the Camera Raw settings of an XMP file, or of a photograph: from the XMP file next to it, else from
 * its own metadata. @p report (optional) is a JSON object: "file", where they were found, and "properties",
 * with "name", "value", "outcome" ("taken", "scaled" or "ignored"), "key" and "note" for each. Needs the
 * metadata module. A file without such settings gives ::LUMVIK_HOST_NOT_FOUND.
 *
 * A temperature there is that of the light. It is taken relative to the white balance as shot, which is that
 * in the file or of the RAW file, for an XMP file that of the RAW file next to it; without one it is ignored.
 */
LUMVIK_HOST_API lumvik_host_status lumvik_host_settings_import_xmp(const char* path,
                                                                   lumvik_host_settings** settings,
                                                                   char** report);

/**
 * Writes the values as an XMP packet with Camera Raw properties. What has no counterpart there is kept in
 * the namespace "lumvik", so that a packet read back gives the same values.
 */
LUMVIK_HOST_API lumvik_host_status lumvik_host_settings_to_xmp(lumvik_host_settings* settings, char** xmp);

/**
 * Lists the presets in a folder: the names of its settings files, without ".json", as a sorted JSON array.
 * A null @p folder is the user's own, "lumvik/presets" in the folder for configuration; if it does not exist,
 * the list is empty.
 */
LUMVIK_HOST_API lumvik_host_status lumvik_host_list_presets(const char* folder, char** names);

/** Reads a preset: a settings file that holds only the settings it is about. Merge it to apply it. */
LUMVIK_HOST_API lumvik_host_status lumvik_host_read_preset(const char* folder, const char* name,
                                                           lumvik_host_settings** settings);

/**
 * Writes a preset and, if necessary, its folder. A name is UTF-8, has no slash, backslash or colon, and does
 * not start with a dot.
 */
LUMVIK_HOST_API lumvik_host_status lumvik_host_write_preset(const char* folder, const char* name,
                                                            lumvik_host_settings* settings,
                                                            int32_t overwrite);

/** @} */

/**
 * @defgroup lumvik_host_photo_group Photographs
 * @{
 */

/** An open photograph with its settings and its latest render. A handle. */
typedef struct lumvik_host_photo lumvik_host_photo;

/** The formats of photographs, recognized by content. */
typedef enum lumvik_host_format {
  LUMVIK_HOST_FORMAT_UNKNOWN = 0, /**< Not a photograph. */
  LUMVIK_HOST_FORMAT_RAW = 1,     /**< A camera RAW file. */
  LUMVIK_HOST_FORMAT_JPEG = 2,    /**< JPEG. */
  LUMVIK_HOST_FORMAT_PNG = 3,     /**< PNG. */
  LUMVIK_HOST_FORMAT_TIFF = 4,    /**< TIFF, but not a RAW file based on it. */
  LUMVIK_HOST_FORMAT_BMP = 5,     /**< Windows bitmap. */
  LUMVIK_HOST_FORMAT_WEBP = 6     /**< WebP. */
} lumvik_host_format;

/** How to open a photograph. */
typedef struct lumvik_host_open_options {
  uint32_t struct_size; /**< Set by the host. */
  int32_t quality;      /**< Of a RAW file: 1 full size (default), 2 and 3 half, 4 a quarter of the size. */
  int32_t proxy_first;  /**< Not 0: open at quality 4 and load @c quality in the background. */
  int32_t keep_colors;  /**< Not 0: do not convert an image with an embedded profile to sRGB. */
} lumvik_host_open_options;

/** What is known of an open photograph. */
typedef struct lumvik_host_photo_info {
  uint32_t struct_size; /**< Set by the host. */
  int32_t format;       /**< A ::lumvik_host_format. */
  int32_t width;        /**< Pixels of the image held in memory, upright and before cropping. */
  int32_t height;       /**< See width. */
  int32_t quality;      /**< The quality of the image held in memory. */
  int32_t is_proxy;     /**< 1 while a better one is being loaded. */
  int32_t is_converted; /**< 1 if the colors were converted to sRGB. */
  char profile[128];    /**< The description of the embedded profile; "" without one. */
} lumvik_host_photo_info;

/**
 * Opens the photograph at @p path. Its settings are neutral. Formats are recognized by content, whatever the
 * name. An image with an ICC profile other than sRGB is converted to sRGB (relative colorimetric intent with
 * black-point compensation).
 *
 * Release it with lumvik_host_close(). A damaged file that can be decoded in part is opened: see
 * lumvik_host_check().
 */
LUMVIK_HOST_API lumvik_host_status lumvik_host_open(const char* path, const lumvik_host_open_options* options,
                                                    lumvik_host_photo** photo);

/** Opens a photograph in memory. The @p size bytes are copied. */
LUMVIK_HOST_API lumvik_host_status lumvik_host_open_bytes(const void* data, size_t size,
                                                          const lumvik_host_open_options* options,
                                                          lumvik_host_photo** photo);

/**
 * Closes the handle; see Threads. Waits for running callbacks and for a load in the background. May be called
 * from a callback of this photo, and then does not wait for callbacks. Null is ignored.
 */
LUMVIK_HOST_API lumvik_host_status lumvik_host_close(lumvik_host_photo* photo);

/**
 * Copies the text of the latest failure on @p photo, "" if there was none, to @p text, with a terminating
 * NUL.
 * @p capacity is its size in bytes; a longer text is cut off.
 */
LUMVIK_HOST_API lumvik_host_status lumvik_host_get_error(lumvik_host_photo* photo, char* text,
                                                         size_t capacity);

/** Describes the photo. */
LUMVIK_HOST_API lumvik_host_status lumvik_host_get_info(lumvik_host_photo* photo,
                                                        lumvik_host_photo_info* info);

/**
 * Loads a RAW file again at another quality, 1 to 4. Settings stay, the subject mask does not. Other formats
 * have no quality: nothing happens.
 */
LUMVIK_HOST_API lumvik_host_status lumvik_host_set_quality(lumvik_host_photo* photo, int32_t quality);

/**
 * Gets what could not be used while opening and saving the photo, such as a damaged color profile or damaged
 * EXIF: one sentence per line, "" if everything was. The photo is developed without it. The warnings of
 * opening stay; those of a save replace those of the save before it. Maker notes, of which nothing is kept,
 * give none. Release @p *warnings with lumvik_host_free().
 */
LUMVIK_HOST_API lumvik_host_status lumvik_host_get_warnings(lumvik_host_photo* photo, char** warnings);

/**
 * Waits until a photo opened with @c proxy_first has its full quality, at most @p milliseconds; a negative
 * value waits without limit. Returns the failure if the load failed; the proxy then stays. A subject mask
 * found meanwhile does not.
 */
LUMVIK_HOST_API lumvik_host_status lumvik_host_wait_for_quality(lumvik_host_photo* photo,
                                                                int32_t milliseconds);

/** Sets the settings; null makes them neutral. Nothing is rendered. */
LUMVIK_HOST_API lumvik_host_status lumvik_host_set_settings(lumvik_host_photo* photo,
                                                            lumvik_host_settings* settings);

/** Gets a copy of the settings. */
LUMVIK_HOST_API lumvik_host_status lumvik_host_get_settings(lumvik_host_photo* photo,
                                                            lumvik_host_settings** settings);

/** How to make a preview. */
typedef struct lumvik_host_preview_options {
  uint32_t struct_size;  /**< Set by the host. */
  int32_t max_width;     /**< The preview is reduced to fit, keeping its proportions, by averaging areas. */
  int32_t max_height;    /**< 0: no limit. Previews are never enlarged. */
  int32_t channels;      /**< 4 for RGBA (default), with alpha 255, or 3 for RGB. */
  size_t stride;         /**< Bytes from row to row; 0: width x channels. */
  float background_blur; /**< Percent, 0 to 100: blur around the subject, if one was found. */
  int32_t blue_first;    /**< Not 0: BGRA or BGR, the order of Windows bitmaps. */
} lumvik_host_preview_options;

/** Renders now, unless the latest render has these settings. */
LUMVIK_HOST_API lumvik_host_status lumvik_host_render(lumvik_host_photo* photo);

/** Gets the size of a preview in pixels. Renders if necessary. */
LUMVIK_HOST_API lumvik_host_status lumvik_host_get_preview_size(lumvik_host_photo* photo,
                                                                const lumvik_host_preview_options* options,
                                                                int32_t* width, int32_t* height);

/**
 * Copies a preview to @p pixels: 8 bits per channel, rows from top to bottom. Renders if necessary.
 * @p capacity is the size of @p pixels in bytes; the last row needs no padding. The size in pixels is written
 * to @p width and @p height (optional) also with ::LUMVIK_HOST_BUFFER_TOO_SMALL.
 */
LUMVIK_HOST_API lumvik_host_status lumvik_host_get_preview(lumvik_host_photo* photo,
                                                           const lumvik_host_preview_options* options,
                                                           uint8_t* pixels, size_t capacity, int32_t* width,
                                                           int32_t* height);

/** The number of bins of a histogram. */
enum { LUMVIK_HOST_HISTOGRAM_BINS = 256 };

/** The pixels of a render by 8-bit level. Every array sums to the number of pixels. */
typedef struct lumvik_host_histogram {
  uint32_t red[256];       /**< Of the red channel. */
  uint32_t green[256];     /**< Of the green channel. */
  uint32_t blue[256];      /**< Of the blue channel. */
  uint32_t luminance[256]; /**< 0.2126 R + 0.7152 G + 0.0722 B. */
} lumvik_host_histogram;

/** Counts the pixels of the render. Renders if necessary. */
LUMVIK_HOST_API lumvik_host_status lumvik_host_get_histogram(lumvik_host_photo* photo,
                                                             lumvik_host_histogram* histogram);

/** @} */

/**
 * @defgroup lumvik_host_posting Rendering in the background
 * Each photo has one worker thread, started by the first post. At most one render waits: posting replaces
 * it, so that a preview follows a slider at the speed of the machine. A newer render is never followed by an
 * older one.
 * @{
 */

/** A finished render, valid until the callback returns. */
typedef struct lumvik_host_frame {
  uint32_t struct_size;  /**< Set by the library. */
  int32_t status;        /**< ::LUMVIK_HOST_OK, or why there are no pixels: stale, canceled or a failure. */
  uint64_t ticket;       /**< From lumvik_host_post(). */
  int32_t width;         /**< Pixels; 0 without pixels. */
  int32_t height;        /**< See width. */
  int32_t channels;      /**< 4 or 3. */
  int32_t blue_first;    /**< 1 for BGRA or BGR, 0 for RGBA or RGB. */
  size_t stride;         /**< Bytes from row to row. */
  const uint8_t* pixels; /**< Rows from top to bottom; null without pixels. */
  const char* error;     /**< The text of the failure; "" on success. */
} lumvik_host_frame;

/**
 * Receives each posted render once. Frames with pixels arrive one at a time; the notice that a render is
 * stale or canceled may arrive while another callback runs. Must not throw. May call every function.
 */
typedef void (*lumvik_host_callback)(const lumvik_host_frame* frame, void* user);

/**
 * Posts a render with these settings, which become those of the photo, and returns at once. Null @p settings
 * keep the present ones. @p callback (optional) is called with the preview on the worker thread, or with
 * the status ::LUMVIK_HOST_STALE or ::LUMVIK_HOST_CANCELED on the thread that replaced or dropped it.
 * @p *ticket (optional) identifies the render; tickets of a photo ascend.
 */
LUMVIK_HOST_API lumvik_host_status lumvik_host_post(lumvik_host_photo* photo, lumvik_host_settings* settings,
                                                    const lumvik_host_preview_options* options,
                                                    lumvik_host_callback callback, void* user,
                                                    uint64_t* ticket);

/**
 * Waits until the render with this ticket ended, at most @p milliseconds; a negative value waits without
 * limit. Returns how it ended: ::LUMVIK_HOST_OK, ::LUMVIK_HOST_STALE, ::LUMVIK_HOST_CANCELED or a failure.
 * Ticket 0 is the latest; one that was not posted gives ::LUMVIK_HOST_INVALID_ARGUMENT.
 *
 * The callback of the render has returned by then, except if the call is made in a callback. In a callback
 * with pixels, a wait for a later render gives ::LUMVIK_HOST_TIMED_OUT at once, since the worker is busy with
 * it.
 */
LUMVIK_HOST_API lumvik_host_status lumvik_host_wait(lumvik_host_photo* photo, uint64_t ticket,
                                                    int32_t milliseconds);

/** Drops the waiting render, if there is one. A running one ends. */
LUMVIK_HOST_API lumvik_host_status lumvik_host_cancel(lumvik_host_photo* photo);

/** @} */

/**
 * @defgroup lumvik_host_tools Suggestions and subject
 * @{
 */

/** What to suggest; combine with "or". */
enum {
  LUMVIK_HOST_SUGGEST_EXPOSURE = 1,      /**< Exposure. */
  LUMVIK_HOST_SUGGEST_WHITE_BALANCE = 2, /**< Temperature and tint. */
  LUMVIK_HOST_SUGGEST_ENHANCEMENT = 4,   /**< Tone, color and detail. */
  LUMVIK_HOST_SUGGEST_CROP = 8,          /**< A 3:2 landscape crop. */
  LUMVIK_HOST_SUGGEST_ROTATION = 16      /**< Levels near-horizontal lines. */
};

/** Analyzes the photo and makes an object with the suggested values only. The photo stays as it is. */
LUMVIK_HOST_API lumvik_host_status lumvik_host_suggest(lumvik_host_photo* photo, uint32_t what,
                                                       lumvik_host_settings** settings);

/**
 * Finds the subject around a point and keeps its mask. RAW files only; others give ::LUMVIK_HOST_UNSUPPORTED.
 * The point is in fractions of the preview as developed, 0 to 1 from the top left corner; it is mapped back
 * through crop, rotation, perspective and flips. A negative value means the center of the image before
 * cropping.
 */
LUMVIK_HOST_API lumvik_host_status lumvik_host_find_subject(lumvik_host_photo* photo, float x, float y);

/**
 * Copies the mask: one byte per pixel, 255 on the subject, rows from top to bottom without padding. It has
 * the size of the image in memory, before cropping, which is written to @p width and @p height also with
 * ::LUMVIK_HOST_BUFFER_TOO_SMALL. Without a mask the status is ::LUMVIK_HOST_NOT_FOUND.
 */
LUMVIK_HOST_API lumvik_host_status lumvik_host_get_mask(lumvik_host_photo* photo, uint8_t* mask,
                                                        size_t capacity, int32_t* width, int32_t* height);

/** @} */

/**
 * @defgroup lumvik_host_saving Saving
 * A file appears under its name only when it is complete: it is written next to it and renamed. An existing
 * file is replaced only as @c overwrite allows, and keeps its permissions. A path through a symbolic link
 * replaces the file that the link refers to.
 *
 * A host can leave a mark in the images that it writes: a text that it chooses, kept as an XMP property next
 * to a digest of the file. The mark is intact until the file changes, so that a host knows its own results
 * from files that anyone else wrote or edited.
 * @{
 */

/** Which existing files may be replaced. */
typedef enum lumvik_host_overwrite {
  LUMVIK_HOST_OVERWRITE_NONE = 0,  /**< None: an existing file gives ::LUMVIK_HOST_EXISTS. */
  LUMVIK_HOST_OVERWRITE_ANY = 1,   /**< Any file. */
  LUMVIK_HOST_OVERWRITE_MARKED = 2 /**< A file with an intact mark, as checked just before replacing it. */
} lumvik_host_overwrite;

/** What becomes of the photograph's metadata. */
typedef enum lumvik_host_metadata_policy {
  LUMVIK_HOST_METADATA_KEEP = 0,        /**< EXIF, IPTC and XMP about the shot and its author. */
  LUMVIK_HOST_METADATA_NO_POSITION = 1, /**< The same without GPS data. */
  LUMVIK_HOST_METADATA_NONE = 2         /**< No metadata. */
} lumvik_host_metadata_policy;

/** How to save a render. */
typedef struct lumvik_host_save_options {
  uint32_t struct_size;  /**< Set by the host. */
  int32_t format;        /**< JPEG, PNG or TIFF of ::lumvik_host_format; 0: by the extension. */
  int32_t quality;       /**< Of a JPEG: 1 to 100, default 90. */
  int32_t bits;          /**< Per channel: 8 (default) or 16 for PNG, 8 for JPEG, 16 for TIFF. */
  int32_t max_width;     /**< The image is reduced to fit, keeping its proportions; 0: no limit. */
  int32_t max_height;    /**< See max_width. */
  int32_t metadata;      /**< A ::lumvik_host_metadata_policy. Anything but NONE needs the metadata module. */
  int32_t overwrite;     /**< A ::lumvik_host_overwrite. */
  int32_t no_profile;    /**< Not 0: attach no color profile. */
  const char* copyright; /**< Set as the copyright notice; null keeps that of the photograph. */
  const char* mark;      /**< Left in the file: up to 1,000 bytes, no control characters; null for none. */
} lumvik_host_save_options;

/** Returns the format for the extension of a path, in any case: .jpg, .jpeg, .png, .tif or .tiff; else 0. */
LUMVIK_HOST_API int32_t lumvik_host_format_of(const char* path);

/** Returns the preferred extension of an output format with its dot; null for what cannot be written. */
LUMVIK_HOST_API const char* lumvik_host_extension_of(int32_t format);

/**
 * Renders if necessary and writes the result to @p path. The attached profile is sRGB. If the
 * photograph was opened with @c keep_colors, it is that of the photograph; one that is damaged or not for RGB
 * images is replaced by sRGB, and one too large for the format left out, see lumvik_host_get_warnings().
 *
 * Metadata of the photograph that is damaged, or too long for the format, is left out, see
 * lumvik_host_get_warnings().
 *
 * An extension that is unknown or contradicts @c format, and a bit depth that the format does not have, give
 * ::LUMVIK_HOST_INVALID_ARGUMENT. If metadata cannot be kept because the metadata module is not installed,
 * the status is ::LUMVIK_HOST_UNSUPPORTED and nothing is written.
 */
LUMVIK_HOST_API lumvik_host_status lumvik_host_save(lumvik_host_photo* photo, const char* path,
                                                    const lumvik_host_save_options* options);

/** Like lumvik_host_save(), to memory; @c format must be set. Release @p *data with lumvik_host_free(). */
LUMVIK_HOST_API lumvik_host_status lumvik_host_save_bytes(lumvik_host_photo* photo,
                                                          const lumvik_host_save_options* options,
                                                          uint8_t** data, size_t* size);

/**
 * Writes the subject on a transparent background as an 8-bit PNG. Of the options only @c overwrite, @c
 * no_profile and @c mark count. Without a mask the status is ::LUMVIK_HOST_NOT_FOUND; settings that move
 * pixels give ::LUMVIK_HOST_UNSUPPORTED and a text that names the setting.
 */
LUMVIK_HOST_API lumvik_host_status lumvik_host_save_cutout(lumvik_host_photo* photo, const char* path,
                                                           const lumvik_host_save_options* options);

/** Writes @p size bytes to a file. @p overwrite is a ::lumvik_host_overwrite. */
LUMVIK_HOST_API lumvik_host_status lumvik_host_write_file(const char* path, const void* data, size_t size,
                                                          int32_t overwrite);

/**
 * Writes pixels as an 8-bit PNG: 1 (gray), 3 (RGB) or 4 (RGBA) channels, rows without padding. Of the options
 * only @c overwrite and @c mark count.
 */
LUMVIK_HOST_API lumvik_host_status lumvik_host_write_png(const char* path, const uint8_t* pixels,
                                                         int32_t width, int32_t height, int32_t channels,
                                                         const lumvik_host_save_options* options);

/**
 * Reads the mark of an image, which is intact: a file without one, or one that changed since it was written,
 * gives ::LUMVIK_HOST_NOT_FOUND. Release @p *mark with lumvik_host_free().
 */
LUMVIK_HOST_API lumvik_host_status lumvik_host_read_mark(const char* path, char** mark);

/** @} */

/**
 * @defgroup lumvik_host_files Files
 * @{
 */

/** Shooting data. Unknown numbers are 0, unknown texts "", unknown coordinates NaN. */
typedef struct lumvik_host_exif {
  uint32_t struct_size; /**< Set by the host. */
  int32_t iso;          /**< ISO speed. */
  char make[64];        /**< Camera maker. */
  char model[64];       /**< Camera model. */
  char lens[128];       /**< Lens model. */
  char datetime[32];    /**< Capture time as stored: "2024:05:31 18:20:00". */
  float focal_length;   /**< Millimeters. */
  float f_number;       /**< F-number. */
  float exposure_time;  /**< Seconds. */
  int32_t orientation;  /**< EXIF code of the file, 1 to 8. Pixels are upright: do not apply it again. */
  int32_t width;        /**< Pixels at full size, as stored: before the orientation is applied. */
  int32_t height;       /**< See width. */
  double gps_latitude;  /**< Degrees, south negative. */
  double gps_longitude; /**< Degrees, west negative. */
  double as_shot_temperature; /**< Kelvin, of the white balance of a RAW file as shot; NaN if unknown. */
  double as_shot_tint; /**< The magenta that neutralizes it, 3000 x Duv of the light; NaN if unknown. */
} lumvik_host_exif;

/**
 * Reads the shooting data of the photo: from EXIF, and for a RAW file also from what LibRaw and, if it is
 * installed, the metadata module know.
 */
LUMVIK_HOST_API lumvik_host_status lumvik_host_get_exif(lumvik_host_photo* photo, lumvik_host_exif* exif);

/** The same for a file, without decoding it. */
LUMVIK_HOST_API lumvik_host_status lumvik_host_read_exif(const char* path, lumvik_host_exif* exif);

/** Whether a file is whole. */
typedef struct lumvik_host_integrity {
  uint32_t struct_size;   /**< Set by the host. */
  int32_t format;         /**< A ::lumvik_host_format. */
  int32_t is_whole;       /**< 1 if nothing is known to be missing or corrupt. */
  int32_t reserved;       /**< 0. */
  uint64_t missing_bytes; /**< How many bytes the file lacks at least; 0 if unknown. */
  char reason[256];       /**< What is missing or corrupt, for a person; "" if the file is whole. */
} lumvik_host_integrity;

/**
 * Checks whether the photograph is whole, which decodes it: data beyond the end of the file, missing end
 * markers, wrong checksums, and errors that the decoders report.
 *
 * @retval ::LUMVIK_HOST_OK whole; @p integrity is written
 * @retval ::LUMVIK_HOST_DAMAGED not whole; @p integrity is written nevertheless
 */
LUMVIK_HOST_API lumvik_host_status lumvik_host_check(lumvik_host_photo* photo,
                                                     lumvik_host_integrity* integrity);

/** The same for a file. */
LUMVIK_HOST_API lumvik_host_status lumvik_host_check_file(const char* path, lumvik_host_integrity* integrity);

/** Recognizes the format of a file by its content. */
LUMVIK_HOST_API lumvik_host_status lumvik_host_identify(const char* path, int32_t* format);

/**
 * Reads the size of the photograph at @p path in pixels, as stored, without decoding it; of a RAW file the
 * full size. A header that is damaged gives ::LUMVIK_HOST_DAMAGED.
 */
LUMVIK_HOST_API lumvik_host_status lumvik_host_read_size(const char* path, int32_t* width, int32_t* height);

/**
 * Identifies the content of a file by its size and its first and last 64 KiB, whatever its name and times:
 * two photographs never have the same fingerprint in practice, nor have two versions of one.
 */
LUMVIK_HOST_API lumvik_host_status lumvik_host_fingerprint(const char* path, uint64_t* fingerprint);

/** How to make a thumbnail. */
typedef struct lumvik_host_thumbnail_options {
  uint32_t struct_size; /**< Set by the host. */
  int32_t max_width;    /**< If this or max_height is not 0, the thumbnail is upright and reduced to fit. */
  int32_t max_height;   /**< 0: no limit. */
  int32_t metadata;     /**< A ::lumvik_host_metadata_policy. */
  const char* mark;     /**< See ::lumvik_host_save_options. */
} lumvik_host_thumbnail_options;

/**
 * Makes a JPEG for overviews. Without a size limit it is at most 160 pixels wide and high for an ordinary
 * image, and the embedded preview of a RAW file in its own size. With one, it has the same size for all
 * kinds: an ordinary image is decoded, and the preview of a RAW file reduced; neither is enlarged.
 *
 * The metadata is that of the photograph, to the extent that @c metadata keeps it; without the metadata
 * module there is none but the orientation. A RAW file without a preview gives ::LUMVIK_HOST_UNSUPPORTED.
 * Release @p *data with lumvik_host_free(). @p width and @p height (optional) are the size in pixels, as
 * stored.
 */
LUMVIK_HOST_API lumvik_host_status lumvik_host_extract_thumbnail(const char* path,
                                                                 const lumvik_host_thumbnail_options* options,
                                                                 uint8_t** data, size_t* size, int32_t* width,
                                                                 int32_t* height);

/** Computes a 64-bit perceptual hash: the fewer bits differ, the more similar are the photographs. */
LUMVIK_HOST_API lumvik_host_status lumvik_host_hash(const char* path, uint64_t* hash);

/**
 * Returns ::LUMVIK_HOST_OK if the metadata module is installed, otherwise ::LUMVIK_HOST_UNSUPPORTED and a
 * text with the reason. The module is a separate library, since it uses one with a license that would apply
 * to every host that links it. It is searched for in the folder named by the environment variable
 * LUMVIK_MODULES, in the subfolder "lumvik" of the folder of this library, and in that folder.
 */
LUMVIK_HOST_API lumvik_host_status lumvik_host_has_metadata_module(void);

/** @} */

#ifdef __cplusplus
}
#endif

#endif /* LUMVIK_HOST_H_ */
