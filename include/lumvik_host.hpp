/**
 * @file lumvik_host.hpp
 * The C++17 interface of the host library: lumvik_host.h with classes that own the handles, exceptions
 * instead of statuses, and results returned by value. Everything is inline; a host links the same as for
 * lumvik_host.h.
 *
 * @code{.cpp}
 * lumvik::api::Photo photo("in.arw");
 * lumvik::api::Settings settings;
 * settings.SetNumber("exposure", 0.5F);
 * photo.SetSettings(settings);
 * photo.Save("out.jpg");
 * @endcode
 *
 * Each call is documented in detail at the function of lumvik_host.h that it wraps and is named after. Every
 * call throws lumvik::api::Error unless it is noexcept or stated otherwise, and may throw std::bad_alloc.
 * Statuses, formats, metadata policies and suggestions are the enumerations of lumvik_host.h.
 */
#ifndef LUMVIK_HOST_HPP_
#define LUMVIK_HOST_HPP_

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "lumvik_host.h"

/** The C++ interface of the host library. */
namespace lumvik::api {

/** A failed call: its status, and a sentence for a person as what(). */
class Error : public std::runtime_error {
 public:
  /** From a status and a text of lumvik_host.h. */
  Error(lumvik_host_status status, const std::string& text) : std::runtime_error(text), status_(status) {}

  /** The status returned by the function of lumvik_host.h. */
  lumvik_host_status status() const noexcept { return status_; }

 private:
  lumvik_host_status status_;
};

/** A struct of lumvik_host.h, all zeros, with its size set. Options of zeros are the defaults. */
template <typename Struct>
struct Sized : Struct {
  // NOLINTNEXTLINE(clang-analyzer-optin.cplusplus.UninitializedObject): the braces set all fields to zero
  Sized() : Struct{} { this->struct_size = sizeof(Struct); }
};

using SettingInfo = Sized<lumvik_host_setting_info>;           /**< The description of a setting. */
using OpenOptions = Sized<lumvik_host_open_options>;           /**< How to open a photograph. */
using PhotoInfo = Sized<lumvik_host_photo_info>;               /**< What is known of an open photograph. */
using PreviewOptions = Sized<lumvik_host_preview_options>;     /**< How to make a preview. */
using SaveOptions = Sized<lumvik_host_save_options>;           /**< How to save a render. */
using ThumbnailOptions = Sized<lumvik_host_thumbnail_options>; /**< How to make a thumbnail. */
using ExifInfo = Sized<lumvik_host_exif>;                      /**< Shooting data. */
using Integrity = Sized<lumvik_host_integrity>;                /**< Whether a file is whole. */
using Histogram = lumvik_host_histogram;                       /**< The pixels of a render by 8-bit level. */
using Frame = lumvik_host_frame;                               /**< A finished render. */
using Bytes = std::vector<std::uint8_t>;                       /**< The content of a file. */

/** Receives a posted render. An exception that it throws is dropped. */
using FrameCallback = std::function<void(const Frame& frame)>;

/** A size in pixels. */
struct Size {
  std::int32_t width = 0;  /**< Columns. */
  std::int32_t height = 0; /**< Rows. */
};

/** An image with 8 bits per channel; rows from top to bottom, without padding. */
struct Image {
  std::int32_t width = 0;    /**< Columns. */
  std::int32_t height = 0;   /**< Rows. */
  std::int32_t channels = 0; /**< 1: gray or a mask, 3: RGB, 4: RGBA. */
  Bytes data;                /**< width x height x channels bytes. */
};

/** A point of a tone curve; levels from 0 to 1. */
struct CurvePoint {
  float x; /**< The input level. */
  float y; /**< The output level. */
};

/** A JPEG in memory. */
struct Thumbnail {
  Bytes data; /**< The JPEG. */
  Size size;  /**< As stored. */
};

/** Throws Error with the latest failure of this thread unless @p status is ::LUMVIK_HOST_OK. */
inline void Check(lumvik_host_status status) {
  if (status != LUMVIK_HOST_OK) throw Error(status, lumvik_host_last_error());
}

/** @cond */
namespace detail {

template <typename Memory>
using Lent = std::unique_ptr<Memory, decltype(&lumvik_host_free)>;

// Calls `call` with the address of a text to return.
template <typename Call>
std::optional<std::string> OptionalText(const Call& call) {
  char* text = nullptr;
  Check(call(&text));
  const Lent<char> lent(text, lumvik_host_free);
  return text == nullptr ? std::nullopt : std::optional<std::string>(text);
}

template <typename Call>
std::string Text(const Call& call) {
  return OptionalText(call).value_or("");
}

inline const char* OrNull(const std::string& text) {
  return text.empty() ? nullptr : text.c_str();
}

inline std::size_t BytesOf(Size size, std::int32_t channels) {
  return static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height) *
         static_cast<std::size_t>(channels);
}

// Calls `fill` with a buffer and its size in bytes until it is large enough for the size that `fill` reports.
template <typename Fill>
Image FilledImage(Size size, std::int32_t channels, const Fill& fill) {
  Image image{0, 0, channels, Bytes(BytesOf(size, channels))};
  lumvik_host_status status = LUMVIK_HOST_OK;
  std::uint8_t none = 0;
  do {
    status =
        fill(image.data.empty() ? &none : image.data.data(), image.data.size(), &image.width, &image.height);
    if (status != LUMVIK_HOST_OK && status != LUMVIK_HOST_BUFFER_TOO_SMALL) Check(status);
    image.data.resize(BytesOf({image.width, image.height}, channels));
  } while (status != LUMVIK_HOST_OK);
  return image;
}

// The `user` of a posted render owns the callback, which is called once.
inline void CallBack(const Frame* frame, void* user) {
  const std::unique_ptr<FrameCallback> callback(static_cast<FrameCallback*>(user));
  try {
    (*callback)(*frame);
  } catch (...) {  // must not reach the library
  }
}

}  // namespace detail
/** @endcond */

/** Develop settings. Movable; Copy() copies. After a move from it, calls throw. */
class Settings {
 public:
  /** Without values: neutral. */
  Settings() { Check(lumvik_host_settings_create(&handle_)); }

  /** Takes over a handle of lumvik_host.h. */
  explicit Settings(lumvik_host_settings* handle) noexcept : handle_(handle) {}

  ~Settings() { lumvik_host_settings_close(handle_); }
  Settings(const Settings&) = delete;
  Settings& operator=(const Settings&) = delete;
  /** Takes over the handle. */
  Settings(Settings&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  /** Exchanges the handles. */
  Settings& operator=(Settings&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }

  /** Makes settings with the same values. */
  Settings Copy() const { return Made(lumvik_host_settings_copy, handle_); }

  /** From the text of a settings file. */
  static Settings FromJson(const std::string& json) {
    return Made(lumvik_host_settings_from_json, json.data(), json.size());
  }

  /** From a settings file. */
  static Settings Read(const std::string& path) { return Made(lumvik_host_settings_read, path.c_str()); }

  /** From a preset; an empty @p folder is the user's own. */
  static Settings ReadPreset(const std::string& name, const std::string& folder = "") {
    return Made(lumvik_host_read_preset, detail::OrNull(folder), name.c_str());
  }

  /** Imports Camera Raw settings. @p report, unless null, receives a JSON object. */
  static Settings ImportXmp(const std::string& path, std::string* report = nullptr) {
    lumvik_host_settings* handle = nullptr;
    const std::string text = detail::Text(
        [&](char** json) { return lumvik_host_settings_import_xmp(path.c_str(), &handle, json); });
    Settings settings(handle);
    if (report != nullptr) *report = text;
    return settings;
  }

  /** The handle, for functions of lumvik_host.h. */
  lumvik_host_settings* handle() const noexcept { return handle_; }

  /** Removes all values. */
  void Clear() { Check(lumvik_host_settings_clear(handle_)); }
  /** Gives every setting the value that the engine has after loading. */
  void SetEngineValues() { Check(lumvik_host_settings_set_engine_values(handle_)); }
  /** Removes the values that are neutral. */
  void RemoveNeutral() { Check(lumvik_host_settings_remove_neutral(handle_)); }
  /** Takes over every value that @p other has. */
  void Merge(const Settings& other) { Check(lumvik_host_settings_merge(handle_, other.handle_)); }
  /** Removes the value of a setting. */
  void Remove(const std::string& key) { Check(lumvik_host_settings_remove(handle_, key.c_str())); }

  /** Whether there is a value for the setting. */
  bool Has(const std::string& key) const {
    return Got<std::int32_t>(lumvik_host_settings_has, handle_, key.c_str()) != 0;
  }

  /** Whether both develop a photograph alike. */
  bool Equals(const Settings& other) const {
    return Got<std::int32_t>(lumvik_host_settings_equal, handle_, other.handle_) != 0;
  }

  /** Sets a number within its range. */
  void SetNumber(const std::string& key, float value) {
    Check(lumvik_host_settings_set_number(handle_, key.c_str(), value));
  }
  /** A number, the neutral one if there is no value. */
  float Number(const std::string& key) const {
    return Got<float>(lumvik_host_settings_get_number, handle_, key.c_str());
  }

  /** Sets a flag. */
  void SetFlag(const std::string& key, bool value) {
    Check(lumvik_host_settings_set_flag(handle_, key.c_str(), value ? 1 : 0));
  }
  /** A flag, the neutral one if there is no value. */
  bool Flag(const std::string& key) const {
    return Got<std::int32_t>(lumvik_host_settings_get_flag, handle_, key.c_str()) != 0;
  }

  /** Sets a tone curve; no points make it linear. */
  void SetCurve(const std::string& key, const std::vector<CurvePoint>& points) {
    static_assert(sizeof(CurvePoint) == 2 * sizeof(float), "points are pairs of floats");
    const float* first = points.empty() ? nullptr : &points.front().x;
    Check(lumvik_host_settings_set_curve(handle_, key.c_str(), first, points.size()));
  }
  /** A tone curve, without points if it is linear. */
  std::vector<CurvePoint> Curve(const std::string& key) const {
    std::vector<CurvePoint> points;
    lumvik_host_status status = LUMVIK_HOST_OK;
    do {
      std::size_t count = 0;
      float* first = points.empty() ? nullptr : &points.front().x;
      status = lumvik_host_settings_get_curve(handle_, key.c_str(), first, points.size(), &count);
      if (status != LUMVIK_HOST_OK && status != LUMVIK_HOST_BUFFER_TOO_SMALL) Check(status);
      points.resize(count);
    } while (status != LUMVIK_HOST_OK);
    return points;
  }

  /** The text of a settings file with these values. */
  std::string ToJson() const {
    return detail::Text([&](char** json) { return lumvik_host_settings_to_json(handle_, json); });
  }
  /** An XMP packet with these values. */
  std::string ToXmp() const {
    return detail::Text([&](char** xmp) { return lumvik_host_settings_to_xmp(handle_, xmp); });
  }
  /** Writes a settings file. */
  void Write(const std::string& path, bool overwrite = false) const {
    Check(lumvik_host_settings_write(handle_, path.c_str(), overwrite ? 1 : 0));
  }
  /** Writes a preset; an empty @p folder is the user's own. */
  void WritePreset(const std::string& name, const std::string& folder = "", bool overwrite = false) const {
    Check(lumvik_host_write_preset(detail::OrNull(folder), name.c_str(), handle_, overwrite ? 1 : 0));
  }

 private:
  template <typename... Parameters, typename... Arguments>
  static Settings Made(lumvik_host_status (*make)(Parameters...), Arguments... arguments) {
    lumvik_host_settings* handle = nullptr;
    Check(make(arguments..., &handle));
    return Settings(handle);
  }

  template <typename Value, typename Get, typename... Arguments>
  static Value Got(Get get, Arguments... arguments) {
    Value value{};
    Check(get(arguments..., &value));
    return value;
  }

  lumvik_host_settings* handle_ = nullptr;
};

/** An open photograph. Movable, not copyable. After a move from it, calls throw. */
class Photo {
 public:
  /** Opens the photograph at @p path with neutral settings. */
  explicit Photo(const std::string& path, const OpenOptions& options = {}) {
    Check(lumvik_host_open(path.c_str(), &options, &handle_));
  }

  /** Opens a photograph in memory. */
  Photo(const void* data, std::size_t size, const OpenOptions& options = {}) {
    Check(lumvik_host_open_bytes(data, size, &options, &handle_));
  }

  ~Photo() { lumvik_host_close(handle_); }
  Photo(const Photo&) = delete;
  Photo& operator=(const Photo&) = delete;
  /** Takes over the handle. */
  Photo(Photo&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  /** Exchanges the handles. */
  Photo& operator=(Photo&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }

  /** The handle, for functions of lumvik_host.h. */
  lumvik_host_photo* handle() const noexcept { return handle_; }

  /** The text of the latest failure on this photo, "" if there was none; a long text is cut off. */
  std::string LastError() const {
    std::array<char, 4096> text{};
    Check(lumvik_host_get_error(handle_, text.data(), text.size()));
    return text.data();
  }

  /** Describes the photo. */
  PhotoInfo Info() const {
    PhotoInfo info;
    Check(lumvik_host_get_info(handle_, &info));
    return info;
  }

  /** What could not be used while opening and saving the photo: one sentence per line. */
  std::string Warnings() const {
    return detail::Text([&](char** warnings) { return lumvik_host_get_warnings(handle_, warnings); });
  }

  /** The shooting data. */
  ExifInfo Exif() const {
    ExifInfo exif;
    Check(lumvik_host_get_exif(handle_, &exif));
    return exif;
  }

  /** Checks whether the photograph is whole. Damage is a result, not an error. */
  Integrity CheckIntegrity() const {
    Integrity integrity;
    const lumvik_host_status status = lumvik_host_check(handle_, &integrity);
    if (status != LUMVIK_HOST_DAMAGED) Check(status);
    return integrity;
  }

  /** Loads a RAW file again at another quality. */
  void SetQuality(int quality) { Check(lumvik_host_set_quality(handle_, quality)); }
  /** Waits for the full quality after @c proxy_first. Throws ::LUMVIK_HOST_TIMED_OUT. */
  void WaitForQuality(int milliseconds = -1) { Check(lumvik_host_wait_for_quality(handle_, milliseconds)); }

  /** Sets the settings. */
  void SetSettings(const Settings& settings) { Check(lumvik_host_set_settings(handle_, settings.handle())); }
  /** Makes the settings neutral. */
  void ResetSettings() { Check(lumvik_host_set_settings(handle_, nullptr)); }
  /** A copy of the settings. */
  Settings GetSettings() const {
    lumvik_host_settings* settings = nullptr;
    Check(lumvik_host_get_settings(handle_, &settings));
    return Settings(settings);
  }

  /** Renders now, unless the latest render has these settings. */
  void Render() { Check(lumvik_host_render(handle_)); }

  /** The size of a preview. */
  Size PreviewSize(const PreviewOptions& options = {}) {
    Size size;
    Check(lumvik_host_get_preview_size(handle_, &options, &size.width, &size.height));
    return size;
  }

  /** A preview. The stride in @p options is not used. */
  Image Preview(PreviewOptions options = {}) {
    options.stride = 0;
    return detail::FilledImage(
        PreviewSize(options), options.channels == 0 ? 4 : options.channels,
        [&](std::uint8_t* pixels, std::size_t capacity, std::int32_t* width, std::int32_t* height) {
          return lumvik_host_get_preview(handle_, &options, pixels, capacity, width, height);
        });
  }

  /** Copies a preview to @p pixels, which has @p capacity bytes, and returns its size. */
  Size Preview(std::uint8_t* pixels, std::size_t capacity, const PreviewOptions& options = {}) {
    Size size;
    Check(lumvik_host_get_preview(handle_, &options, pixels, capacity, &size.width, &size.height));
    return size;
  }

  /** Counts the pixels of the render. */
  Histogram GetHistogram() {
    Histogram histogram{};
    Check(lumvik_host_get_histogram(handle_, &histogram));
    return histogram;
  }

  /** Posts a render with the present settings. Returns its ticket. */
  std::uint64_t Post(FrameCallback callback = nullptr, const PreviewOptions& options = {}) {
    return Post(nullptr, std::move(callback), options);
  }
  /** Posts a render with these settings, which become those of the photo. Returns its ticket. */
  std::uint64_t Post(const Settings& settings, FrameCallback callback = nullptr,
                     const PreviewOptions& options = {}) {
    return Post(settings.handle(), std::move(callback), options);
  }

  /**
   * Waits until the render with this ticket ended; ticket 0 is the latest. Returns ::LUMVIK_HOST_OK,
   * ::LUMVIK_HOST_STALE, ::LUMVIK_HOST_CANCELED or ::LUMVIK_HOST_TIMED_OUT and throws other failures.
   */
  lumvik_host_status Wait(std::uint64_t ticket = 0, int milliseconds = -1) {
    const lumvik_host_status status = lumvik_host_wait(handle_, ticket, milliseconds);
    if (status != LUMVIK_HOST_STALE && status != LUMVIK_HOST_CANCELED && status != LUMVIK_HOST_TIMED_OUT) {
      Check(status);
    }
    return status;
  }

  /** Drops the waiting render. */
  void Cancel() { Check(lumvik_host_cancel(handle_)); }

  /** Suggests settings: what to suggest, such as ::LUMVIK_HOST_SUGGEST_CROP, combined with "or". */
  Settings Suggest(std::uint32_t what) {
    lumvik_host_settings* settings = nullptr;
    Check(lumvik_host_suggest(handle_, what, &settings));
    return Settings(settings);
  }

  /** Finds the subject around a point of the preview, in fractions 0 to 1; by default around the center. */
  void FindSubject(float x = -1, float y = -1) { Check(lumvik_host_find_subject(handle_, x, y)); }

  /** The mask of the subject: 255 on it, 0 elsewhere. */
  Image Mask() {
    const PhotoInfo info = Info();
    return detail::FilledImage(
        {info.width, info.height}, 1,
        [&](std::uint8_t* mask, std::size_t capacity, std::int32_t* width, std::int32_t* height) {
          return lumvik_host_get_mask(handle_, mask, capacity, width, height);
        });
  }

  /** Writes the render. */
  void Save(const std::string& path, const SaveOptions& options = {}) {
    Check(lumvik_host_save(handle_, path.c_str(), &options));
  }
  /** Encodes the render; @c format must be set. */
  Bytes SaveBytes(const SaveOptions& options) {
    std::uint8_t* data = nullptr;
    std::size_t size = 0;
    Check(lumvik_host_save_bytes(handle_, &options, &data, &size));
    const detail::Lent<std::uint8_t> lent(data, lumvik_host_free);
    return {data, data + size};
  }
  /** Writes the subject on a transparent background. */
  void SaveCutout(const std::string& path, const SaveOptions& options = {}) {
    Check(lumvik_host_save_cutout(handle_, path.c_str(), &options));
  }

 private:
  std::uint64_t Post(lumvik_host_settings* settings, FrameCallback callback, const PreviewOptions& options) {
    std::uint64_t ticket = 0;
    if (!callback) {
      Check(lumvik_host_post(handle_, settings, &options, nullptr, nullptr, &ticket));
      return ticket;
    }
    auto user = std::make_unique<FrameCallback>(std::move(callback));
    Check(lumvik_host_post(handle_, settings, &options, detail::CallBack, user.get(), &ticket));
    user.release();  // NOLINT(bugprone-unused-return-value): CallBack owns it now
    return ticket;
  }

  lumvik_host_photo* handle_ = nullptr;
};

/** The version of the library. */
inline std::string Version() {
  return lumvik_host_version();
}

/** The version of the engine. */
inline std::string EngineVersion() {
  return lumvik_host_engine_version();
}

/** A short name for a status, such as "not_found". */
inline std::string StatusName(std::int32_t status) {
  return lumvik_host_status_name(status);
}

/** Describes the setting with this index. */
inline SettingInfo DescribeSetting(std::size_t index) {
  SettingInfo info;
  Check(lumvik_host_describe_setting(index, &info));
  return info;
}

/** Describes all settings, in the order of a settings file. */
inline std::vector<SettingInfo> DescribeSettings() {
  std::vector<SettingInfo> settings;
  for (std::size_t i = 0; i < lumvik_host_setting_count(); ++i) settings.push_back(DescribeSetting(i));
  return settings;
}

/** Describes all settings as JSON. */
inline std::string DescribeSettingsJson() {
  return detail::Text(lumvik_host_describe_settings_json);
}

/** The index of a setting. */
inline std::size_t FindSetting(const std::string& key) {
  std::size_t index = 0;
  Check(lumvik_host_find_setting(key.c_str(), &index));
  return index;
}

/** The settings file next to a photograph, if there is one. */
inline std::optional<std::string> FindSidecar(const std::string& photograph, const std::string& extension) {
  return detail::OptionalText([&](char** sidecar) {
    return lumvik_host_find_sidecar(photograph.c_str(), extension.c_str(), sidecar);
  });
}

/** The presets in a folder as a JSON array; an empty @p folder is the user's own. */
inline std::string ListPresets(const std::string& folder = "") {
  return detail::Text([&](char** names) { return lumvik_host_list_presets(detail::OrNull(folder), names); });
}

/** The output format for the extension of a path, ::LUMVIK_HOST_FORMAT_UNKNOWN if there is none. */
inline lumvik_host_format FormatOf(const std::string& path) {
  return static_cast<lumvik_host_format>(lumvik_host_format_of(path.c_str()));
}

/** The preferred extension of an output format with its dot, "" for what cannot be written. */
inline std::string ExtensionOf(lumvik_host_format format) {
  const char* extension = lumvik_host_extension_of(format);
  return extension == nullptr ? "" : extension;
}

/** Recognizes the format of a file by its content. */
inline lumvik_host_format Identify(const std::string& path) {
  std::int32_t format = LUMVIK_HOST_FORMAT_UNKNOWN;
  Check(lumvik_host_identify(path.c_str(), &format));
  return static_cast<lumvik_host_format>(format);
}

/** Reads the size of a photograph, as stored, without decoding it. */
inline Size ReadSize(const std::string& path) {
  Size size;
  Check(lumvik_host_read_size(path.c_str(), &size.width, &size.height));
  return size;
}

/** Checks whether the photograph in a file is whole. Damage is a result, not an error. */
inline Integrity CheckFile(const std::string& path) {
  Integrity integrity;
  const lumvik_host_status status = lumvik_host_check_file(path.c_str(), &integrity);
  if (status != LUMVIK_HOST_DAMAGED) Check(status);
  return integrity;
}

/** Reads the shooting data of a file without decoding it. */
inline ExifInfo ReadExif(const std::string& path) {
  ExifInfo exif;
  Check(lumvik_host_read_exif(path.c_str(), &exif));
  return exif;
}

/** Identifies the content of a file, whatever its name and times. */
inline std::uint64_t Fingerprint(const std::string& path) {
  std::uint64_t fingerprint = 0;
  Check(lumvik_host_fingerprint(path.c_str(), &fingerprint));
  return fingerprint;
}

/** The mark of an image, unless it has none or changed since it was written. */
inline std::optional<std::string> ReadMark(const std::string& path) {
  char* mark = nullptr;
  const lumvik_host_status status = lumvik_host_read_mark(path.c_str(), &mark);
  if (status == LUMVIK_HOST_NOT_FOUND) return std::nullopt;
  Check(status);
  const detail::Lent<char> lent(mark, lumvik_host_free);
  return mark;
}

/** Makes a JPEG for overviews. */
inline Thumbnail ExtractThumbnail(const std::string& path, const ThumbnailOptions& options = {}) {
  std::uint8_t* data = nullptr;
  std::size_t bytes = 0;
  Size size;
  Check(lumvik_host_extract_thumbnail(path.c_str(), &options, &data, &bytes, &size.width, &size.height));
  const detail::Lent<std::uint8_t> lent(data, lumvik_host_free);
  return {Bytes(data, data + bytes), size};
}

/** A 64-bit perceptual hash: the fewer bits differ, the more similar are the photographs. */
inline std::uint64_t Hash(const std::string& path) {
  std::uint64_t hash = 0;
  Check(lumvik_host_hash(path.c_str(), &hash));
  return hash;
}

/** Writes @p size bytes to a file. */
inline void WriteFile(const std::string& path, const void* data, std::size_t size,
                      lumvik_host_overwrite overwrite = LUMVIK_HOST_OVERWRITE_NONE) {
  Check(lumvik_host_write_file(path.c_str(), data, size, overwrite));
}

/** Writes an image as an 8-bit PNG. Of the options only @c overwrite and @c mark count. */
inline void WritePng(const std::string& path, const Image& image, const SaveOptions& options = {}) {
  Check(lumvik_host_write_png(path.c_str(), image.data.data(), image.width, image.height, image.channels,
                              &options));
}

/** Throws ::LUMVIK_HOST_UNSUPPORTED, with the reason, unless the metadata module is installed. */
inline void RequireMetadataModule() {
  Check(lumvik_host_has_metadata_module());
}

}  // namespace lumvik::api

#endif  // LUMVIK_HOST_HPP_
