// Functions on files: thumbnail, perceptual hash, and whether the metadata module is installed.
#include <memory>
#include <new>
#include <string>

#include "api/arguments.h"
#include "api/guard.h"
#include "api/registry.h"
#include "files/file_reading.h"
#include "files/jpeg_size.h"
#include "lumvik.h"
#include "lumvik_host.h"
#include "metadata/metadata_module.h"

namespace lumvik::host {
namespace {

// What the status -4 of a path-only tool means depends on the tool.
enum class PathTool { kThumbnail, kHash };

[[noreturn]] void ThrowPathToolFailure(int status, PathTool tool, const std::string& path) {
  const std::string failure = "cannot read '" + path + "': ";
  switch (status) {
    case -1:
      throw Failure(LUMVIK_HOST_NOT_A_PHOTOGRAPH, failure + "it is not a photograph, or it is damaged");
    case -2:
      throw Failure(LUMVIK_HOST_UNSUPPORTED, failure + "the RAW file has no preview");
    case -3:
      throw Failure(LUMVIK_HOST_DAMAGED,
                    failure + "the preview in the RAW file is damaged or in an unknown format");
    default:
      if (tool == PathTool::kThumbnail) throw std::bad_alloc();
      throw Failure(LUMVIK_HOST_DAMAGED, failure + "the preview in the RAW file cannot be decoded");
  }
}

struct ThumbnailBytes {
  std::unique_ptr<std::uint8_t, decltype(&lumvik_free_thumb)> data{nullptr, lumvik_free_thumb};
  std::size_t size = 0;
};

ThumbnailBytes ExtractThumbnail(const std::string& path) {
  RequireReadable(path);
  std::uint8_t* data = nullptr;
  int size = 0;
  const int status = lumvik_extract_thumbnail(path.c_str(), &data, &size);
  if (status != 0) ThrowPathToolFailure(status, PathTool::kThumbnail, path);
  ThumbnailBytes bytes;
  bytes.data.reset(data);
  bytes.size = static_cast<std::size_t>(size);
  return bytes;
}

}  // namespace
}  // namespace lumvik::host

lumvik_host_status lumvik_host_extract_thumbnail(const char* path, uint8_t** data, size_t* size,
                                                 int32_t* width, int32_t* height) {
  using namespace lumvik::host;
  return Guarded([&] {
    RequireArgument(path, "path");
    RequireArgument(data, "data");
    RequireArgument(size, "size");
    const ThumbnailBytes bytes = ExtractThumbnail(path);
    const std::optional<JpegSize> pixels = JpegSizeOf(bytes.data.get(), bytes.size);
    if (!pixels) ThrowPathToolFailure(-3, PathTool::kThumbnail, path);
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
    RequireReadable(path);
    std::uint64_t computed = 0;
    const int status = lumvik_phash(path, &computed);
    if (status != 0) ThrowPathToolFailure(status, PathTool::kHash, path);
    *hash = computed;
  });
}

lumvik_host_status lumvik_host_has_metadata_module() {
  return lumvik::host::Guarded([] { lumvik::host::RequireMetadataModule(); });
}
