// Shooting data, and functions on files: thumbnail, perceptual hash, whether the metadata module is
// installed.
#include <cstdint>
#include <functional>
#include <memory>
#include <new>
#include <optional>
#include <string>

#include "api/arguments.h"
#include "api/guard.h"
#include "api/photo_handle.h"
#include "api/registry.h"
#include "files/fingerprint.h"
#include "files/format.h"
#include "files/jpeg_size.h"
#include "files/served_file.h"
#include "lumvik.h"
#include "lumvik_host.h"
#include "metadata/metadata_module.h"
#include "metadata/shooting_data.h"
#include "photo/engine_call.h"

namespace lumvik::host {
namespace {

// A path-only tool of the engine. Its status -1 does not tell a damaged file from one that is no photograph,
// but the latter are sorted out before; what -4 means depends on the tool.
enum class PathTool { kThumbnail, kHash };

[[noreturn]] void ThrowPathToolFailure(int status, PathTool tool, const std::string& what) {
  switch (status) {
    case -1:
      throw Failure(LUMVIK_HOST_DAMAGED, what + ": it is damaged");
    case -2:
      throw Failure(LUMVIK_HOST_UNSUPPORTED, what + ": the RAW file has no preview");
    case -3:
      throw Failure(LUMVIK_HOST_DAMAGED,
                    what + ": the preview in the RAW file is damaged or in an unknown format");
    default:
      if (tool == PathTool::kThumbnail) throw std::bad_alloc();
      throw Failure(LUMVIK_HOST_DAMAGED, what + ": the preview in the RAW file cannot be decoded");
  }
}

// Calls the tool with a path whose name matches the content of the file.
void RunPathTool(PathTool tool, const std::string& path, const std::function<int(const char*)>& call) {
  const std::string what = "cannot read '" + path + "'";
  const lumvik_host_format format = IdentifyFormat(path, "'" + path + "'");
  const ServedFile served(path, format == LUMVIK_HOST_FORMAT_RAW ? Decoder::kRaw : Decoder::kImage);
  const int status = CallLibrary(what, [&] { return call(served.Path().c_str()); });
  if (status != LUMVIK_OK) ThrowPathToolFailure(status, tool, what);
}

struct ThumbnailBytes {
  std::unique_ptr<std::uint8_t, decltype(&lumvik_free_thumb)> data{nullptr, lumvik_free_thumb};
  std::size_t size = 0;
};

ThumbnailBytes ExtractThumbnail(const std::string& path) {
  ThumbnailBytes bytes;
  RunPathTool(PathTool::kThumbnail, path, [&](const char* served) {
    std::uint8_t* data = nullptr;
    int size = 0;
    const int status = lumvik_extract_thumbnail(served, &data, &size);
    bytes.data.reset(data);
    bytes.size = static_cast<std::size_t>(size);
    return status;
  });
  return bytes;
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
    OptionsOf(options);
    const ThumbnailBytes bytes = ExtractThumbnail(path);
    const std::optional<JpegSize> pixels = JpegSizeOf(bytes.data.get(), bytes.size);
    if (!pixels) {
      throw Failure(LUMVIK_HOST_DAMAGED, "cannot read '" + std::string(path) + "': its preview is damaged");
    }
    *data = static_cast<std::uint8_t*>(Lend(bytes.data.get(), bytes.size));
    *size = bytes.size;
    if (width != nullptr) *width = pixels->width;
    if (height != nullptr) *height = pixels->height;
  });
}

lumvik_host_status lumvik_host_hash(const char* path, uint64_t* hash) {
  using namespace lumvik::host;
  return Guarded([&] {
    RequireArgument(path, "path");
    RequireArgument(hash, "hash");
    std::uint64_t computed = 0;
    RunPathTool(PathTool::kHash, path, [&](const char* served) { return lumvik_phash(served, &computed); });
    *hash = computed;
  });
}

lumvik_host_status lumvik_host_has_metadata_module() {
  return lumvik::host::Guarded([] { lumvik::host::RequireMetadataModule(); });
}
