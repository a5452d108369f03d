/**
 * @file lumvik.hpp
 * The C++17 interface of lumvik: lumvik.h with a class that owns the context, exceptions instead of
 * statuses, and results returned by value. Everything is inline; a host links the same as for lumvik.h. New
 * hosts should use lumvik_host.hpp.
 *
 * @code{.cpp}
 * lumvik::engine::Context photo;
 * photo.Load("in.arw");
 * photo.SetTemperature(6500);  // neutral; the default after a load, 5500, tints the photograph
 * photo.SetExposure(0.5F);
 * photo.ExportJpeg("out.jpg");
 * @endcode
 *
 * Each call is documented in detail at the function of lumvik.h that it wraps and is named after; units,
 * ranges and defaults of the adjustments are repeated here. Two rules of lumvik.h in short:
 *
 * - Setters only store a value. An export or a histogram uses the last render, if there has been one
 *   since the load: after a setter, call Process() or Preview() first.
 * - Use a Context from one thread at a time; different ones may be used in parallel.
 *
 * @par Errors
 * Where lumvik.h returns a status other than 0, lumvik::engine::Error is thrown. Where it lets an
 * exception propagate (for a path without an extension, for example), so does this interface: catch
 * std::exception to catch both. The context can be used afterwards.
 */
#ifndef LUMVIK_HPP_
#define LUMVIK_HPP_

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "lumvik.h"

/** The C++ interface. */
namespace lumvik::engine {

/** A failed call: its status, and its error text as what(). */
class Error : public std::runtime_error {
 public:
  /** From a status and a text of lumvik.h. */
  Error(int status, const std::string& text) : std::runtime_error(text), status_(status) {}

  /** The status returned by the function of lumvik.h, -1 to -4. */
  int status() const noexcept { return status_; }

 private:
  int status_;
};

/** An output buffer of the host. */
struct Bytes {
  /** @p count bytes starting at @p first. */
  Bytes(std::uint8_t* first, std::size_t count) : data(first), size(count) {}
  /** All elements of the vector. */
  Bytes(std::vector<std::uint8_t>& all) : data(all.data()), size(all.size()) {}  // NOLINT: implicit by intent

  std::uint8_t* data; /**< The first byte. */
  std::size_t size;   /**< The number of bytes. */
};

/** A size in pixels. */
struct Size {
  int width = 0;  /**< Columns. */
  int height = 0; /**< Rows. */
};

/** An image with 8 bits per channel; rows from top to bottom, without padding. */
struct Image {
  int width = 0;                  /**< Columns. */
  int height = 0;                 /**< Rows. */
  int channels = 0;               /**< 4: red, green, blue, alpha; 1: a mask. */
  std::vector<std::uint8_t> data; /**< width x height x channels bytes. */
};

/** Pixel counts by level. Each array sums to width x height of the render. */
struct Histogram {
  /** The number of pixels at each level, 0 to 255. */
  using Bins = std::array<std::uint32_t, LUMVIK_HISTOGRAM_BINS>;

  Bins red;       /**< Red. */
  Bins green;     /**< Green. */
  Bins blue;      /**< Blue. */
  Bins luminance; /**< 0.2126 R + 0.7152 G + 0.0722 B. */
};

/** A rectangle, in fractions (0 to 1) of width and height. */
struct Crop {
  float x = 0; /**< The left edge. */
  float y = 0; /**< The top edge. */
  float w = 0; /**< The width. */
  float h = 0; /**< The height. */
};

/** The result of Context::AutoWhiteBalance(). */
struct WhiteBalance {
  float temperature = 5500; /**< Kelvin. */
  float tint = 0;           /**< -150 to 150; positive is magenta. */
};

/** The result of Context::AutoEnhance(); each value is for the setter of the same name. */
struct Enhancement {
  float exposure;             /**< Stops, -0.25 to 1. */
  float brightness;           /**< 0 percent. */
  float contrast;             /**< -15 to 28 percent. */
  float highlights;           /**< -40 to 0 percent. */
  float shadows;              /**< 15 to 25 percent. */
  float whites;               /**< 0 percent. */
  float blacks;               /**< 5 percent. */
  float temperature;          /**< 6500 kelvin. */
  float tint;                 /**< 0. */
  float saturation;           /**< 5 percent. */
  float vibrance;             /**< 16 percent. */
  float sharpening_amount;    /**< 6 of 150. */
  float sharpening_threshold; /**< 0. */
  float nr_luminance;         /**< 0 to 35 percent. */
  float nr_color;             /**< 1 percent. */
};

/** A point of a tone curve; levels from 0 to 1. */
struct CurvePoint {
  float x; /**< The input level. */
  float y; /**< The output level. */
};

/** The tone curves. */
enum class Curve {
  kMaster = LUMVIK_CURVE_MASTER, /**< All three channels, before their own curves. */
  kRed = LUMVIK_CURVE_RED,
  kGreen = LUMVIK_CURVE_GREEN,
  kBlue = LUMVIK_CURVE_BLUE
};

/** The hue bands; lumvik.h lists their centers. */
enum class Band {
  kRed = LUMVIK_BAND_RED,
  kOrange = LUMVIK_BAND_ORANGE,
  kYellow = LUMVIK_BAND_YELLOW,
  kGreen = LUMVIK_BAND_GREEN,
  kAqua = LUMVIK_BAND_AQUA,
  kBlue = LUMVIK_BAND_BLUE,
  kPurple = LUMVIK_BAND_PURPLE,
  kMagenta = LUMVIK_BAND_MAGENTA
};

/** Decode quality of a RAW file; ordinary images are always decoded at full resolution. */
enum class RawQuality {
  kFull = 1,   /**< Full resolution, reduced to a long side of at most 2000 pixels. */
  kHalf = 2,   /**< Half resolution, likewise at most 2000 pixels. */
  kQuarter = 4 /**< A quarter of the resolution, at most 1000 pixels. */
};

/** Bits per channel of an exported PNG. */
enum class BitDepth { k8 = 8, k16 = 16 };

/** One photograph with its adjustments, last render and subject mask. Movable, not copyable. */
class Context {
 public:
  /** Nothing loaded, all adjustments at their defaults. @throws std::bad_alloc */
  Context() : context_(lumvik_create_context()) {
    if (!context_) throw std::bad_alloc();
  }

  /** False after a move from this object; calls that report errors then throw Error -1. */
  explicit operator bool() const noexcept { return context_ != nullptr; }

  /**
   * The size of the image a viewer would show now: of the last render while it is current, otherwise of the
   * loaded image; 0 without one.
   */
  Size size() const { return {lumvik_get_width(context_.get()), lumvik_get_height(context_.get())}; }

  /** The text of the latest failure, "" if there was none. Success does not clear it. */
  std::string LastError() const { return lumvik_last_error(context_.get()); }

  /** @name Loading
   * @{ */

  /**
   * Loads a RAW file or an ordinary image, depending on the extension, and resets the adjustments.
   * @throws Error -1: the file is missing or cannot be decoded; the previous image stays
   */
  void Load(const std::string& path, RawQuality quality = RawQuality::kFull) {
    Check(lumvik_load_arw(context_.get(), path.c_str(), static_cast<int>(quality)));
    loaded_size_ = size();
  }

  /** Unloads the image; adjustments, mask and background blur are kept. */
  void Unload() {
    lumvik_unload(context_.get());
    loaded_size_ = {};
  }

  /** The size of the loaded image before cropping, 0 without one. No render is larger. */
  Size loaded_size() const noexcept { return loaded_size_; }

  /** The shooting data of the loaded file. Images are upright whatever its orientation. @throws Error -1:
   * nothing is loaded */
  ExifInfo Exif() const {
    ExifInfo info = {};
    Check(lumvik_get_exif(context_.get(), &info));
    return info;
  }

  /** @}
   * @name Rendering
   * @{ */

  /** Renders with the current adjustments. @throws Error -1: nothing is loaded */
  void Process() { Check(lumvik_process(context_.get())); }

  /**
   * Renders and copies the result to @p rgba: 8-bit red, green, blue and alpha 255, rows from top to
   * bottom without padding. A buffer for loaded_size() is always large enough.
   * @return the size of the copied image
   * @throws Error -1: nothing is loaded, or @p rgba is too small for the size() of the new render
   */
  Size Preview(Bytes rgba) {
    std::uint8_t none = 0;
    Check(lumvik_get_preview(context_.get(), rgba.size == 0 ? &none : rgba.data, IntOf(rgba.size)));
    return size();
  }

  /** The same, returned as an image. */
  Image Preview() {
    Image image{0, 0, 4, std::vector<std::uint8_t>(PixelsOf(loaded_size_) * 4)};
    const Size rendered = Preview(image.data);
    image.data.resize(PixelsOf(rendered) * 4);
    image.width = rendered.width;
    image.height = rendered.height;
    return image;
  }

  /**
   * Counts the last render, or a new one if there has been none since the load.
   * @throws Error -1: nothing is loaded
   */
  Histogram GetHistogram() {
    Histogram counts;
    Check(lumvik_get_histogram(context_.get(), counts.red.data(), counts.green.data(), counts.blue.data(),
                               counts.luminance.data()));
    return counts;
  }

  /** @}
   * @name Export
   * The extension of the path chooses the format. A path without an extension, or with an unknown one,
   * throws an exception other than Error.
   * @{ */

  /**
   * Writes 8 bits per channel; @p quality is 1 to 100.
   * @throws Error -1: nothing is loaded, or the file cannot be written
   */
  void ExportJpeg(const std::string& path, int quality = 90, bool keep_exif = true) {
    Check(lumvik_export_jpeg(context_.get(), path.c_str(), quality, 0, keep_exif ? 1 : 0));
  }

  /** Writes 8 or 16 bits per channel. @throws Error -1: nothing is loaded, or the file cannot be written */
  void ExportPng(const std::string& path, BitDepth depth = BitDepth::k8) {
    Check(lumvik_export_png(context_.get(), path.c_str(), static_cast<int>(depth)));
  }

  /** Writes 16 bits per channel. @throws Error -1: nothing is loaded, or the file cannot be written */
  void ExportTiff(const std::string& path) { Check(lumvik_export_tiff(context_.get(), path.c_str())); }

  /** @}
   * @name Adjustments
   * Stored unchecked: pass finite values. Percent means -100 to 100, default 0, unless stated otherwise.
   * @{ */

  /** Restores the default of everything but the background blur. */
  void ResetAdjustments() { lumvik_reset_adjustments(context_.get()); }

  /** Stops; 1 doubles. Default 0, useful from -5 to 5. */
  void SetExposure(float stops) { lumvik_set_exposure(context_.get(), stops); }
  /** Percent; acts on the mid-tones. */
  void SetBrightness(float percent) { lumvik_set_brightness(context_.get(), percent); }
  /** Percent. */
  void SetContrast(float percent) { lumvik_set_contrast(context_.get(), percent); }
  /** Percent. */
  void SetHighlights(float percent) { lumvik_set_highlights(context_.get(), percent); }
  /** Percent. */
  void SetShadows(float percent) { lumvik_set_shadows(context_.get(), percent); }
  /** Percent; positive darkens. */
  void SetWhites(float percent) { lumvik_set_whites(context_.get(), percent); }
  /** Percent; positive clips dark tones. */
  void SetBlacks(float percent) { lumvik_set_blacks(context_.get(), percent); }

  /** Kelvin, 1667 to 25000, default 5500; 6500 is neutral. */
  void SetTemperature(float kelvin) { lumvik_set_temperature(context_.get(), kelvin); }
  /** -150 to 150, default 0; positive is magenta. */
  void SetTint(float tint) { lumvik_set_tint(context_.get(), tint); }
  /** Percent; -100 gives gray. */
  void SetSaturation(float percent) { lumvik_set_saturation(context_.get(), percent); }
  /** Percent; acts on muted colors. */
  void SetVibrance(float percent) { lumvik_set_vibrance(context_.get(), percent); }

  /** A spline through at least two points in ascending x; fewer are ignored. Default: exactly linear. */
  void SetToneCurve(Curve curve, const std::vector<CurvePoint>& points) {
    static_assert(sizeof(CurvePoint) == 2 * sizeof(float), "points are pairs of floats");
    if (points.empty()) return;
    lumvik_set_tone_curve(context_.get(), static_cast<int>(curve), &points.front().x, IntOf(points.size()));
  }
  /** The curve through (0, 0) and (1, 1): a mild S next to another curve. */
  void ResetToneCurve(Curve curve) { lumvik_reset_tone_curve(context_.get(), static_cast<int>(curve)); }

  /** Percent. */
  void SetClarity(float percent) { lumvik_set_clarity(context_.get(), percent); }
  /** Percent. */
  void SetTexture(float percent) { lumvik_set_texture(context_.get(), percent); }
  /** 0 to 100 percent. */
  void SetDehaze(float percent) { lumvik_set_dehaze(context_.get(), percent); }

  /** @p hue in degrees, -180 to 180, @p saturation and @p luminance in percent. */
  void SetHsl(Band band, float hue, float saturation, float luminance) {
    lumvik_set_hsl(context_.get(), static_cast<int>(band), hue, saturation, luminance);
  }
  /**
   * Tints the bright tones: @p hue 0 to 360 degrees, @p saturation 0 to 100 percent, default 0.
   * @p balance, in percent, applies to both tints; positive favors the highlights.
   */
  void SetSplitHighlights(float hue, float saturation, float balance = 0) {
    lumvik_set_split_toning(context_.get(), LUMVIK_ZONE_HIGHLIGHTS, hue, saturation, balance);
  }
  /** Tints the dark tones: @p hue 0 to 360 degrees, @p saturation 0 to 100 percent, default 0. */
  void SetSplitShadows(float hue, float saturation) {
    lumvik_set_split_toning(context_.get(), LUMVIK_ZONE_SHADOWS, hue, saturation, 0);
  }

  /** 0 to 100 percent. */
  void SetNrLuminance(float percent) { lumvik_set_nr_luminance(context_.get(), percent); }
  /** 0 to 100 percent. */
  void SetNrColor(float percent) { lumvik_set_nr_color(context_.get(), percent); }
  /** 0 to 150, default 0. */
  void SetSharpeningAmount(float amount) { lumvik_set_sharpening_amount(context_.get(), amount); }
  /**
   * Pixels, default 1, useful from 0.5 to 3. Must be positive: otherwise every render with a positive amount
   * throws.
   */
  void SetSharpeningRadius(float pixels) { lumvik_set_sharpening_radius(context_.get(), pixels); }
  /** 0 to 65535, default 0. */
  void SetSharpeningThreshold(float level) { lumvik_set_sharpening_threshold(context_.get(), level); }

  /** Percent; positive corrects barrel distortion. */
  void SetDistortion(float percent) { lumvik_set_distortion(context_.get(), percent); }
  /** 0 to 100 percent. */
  void SetCaCorrection(float percent) { lumvik_set_ca_correction(context_.get(), percent); }
  /** 0 to 100 percent. */
  void SetLensVignette(float percent) { lumvik_set_lens_vignette(context_.get(), percent); }
  /** 0 to 100 percent. */
  void SetDefringe(float percent) { lumvik_set_defringe(context_.get(), percent); }

  /** Flips the image horizontally. */
  void SetFlipH(bool flip) { lumvik_set_flip_h(context_.get(), flip ? 1 : 0); }
  /** Flips the image vertically. */
  void SetFlipV(bool flip) { lumvik_set_flip_v(context_.get(), flip ? 1 : 0); }
  /** Degrees, positive counter-clockwise, default 0. */
  void SetRotation(float degrees) { lumvik_set_rotation(context_.get(), degrees); }
  /** Percent; positive narrows the top. */
  void SetPerspectiveH(float percent) { lumvik_set_perspective_h(context_.get(), percent); }
  /** Percent; positive squeezes the height. */
  void SetPerspectiveV(float percent) { lumvik_set_perspective_v(context_.get(), percent); }
  /** A rectangle of the rotated image. All 0, the default, crops nothing. */
  void SetCrop(const Crop& crop) { lumvik_set_crop(context_.get(), crop.x, crop.y, crop.w, crop.h); }

  /** Percent; brightens the edges for either sign. */
  void SetVignetteAmount(float percent) { lumvik_set_vignette_amount(context_.get(), percent); }
  /** 0 (the center) to 100 (the edge) percent, default 50. */
  void SetVignetteMidpoint(float percent) { lumvik_set_vignette_midpoint(context_.get(), percent); }
  /** Percent; -100 is a rectangle. */
  void SetVignetteRoundness(float percent) { lumvik_set_vignette_roundness(context_.get(), percent); }
  /** 0 to 100 percent. The grain differs from render to render. */
  void SetGrainAmount(float percent) { lumvik_set_grain_amount(context_.get(), percent); }
  /** 0 to 100 percent, default 25. */
  void SetGrainSize(float percent) { lumvik_set_grain_size(context_.get(), percent); }

  /** Sets exactly the values of an AutoEnhance() result. */
  void Apply(const Enhancement& enhancement) {
    SetExposure(enhancement.exposure);
    SetBrightness(enhancement.brightness);
    SetContrast(enhancement.contrast);
    SetHighlights(enhancement.highlights);
    SetShadows(enhancement.shadows);
    SetWhites(enhancement.whites);
    SetBlacks(enhancement.blacks);
    SetTemperature(enhancement.temperature);
    SetTint(enhancement.tint);
    SetSaturation(enhancement.saturation);
    SetVibrance(enhancement.vibrance);
    SetSharpeningAmount(enhancement.sharpening_amount);
    SetSharpeningThreshold(enhancement.sharpening_threshold);
    SetNrLuminance(enhancement.nr_luminance);
    SetNrColor(enhancement.nr_color);
  }

  /** @}
   * @name Automatic tools
   * Suggestions from the loaded image before development; nothing is set. All throw Error -1 if nothing is
   * loaded.
   * @{ */

  /** Stops, -0.25 to 1, for SetExposure(). */
  float AutoExposure() const {
    float stops = 0;
    Check(lumvik_auto_exposure(context_.get(), &stops));
    return stops;
  }

  /** Always neutral: 6500 and 0. */
  WhiteBalance AutoWhiteBalance() const {
    WhiteBalance balance;
    Check(lumvik_auto_white_balance(context_.get(), &balance.temperature, &balance.tint));
    return balance;
  }

  /** A complete set, for Apply(). It has no sharpening radius, which should stay as it is. */
  Enhancement AutoEnhance() const {
    float s[LUMVIK_ENHANCE_SLOTS] = {};
    Check(lumvik_auto_enhance(context_.get(), s));
    return {s[0], s[1], s[2], s[3], s[4], s[5], s[6], s[7], s[8], s[9], s[10], s[11], s[13], s[14], s[15]};
  }

  /** A 3:2 landscape crop, for SetCrop(); 0, 0, 1, 1 if none fits. */
  Crop AutoCrop() const {
    Crop crop;
    Check(lumvik_auto_crop(context_.get(), &crop.x, &crop.y, &crop.w, &crop.h));
    return crop;
  }

  /** Tilt in degrees, -30 to 30, positive if lines rise to the right: negate it for SetRotation(). */
  float AutoStraighten() const {
    float degrees = 0;
    Check(lumvik_auto_straighten(context_.get(), &degrees));
    return degrees;
  }

  /** @}
   * @name Subject
   * A mask of the subject of a RAW file: 255 on the subject, 0 on the background. It has the loaded_size()
   * of the image it was made from and stays until the next one, whatever is loaded.
   * @{ */

  /**
   * Finds the subject around a point, in fractions of width and height of the loaded image, before any
   * geometry; negative means the center.
   * @throws Error -1: no RAW file is loaded; -2: nothing was found. The previous mask stays
   */
  void SegmentSubject(float x = -1, float y = -1) {
    Check(lumvik_segment_subject(context_.get(), x, y));
    mask_size_ = loaded_size_;
  }

  /** The size of the mask, 0 without one. */
  Size mask_size() const noexcept { return mask_size_; }

  /**
   * Copies the mask: one byte per pixel, rows from top to bottom without padding.
   * @throws Error -1: there is no mask; -2: @p mask is smaller than mask_size()
   */
  void Mask(Bytes mask) const {
    std::uint8_t none = 0;
    const int status = lumvik_get_mask(context_.get(), mask.size == 0 ? &none : mask.data, IntOf(mask.size));
    if (status == -2) throw Error(status, "output buffer too small");  // lumvik.h stores no text for it
    Check(status);
  }

  /** The same, returned as an image. */
  Image Mask() const {
    Image image{mask_size_.width, mask_size_.height, 1, std::vector<std::uint8_t>(PixelsOf(mask_size_))};
    Mask(image.data);
    return image;
  }

  /** Blurs the background in previews if there is a mask: 0 to 100 percent, default 0. */
  void SetBackgroundBlur(float percent) { lumvik_set_bg_blur(context_.get(), percent); }

  /**
   * Writes the render with the mask as alpha. @p path must end in ".png", and there must be no crop.
   * @throws Error -1: there is no mask; -2: the file cannot be written
   */
  void ExportSubjectPng(const std::string& path) {
    Check(lumvik_export_subject_png(context_.get(), path.c_str()));
  }

  /** @} */

 private:
  struct Destroy {
    void operator()(EngineContext* context) const { lumvik_destroy_context(context); }
  };

  void Check(int status) const {
    if (status != LUMVIK_OK) throw Error(status, lumvik_last_error(context_.get()));
  }

  static std::size_t PixelsOf(Size size) {
    return static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
  }

  static int IntOf(std::size_t count) {
    return static_cast<int>(std::min<std::size_t>(count, std::numeric_limits<int>::max()));
  }

  std::unique_ptr<EngineContext, Destroy> context_;
  Size loaded_size_;
  Size mask_size_;
};

/** Does nothing; the library needs no initialization. */
inline void Init() {
  const int status = lumvik_init();
  if (status != LUMVIK_OK) throw Error(status, "lumvik cannot be used");
}

/** Does nothing; every Context stays valid. */
inline void Shutdown() {
  lumvik_shutdown();
}

/** The version of the loaded library, "1.0.0". */
inline std::string Version() {
  return lumvik_version();
}

/** @cond */
namespace internal {

// The path-only functions store no error text.
inline void CheckPathTool(int status, const std::string& path) {
  switch (status) {
    case LUMVIK_OK:
      return;
    case -1:
      throw Error(status, "cannot read " + path);
    case -2:
      throw Error(status, "no preview in " + path);
    default:
      throw Error(status, "cannot use the preview in " + path);
  }
}

}  // namespace internal
/** @endcond */

/**
 * A small JPEG of an ordinary image, at most 160 pixels on its long side, or the preview of a RAW file.
 * @return the bytes of the JPEG file
 * @throws Error -1: the file cannot be read; -2: it has no preview; -3, -4: the preview cannot be extracted
 */
inline std::vector<std::uint8_t> ExtractThumbnail(const std::string& path) {
  std::uint8_t* data = nullptr;
  int size = 0;
  internal::CheckPathTool(lumvik_extract_thumbnail(path.c_str(), &data, &size), path);
  const std::unique_ptr<std::uint8_t, void (*)(void*)> owner(data, lumvik_free_thumb);
  return {data, data + size};
}

/**
 * A perceptual hash: the fewer bits differ between two hashes, the more similar the images.
 * @throws Error -1: the file cannot be read; -2: it has no preview; -3, -4: the preview cannot be used
 */
inline std::uint64_t PerceptualHash(const std::string& path) {
  std::uint64_t hash = 0;
  internal::CheckPathTool(lumvik_phash(path.c_str(), &hash), path);
  return hash;
}

}  // namespace lumvik::engine

#endif  // LUMVIK_HPP_
