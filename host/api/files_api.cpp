// Shooting data, and functions on files: thumbnail, perceptual hash, whether the metadata module is
// installed.
#include <cstdint>
#include <optional>
#include <string>

#include "api/arguments.h"
#include "api/guard.h"
#include "api/photo_handle.h"
#include "api/registry.h"
#include "files/file_reading.h"
#include "files/fingerprint.h"
#include "files/format.h"
#include "files/jpeg_size.h"
#include "files/served_file.h"
#include "lumvik.h"
#include "lumvik_host.h"
#include "metadata/metadata_module.h"
#include "metadata/shooting_data.h"
#include "photo/engine_call.h"
#include "thumbnail/thumbnail.h"

namespace lumvik::host {
namespace {

// The engine's status -1 does not tell a damaged file from one that is no photograph, but the latter are
// sorted out before.
[[noreturn]] void ThrowHashFailure(int status, const std::string& what) {
  switch (status) {
    case -1:
      throw Failure(LUMVIK_HOST_DAMAGED, what + ": it is damaged");
    case -2:
      throw Failure(LUMVIK_HOST_UNSUPPORTED, what + ": the RAW file has no preview");
    case -3:
      throw Failure(LUMVIK_HOST_DAMAGED,
                    what + ": the preview in the RAW file is damaged or in an unknown format");
    default:
      throw Failure(LUMVIK_HOST_DAMAGED, what + ": the preview in the RAW file cannot be decoded");
  }
}

std::uint64_t HashOf(const std::string& path) {
  const std::string what = "cannot read '" + path + "'";
  const lumvik_host_format format = IdentifyFormat(path, "'" + path + "'");
  // The engine goes by the name.
  const ServedFile served(path, format == LUMVIK_HOST_FORMAT_RAW ? Decoder::kRaw : Decoder::kImage);
  std::uint64_t hash = 0;
  const int status = CallLibrary(what, [&] { return lumvik_phash(served.Path().c_str(), &hash); });
  if (status == LUMVIK_OK) return hash;
  RequireReadable(path);  // the engine takes a file that is gone for a damaged one
  ThrowHashFailure(status, what);
}

}  // namespace
}  // namespace lumvik::host

lumvik_host_status lumvik_host_get_exif(lumvik_host_photo* photo, lumvik_host_exif* exif) {
  using namespace lumvik::host;
  return WithPhoto(photo, [&](Photo& opened) {
    RequireResult(exif, "exif");
    ExifInfo reported{};
    CallEngine(opened.Engine(), "cannot read the metadata of " + opened.Shown(),
               [&](EngineContext* context) { return lumvik_get_exif(context, &reported); });
    StoreResult(CompleteShootingData(reported, opened.SourcePath(), opened.IsRaw()), exif);
  });
}

lumvik_host_status lumvik_host_read_exif(const char* path, lumvik_host_exif* exif) {
  using namespace lumvik::host;
  return Guarded([&] {
    RequireArgument(path, "path");
    RequireResult(exif, "exif");
    StoreResult(ReadShootingData(path, IdentifyFormat(path, "'" + std::string(path) + "'")), exif);
  });
}

lumvik_host_status lumvik_host_get_warnings(lumvik_host_photo* photo, char** warnings) {
  using namespace lumvik::host;
  return WithPhoto(photo, [&](const Photo& opened) {
    RequireArgument(warnings, "warnings");
    std::string lines;
    for (const std::string& warning : opened.Warnings()) lines += warning + "\n";
    *warnings = LendText(lines);
  });
}

lumvik_host_status lumvik_host_fingerprint(const char* path, uint64_t* fingerprint) {
  using namespace lumvik::host;
  return Guarded([&] {
    RequireArgument(path, "path");
    RequireArgument(fingerprint, "fingerprint");
    *fingerprint = FingerprintOf(path);
  });
}

lumvik_host_status lumvik_host_extract_thumbnail(const char* path,
                                                 const lumvik_host_thumbnail_options* options, uint8_t** data,
                                                 size_t* size, int32_t* width, int32_t* height) {
  using namespace lumvik::host;
  return Guarded([&] {
    RequireArgument(path, "path");
    RequireArgument(data, "data");
    RequireArgument(size, "size");
    const std::string jpeg = MakeThumbnail(path, OptionsOf(options));
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(jpeg.data());
    const std::optional<JpegSize> pixels = JpegSizeOf(bytes, jpeg.size());
    if (!pixels) {
      throw Failure(LUMVIK_HOST_DAMAGED, "cannot read '" + std::string(path) + "': its preview is damaged");
    }
    *data = static_cast<std::uint8_t*>(Lend(bytes, jpeg.size()));
    *size = jpeg.size();
    if (width != nullptr) *width = pixels->width;
    if (height != nullptr) *height = pixels->height;
  });
}

lumvik_host_status lumvik_host_hash(const char* path, uint64_t* hash) {
  using namespace lumvik::host;
  return Guarded([&] {
    RequireArgument(path, "path");
    RequireArgument(hash, "hash");
    *hash = HashOf(path);
  });
}

lumvik_host_status lumvik_host_has_metadata_module() {
  return lumvik::host::Guarded([] { lumvik::host::RequireMetadataModule(); });
}
