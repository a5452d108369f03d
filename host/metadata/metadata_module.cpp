#include "metadata/metadata_module.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <iterator>
#include <limits>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "base/failure.h"
#include "files/file_reading.h"
#include "files/safe_file.h"
#include "metadata/loaded_module.h"
#include "metadata/raw_facts.h"
#include "settings/camera_raw_names.h"
#include "settings/sidecar.h"

namespace lumvik::host {
namespace {

namespace fs = std::filesystem;

constexpr const char* kXmpExtensions[] = {".xmp", ".XMP"};

// More than the module accepts, which names its limit.
constexpr std::size_t kMaxXmpBytes = (std::size_t{16} << 20U) + 1;

Failure UnreadableSettings(Status status, const std::string& path, const std::string& why) {
  return {status, "cannot read '" + path + "': " + why};
}

// Turns the status of a module function into a failure. `what` was attempted.
void RequireSuccess(std::int32_t status, const std::string& what, const lumvik_metadata_error& error) {
  switch (status) {
    case LUMVIK_METADATA_OK:
    case LUMVIK_METADATA_NONE:
      return;
    case LUMVIK_METADATA_DAMAGED:
      throw Failure(LUMVIK_HOST_DAMAGED, what + ": " + OneLine(error.text));
    case LUMVIK_METADATA_UNWRITABLE:
      throw Failure(LUMVIK_HOST_UNSUPPORTED, what + ": " + OneLine(error.text));
    default:
      throw std::bad_alloc();
  }
}

// Receives properties. No exception may leave a callback: it returns 0, which ends as std::bad_alloc.
std::int32_t ReceiveProperty(void* user, const char* prefix, const char* name, const char* const* parts,
                             std::size_t count) noexcept {
  try {
    auto& settings = *static_cast<CameraRawSettings*>(user);
    auto& list = prefix == std::string_view(kOwnPrefix) ? settings.own_properties : settings.properties;
    list.emplace_back(name, std::vector<std::string>(parts, parts + count));
    return 1;
  } catch (const std::exception&) {
    return 0;
  }
}

// Receives an image and what is not in it.
struct CopyReceiver {
  std::string file;
  std::vector<std::string> left_out;
  std::string shown;  // the photograph

  static std::int32_t ReceiveFile(void* user, const void* data, std::size_t size) noexcept {
    try {
      static_cast<CopyReceiver*>(user)->file.assign(static_cast<const char*>(data), size);
      return 1;
    } catch (const std::exception&) {
      return 0;
    }
  }

  static std::int32_t ReceiveLeftOut(void* user, const char* what, const char* why) noexcept {
    try {
      auto& copy = *static_cast<CopyReceiver*>(user);
      copy.left_out.push_back(OneLine(std::string(what) + " of " + copy.shown + " was left out: " + why));
      return 1;
    } catch (const std::exception&) {
      return 0;
    }
  }
};

void ReadPacket(const std::string& path, CameraRawSettings& settings) {
  RequireContent(path, "'" + path + "'");
  const std::string packet = ReadBeginning(path, kMaxXmpBytes);
  lumvik_metadata_frame frame{};
  lumvik_metadata_error error{};
  RequireSuccess(
      ModuleCalls()->read_packet(packet.data(), packet.size(), &frame, ReceiveProperty, &settings, &error),
      "cannot read '" + path + "'", error);
  settings.file = path;
  settings.frame = {frame.width, frame.height, frame.orientation};
}

void ReadPhotograph(const std::string& path, CameraRawSettings& settings) {
  RequireContent(path, "'" + path + "'");
  lumvik_metadata_frame frame{};
  lumvik_metadata_error error{};
  const std::int32_t status =
      ModuleCalls()->read_photograph(path.c_str(), &frame, ReceiveProperty, &settings, &error);
  RequireSuccess(status, "cannot read '" + path + "'", error);
  if (status == LUMVIK_METADATA_NONE) {
    throw UnreadableSettings(LUMVIK_HOST_NOT_FOUND, path,
                             "it is neither an XMP file nor a photograph with metadata");
  }
  settings.file = path;
  settings.frame = {frame.width, frame.height, frame.orientation};
}

bool IsXmp(const std::string& path) {
  const std::string extension = PathOf(path).extension().u8string();
  return std::find(std::begin(kXmpExtensions), std::end(kXmpExtensions), extension) !=
         std::end(kXmpExtensions);
}

std::optional<std::string> XmpSidecar(const std::string& photograph) {
  for (const char* extension : kXmpExtensions) {
    if (auto sidecar = FindSidecar(photograph, extension)) return sidecar;
  }
  return std::nullopt;
}

// Empty if there is nothing to add. Exiv2 may change `image`.
std::string AddMetadata(std::string& image, const std::string& photograph, const std::string& shown,
                        const MetadataOptions& options, std::vector<std::string>& warnings) {
  RequireReadable(photograph);
  const lumvik_metadata_copy_options copy = {options.keep_position ? 1 : 0, options.is_srgb ? 1 : 0,
                                             options.copyright ? options.copyright->c_str() : nullptr};
  CopyReceiver received;
  received.shown = shown;
  lumvik_metadata_error error{};
  const std::int32_t status =
      ModuleCalls()->copy(photograph.c_str(), image.data(), image.size(), &copy, CopyReceiver::ReceiveFile,
                          CopyReceiver::ReceiveLeftOut, &received, &error);
  RequireSuccess(status, "cannot write the metadata", error);
  warnings.insert(warnings.end(), received.left_out.begin(), received.left_out.end());
  return received.file;
}

// The RAW file next to an XMP file to which it belongs by name: for "IMG.ARW.xmp" it is "IMG.ARW", for
// "IMG.xmp" it is "IMG" with any other extension, the first by name.
std::optional<RawFacts> RawNextTo(const std::string& xmp) {
  const fs::path stem = PathOf(xmp).replace_extension();
  std::error_code ignored;  // what cannot be listed is not found
  std::vector<fs::path> candidates;
  for (fs::directory_iterator entry(stem.has_parent_path() ? stem.parent_path() : ".", ignored), end;
       !ignored && entry != end; entry.increment(ignored)) {
    const fs::path name = entry->path().filename();
    const bool belongs = name == stem.filename() || name.stem() == stem.filename();
    if (belongs && !IsXmp(name.u8string())) candidates.push_back(entry->path());
  }
  std::sort(candidates.begin(), candidates.end());
  for (const fs::path& candidate : candidates) {
    if (!fs::is_regular_file(candidate, ignored)) continue;
    if (auto facts = ReadRawFacts(candidate.u8string())) return facts;
  }
  return std::nullopt;
}

void SetAsShot(CameraRawSettings& settings, const std::optional<RawFacts>& raw, const char* no_raw) {
  constexpr char kUnknown[] = "the white balance as shot is unknown: ";
  if (raw) settings.as_shot = raw->as_shot;
  settings.no_as_shot = std::string(kUnknown) + (raw ? "LibRaw has no color matrix of the camera" : no_raw);
}

}  // namespace

void RequireMetadataModule() {
  const ModuleCalls loaded;
}

CameraRawSettings ReadCameraRawSettings(const std::string& path) {
  CameraRawSettings settings;
  if (IsXmp(path)) {
    ReadPacket(path, settings);
    SetAsShot(settings, RawNextTo(path), "there is no RAW file next to the XMP file");
  } else {
    ReadPhotograph(path, settings);
    if (const auto sidecar = XmpSidecar(path)) {
      const StoredFrame frame = settings.frame;
      settings = {};
      ReadPacket(*sidecar, settings);
      settings.frame = frame;
    }
    SetAsShot(settings, ReadRawFacts(path), "the photograph is not a RAW file");
  }
  if (settings.properties.empty() && settings.own_properties.empty()) {
    throw UnreadableSettings(LUMVIK_HOST_NOT_FOUND, settings.file,
                             "it has no Camera Raw or Lightroom settings");
  }
  return settings;
}

std::string WithMetadata(std::string image, const std::string& photograph, const std::string& shown,
                         const MetadataOptions& options, std::vector<std::string>& warnings) {
  const std::string written = AddMetadata(image, photograph, shown, options, warnings);
  return written.empty() ? image : written;
}

ModuleExif ReadModuleExif(const std::string& path) {
  lumvik_metadata_exif exif{};
  lumvik_metadata_error ignored{};
  try {
    ModuleCalls()->read_exif(path.c_str(), &exif, &ignored);
  } catch (const Failure&) {
    return {};  // without the module
  }
  return {exif.lens, exif.datetime};
}

}  // namespace lumvik::host
