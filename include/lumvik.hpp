/**
 * @file lumvik.hpp
 * The interface of lumvik for C++17 hosts: lumvik.h with an owner for the context, exceptions in place
 * of statuses, and results by value. All of it is inline; a host links what it links for lumvik.h.
 *
 * @code{.cpp}
 * lumvik::Engine photo;
 * photo.Load("in.arw");
 * photo.SetExposure(0.5F);  // after the load, which resets every adjustment
 * photo.ExportJpeg("out.jpg");
 * @endcode
 *
 * What a call does in detail stands at the function of lumvik.h that it wraps, whose name it carries;
 * units, ranges and defaults of the adjustments are repeated here. Two rules of lumvik.h in short:
 *
 * - Setters only store. An export or a histogram uses the last render, if one was made since the load:
 *   after a setter call Process() or Preview() first.
 * - One Engine must be used by one thread at a time, different ones may be used in parallel.
 *
 * @par Errors
 * Where lumvik.h gives a status other than 0, lumvik::Error is thrown. Where it lets an exception pass
 * (a path without an ending, for one), so does this: catch std::exception to catch both. The engine can
 * be used afterwards.
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

namespace lumvik {

/** A call that failed: its status, and as what() the text of the last error. */
class Error : public std::runtime_error {
 public:
  /** A failure by the status and the text that lumvik.h gives. */
  Error(int status, const std::string& text) : std::runtime_error(text), status_(status) {}

  /** The status of the function in lumvik.h, -1 to -4. */
  int status() const noexcept { return status_; }

 private:
  int status_;
};

/** Memory of the host to write to. */
struct Bytes {
  /** @p count bytes from @p first on. */
  Bytes(std::uint8_t* first, std::size_t count) : data(first), size(count) {}
  /** All that the vector holds. */
  Bytes(std::vector<std::uint8_t>& all) : data(all.data()), size(all.size()) {}  // NOLINT: may be implicit

  std::uint8_t* data; /**< The first byte. */
  std::size_t size;   /**< The number of bytes. */
};

/** A size in pixels. */
struct Size {
  int width = 0;  /**< Columns. */
  int height = 0; /**< Rows. */
};

/** 8 bits a channel: rows from top to bottom, without padding. */
struct Image {
  int width = 0;                  /**< Pixels in a row. */
  int height = 0;                 /**< Rows. */
  int channels = 0;               /**< 4: red, green, blue, alpha; 1: a mask. */
  std::vector<std::uint8_t> data; /**< width x height x channels bytes. */
};

/** Pixels by level. Each array sums to width x height of the render. */
struct Histogram {
  /** The number of pixels at the levels 0 to 255. */
  using Bins = std::array<std::uint32_t, LUMVIK_HISTOGRAM_BINS>;

  Bins red;       /**< Of red. */
  Bins green;     /**< Of green. */
  Bins blue;      /**< Of blue. */
  Bins luminance; /**< Of 0.2126 R + 0.7152 G + 0.0722 B. */
};

/** A rectangle in fractions, 0 to 1, of width and height. */
struct Crop {
  float x = 0; /**< The left edge. */
  float y = 0; /**< The top edge. */
  float w = 0; /**< The width. */
  float h = 0; /**< The height. */
};

/** What Engine::AutoWhiteBalance() suggests. */
struct WhiteBalance {
  float temperature = 5500; /**< Kelvin. */
  float tint = 0;           /**< -150 to 150; positive is magenta. */
};

/** What Engine::AutoEnhance() suggests, each value for the setter of its name. */
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

/** A point of a tone curve, with levels of 0 to 1. */
struct CurvePoint {
  float x; /**< The input level. */
  float y; /**< The output level. */
};

/** The tone curves. */
enum class Curve {
  kMaster = LUMVIK_CURVE_MASTER, /**< All three colors, ahead of their own curves. */
  kRed = LUMVIK_CURVE_RED,
  kGreen = LUMVIK_CURVE_GREEN,
  kBlue = LUMVIK_CURVE_BLUE
};

/** The hue bands; their centers stand in lumvik.h. */
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

/** How a RAW file is decoded; ordinary images are always decoded in full. */
enum class RawQuality {
  kFull = 1,   /**< At full resolution, shrunk to a long side of at most 2000. */
  kHalf = 2,   /**< At half, shrunk likewise. */
  kQuarter = 4 /**< At a quarter, at most 1000. */
};

/** Bits a channel of a written PNG. */
enum class BitDepth { k8 = 8, k16 = 16 };

/** One photograph: its adjustments, last render and subject mask. Can be moved, not copied. */
class Engine {
 public:
  /** Nothing is loaded, all adjustments have their defaults. @throws std::bad_alloc */
  Engine() : context_(lumvik_create_context()) {
    if (!context_) throw std::bad_alloc();
  }

  /** Whether this can be used: not after it was moved from, when all that throws gives Error -1. */
  explicit operator bool() const noexcept { return context_ != nullptr; }

  /** The size a viewer would see now: the last render's while it is current, else the loaded image's, else 0.
   */
  Size size() const { return {lumvik_get_width(context_.get()), lumvik_get_height(context_.get())}; }

  /** The text of the latest failure, "" if there was none. Success does not clear it. */
  std::string LastError() const { return lumvik_last_error(context_.get()); }

  /** @name Loading
   * @{ */

  /**
   * Loads a RAW file or an ordinary image, as the ending of @p path says, and resets the adjustments.
   * @throws Error -1: it is missing or cannot be decoded; the earlier image stays
   */
  void Load(const std::string& path, RawQuality quality = RawQuality::kFull) {
    Check(lumvik_load_arw(context_.get(), path.c_str(), static_cast<int>(quality)));
    loaded_size_ = size();
  }

  /** Drops the image; adjustments, mask and background blur are kept. */
  void Unload() {
    lumvik_unload(context_.get());
    loaded_size_ = {};
  }

  /** The size of the loaded image before cropping, 0 with nothing loaded: what the largest render has. */
  Size loaded_size() const noexcept { return loaded_size_; }

  /** The shooting data of the file. @throws Error -1: nothing is loaded */
  ExifInfo Exif() const {
    ExifInfo info = {};
    Check(lumvik_get_exif(context_.get(), &info));
    return info;
  }

  /** @}
   * @name Rendering
   * @{ */

  /** Renders by the adjustments as they are now. @throws Error -1: nothing is loaded */
  void Process() { Check(lumvik_process(context_.get())); }

  /**
   * Renders, and copies the result to @p rgba: 8-bit red, green, blue and alpha 255, rows from top to
   * bottom without padding. Room for loaded_size() is always enough.
   * @return the size of what was copied
   * @throws Error -1: nothing is loaded, or @p rgba is too small; size() then is what it must hold
   */
  Size Preview(Bytes rgba) {
    std::uint8_t none = 0;
    Check(lumvik_get_preview(context_.get(), rgba.size == 0 ? &none : rgba.data, IntOf(rgba.size)));
    return size();
  }

  /** The same, into memory of its own. */
  Image Preview() {
    Image image{0, 0, 4, std::vector<std::uint8_t>(PixelsOf(loaded_size_) * 4)};
    const Size rendered = Preview(image.data);
    image.data.resize(PixelsOf(rendered) * 4);
    image.width = rendered.width;
    image.height = rendered.height;
    return image;
  }

  /** Of the last render, or of a new one when none was made since the load. @throws Error -1: nothing is
   * loaded */
  Histogram GetHistogram() {
    Histogram counts;
    Check(lumvik_get_histogram(context_.get(), counts.red.data(), counts.green.data(), counts.blue.data(),
                               counts.luminance.data()));
    return counts;
  }

  /** @}
   * @name Export
   * The ending of the path chooses the format. A path without an ending, or one that is not known, throws
   * an exception other than Error.
   * @{ */

  /**
   * Writes 8 bits a channel; @p quality is 1 to 100.
   * @throws Error -1: nothing is loaded, or the file cannot be written
   */
  void ExportJpeg(const std::string& path, int quality = 90, bool keep_exif = true) {
    Check(lumvik_export_jpeg(context_.get(), path.c_str(), quality, 0, keep_exif ? 1 : 0));
  }

  /** @throws Error -1: nothing is loaded, or the file cannot be written */
  void ExportPng(const std::string& path, BitDepth depth = BitDepth::k8) {
    Check(lumvik_export_png(context_.get(), path.c_str(), static_cast<int>(depth)));
  }

  /** Writes 16 bits a channel. @throws Error -1: nothing is loaded, or the file cannot be written */
  void ExportTiff(const std::string& path) { Check(lumvik_export_tiff(context_.get(), path.c_str())); }

  /** @}
   * @name Adjustments
   * Stored without a check: pass finite values. Percent is -100 to 100 and 0 by default, unless told.
   * @{ */

  /** Restores every default but the background blur's. */
  void ResetAdjustments() { lumvik_reset_adjustments(context_.get()); }

  /** Stops; 1 doubles. Default 0. */
  void SetExposure(float stops) { lumvik_set_exposure(context_.get(), stops); }
  /** Percent, of the mid-tones. */
  void SetBrightness(float percent) { lumvik_set_brightness(context_.get(), percent); }
  /** Percent. */
  void SetContrast(float percent) { lumvik_set_contrast(context_.get(), percent); }
  /** Percent. */
  void SetHighlights(float percent) { lumvik_set_highlights(context_.get(), percent); }
  /** Percent. */
  void SetShadows(float percent) { lumvik_set_shadows(context_.get(), percent); }
  /** Percent; positive darkens. */
  void SetWhites(float percent) { lumvik_set_whites(context_.get(), percent); }
  /** Percent; positive clips the darks. */
  void SetBlacks(float percent) { lumvik_set_blacks(context_.get(), percent); }

  /** Kelvin, 1667 to 25000, default 5500; 6500 is neutral. */
  void SetTemperature(float kelvin) { lumvik_set_temperature(context_.get(), kelvin); }
  /** -150 to 150, default 0; positive is magenta. */
  void SetTint(float tint) { lumvik_set_tint(context_.get(), tint); }
  /** Percent; -100 gives gray. */
  void SetSaturation(float percent) { lumvik_set_saturation(context_.get(), percent); }
  /** Percent, of muted colors. */
  void SetVibrance(float percent) { lumvik_set_vibrance(context_.get(), percent); }

  /** A spline through at least two points, in ascending x; fewer are ignored. Default: exactly straight. */
  void SetToneCurve(Curve curve, const std::vector<CurvePoint>& points) {
    static_assert(sizeof(CurvePoint) == 2 * sizeof(float), "points are pairs of floats");
    if (points.empty()) return;
    lumvik_set_tone_curve(context_.get(), static_cast<int>(curve), &points.front().x, IntOf(points.size()));
  }
  /** The curve through (0, 0) and (1, 1), a mild S beside another curve. */
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
   * @p balance, in percent, holds for both tints; positive favors the highlights.
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
  /** Pixels, default 1. Must be positive, or every render with a positive amount throws. */
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

  /** Mirrors left and right. */
  void SetFlipH(bool flip) { lumvik_set_flip_h(context_.get(), flip ? 1 : 0); }
  /** Mirrors top and bottom. */
  void SetFlipV(bool flip) { lumvik_set_flip_v(context_.get(), flip ? 1 : 0); }
  /** Degrees, positive counter-clockwise, default 0. */
  void SetRotation(float degrees) { lumvik_set_rotation(context_.get(), degrees); }
  /** Percent; positive narrows the top. */
  void SetPerspectiveH(float percent) { lumvik_set_perspective_h(context_.get(), percent); }
  /** Percent; positive squeezes the height. */
  void SetPerspectiveV(float percent) { lumvik_set_perspective_v(context_.get(), percent); }
  /** Of the turned image. All 0, the default, crops nothing. */
  void SetCrop(const Crop& crop) { lumvik_set_crop(context_.get(), crop.x, crop.y, crop.w, crop.h); }

  /** Percent; brightens the edges for either sign. */
  void SetVignetteAmount(float percent) { lumvik_set_vignette_amount(context_.get(), percent); }
  /** 0 (the center) to 100 (the edge) percent, default 50. */
  void SetVignetteMidpoint(float percent) { lumvik_set_vignette_midpoint(context_.get(), percent); }
  /** Percent; -100 is a rectangle. */
  void SetVignetteRoundness(float percent) { lumvik_set_vignette_roundness(context_.get(), percent); }
  /** 0 to 100 percent. Every render has other grain. */
  void SetGrainAmount(float percent) { lumvik_set_grain_amount(context_.get(), percent); }
  /** 0 to 100 percent, default 25. */
  void SetGrainSize(float percent) { lumvik_set_grain_size(context_.get(), percent); }

  /** Sets all that AutoEnhance() suggested, and nothing else. */
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
   * Suggestions from the image before development; nothing is set. @throws Error -1: nothing is loaded
   * @{ */

  /** Stops, -0.25 to 1, for SetExposure(). */
  float AutoExposure() const {
    float stops = 0;
    Check(lumvik_auto_exposure(context_.get(), &stops));
    return stops;
  }

  /** Always the neutral one: 6500 and 0. */
  WhiteBalance AutoWhiteBalance() const {
    WhiteBalance balance;
    Check(lumvik_auto_white_balance(context_.get(), &balance.temperature, &balance.tint));
    return balance;
  }

  /** A whole set, for Apply(). It holds no sharpening radius, which is to stay as it is. */
  Enhancement AutoEnhance() const {
    float s[LUMVIK_ENHANCE_SLOTS] = {};
    Check(lumvik_auto_enhance(context_.get(), s));
    return {s[0], s[1], s[2], s[3], s[4], s[5], s[6], s[7], s[8], s[9], s[10], s[11], s[13], s[14], s[15]};
  }

  /** A 3:2 landscape crop, for SetCrop(); 0, 0, 1, 1 when none fits. */
  Crop AutoCrop() const {
    Crop crop;
    Check(lumvik_auto_crop(context_.get(), &crop.x, &crop.y, &crop.w, &crop.h));
    return crop;
  }

  /** Degrees, -30 to 30, by which level lines rise to the right: SetRotation() takes it negated. */
  float AutoStraighten() const {
    float degrees = 0;
    Check(lumvik_auto_straighten(context_.get(), &degrees));
    return degrees;
  }

  /** @}
   * @name Subject
   * A mask of the subject of a RAW file, of loaded_size() when it was made: 255 on the subject, 0 on the
   * background. It stays until the next one, whatever is loaded.
   * @{ */

  /**
   * Finds the subject around a point, in fractions of width and height; a negative one means the middle.
   * @throws Error -1: no RAW file is loaded; -2: nothing was found. The earlier mask stays
   */
  void SegmentSubject(float x = -1, float y = -1) {
    Check(lumvik_segment_subject(context_.get(), x, y));
    mask_size_ = loaded_size_;
  }

  /** The size of the mask, 0 without one. */
  Size mask_size() const noexcept { return mask_size_; }

  /**
   * Copies the mask: a byte a pixel, rows from top to bottom without padding.
   * @throws Error -1: there is none; -2: @p mask is smaller than mask_size()
   */
  void Mask(Bytes mask) const {
    std::uint8_t none = 0;
    const int status = lumvik_get_mask(context_.get(), mask.size == 0 ? &none : mask.data, IntOf(mask.size));
    if (status == -2) throw Error(status, "output buffer too small");  // without a text of its own
    Check(status);
  }

  /** The same, into memory of its own. */
  Image Mask() const {
    Image image{mask_size_.width, mask_size_.height, 1, std::vector<std::uint8_t>(PixelsOf(mask_size_))};
    Mask(image.data);
    return image;
  }

  /** Blurs the background in previews, when there is a mask: 0 to 100 percent, default 0. */
  void SetBackgroundBlur(float percent) { lumvik_set_bg_blur(context_.get(), percent); }

  /**
   * Writes the render with the mask as alpha; @p path ends in ".png", nothing is cropped.
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

/** Does nothing; no call is needed before the first use. */
inline void Init() {
  const int status = lumvik_init();
  if (status != LUMVIK_OK) throw Error(status, "lumvik cannot be used");
}

/** Does nothing; every Engine can still be used. */
inline void Shutdown() {
  lumvik_shutdown();
}

/** The version of the library that is running, "1.0.0". */
inline std::string Version() {
  return lumvik_version();
}

/** @cond */
namespace internal {

// The path-only functions leave no text.
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
 * A small JPEG of an ordinary image, at most 160 pixels on its long side, or the preview in a RAW file.
 * @return the bytes of the JPEG file
 * @throws Error -1: it cannot be read; -2: it has no preview; -3, -4: the preview cannot be taken out
 */
inline std::vector<std::uint8_t> ExtractThumbnail(const std::string& path) {
  std::uint8_t* data = nullptr;
  int size = 0;
  internal::CheckPathTool(lumvik_extract_thumbnail(path.c_str(), &data, &size), path);
  const std::unique_ptr<std::uint8_t, void (*)(void*)> owner(data, lumvik_free_thumb);
  return {data, data + size};
}

/**
 * A hash of how the picture looks: the fewer bits differ between two, the more alike the pictures.
 * @throws Error -1: it cannot be read; -2: it has no preview; -3, -4: the preview cannot be used
 */
inline std::uint64_t PerceptualHash(const std::string& path) {
  std::uint64_t hash = 0;
  internal::CheckPathTool(lumvik_phash(path.c_str(), &hash), path);
  return hash;
}

}  // namespace lumvik

#endif  // LUMVIK_HPP_
