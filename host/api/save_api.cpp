// Saving.
#include <cstdint>
#include <string_view>

#include "api/arguments.h"
#include "api/guard.h"
#include "files/safe_file.h"
#include "lumvik_host.h"
#include "save/png_encoding.h"

namespace {

using namespace lumvik::host;

Overwrite OverwriteOf(std::int32_t flag) {
  return flag != 0 ? Overwrite::kYes : Overwrite::kNo;
}

}  // namespace

lumvik_host_status lumvik_host_write_file(const char* path, const void* data, size_t size,
                                          int32_t overwrite) {
  return Guarded([&] {
    RequireArgument(path, "path");
    RequireArgument(data, "data");
    WriteSafely(path, {static_cast<const char*>(data), size}, OverwriteOf(overwrite));
  });
}

lumvik_host_status lumvik_host_write_png(const char* path, const uint8_t* pixels, int32_t width,
                                         int32_t height, int32_t channels, int32_t overwrite) {
  return Guarded([&] {
    RequireArgument(path, "path");
    RequireArgument(pixels, "pixels");
    SafeFile file(path, OverwriteOf(overwrite));
    file.Write(EncodePng(pixels, width, height, channels));
    file.Commit();
  });
}
