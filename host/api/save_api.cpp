// Saving.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "api/arguments.h"
#include "api/photo_handle.h"
#include "api/registry.h"
#include "files/intact_mark.h"
#include "files/safe_file.h"
#include "lumvik_host.h"
#include "save/mark.h"
#include "save/output_format.h"
#include "save/png_encoding.h"
#include "save/save_plan.h"
#include "save/saving.h"

using namespace lumvik::host;

int32_t lumvik_host_format_of(const char* path) {
  int32_t format = LUMVIK_HOST_FORMAT_UNKNOWN;
  Guarded([&] {
    RequireArgument(path, "path");
    format = OutputFormatOf(path);
  });
  return format;
}

const char* lumvik_host_extension_of(int32_t format) {
  return ExtensionOf(format);
}

lumvik_host_status lumvik_host_save(lumvik_host_photo* photo, const char* path,
                                    const lumvik_host_save_options* options) {
  return WithPhoto(photo, [&](Photo& opened) {
    RequireArgument(path, "path");
    SaveToFile(opened, PlanForFile(OptionsOf(options), path), path);
  });
}

lumvik_host_status lumvik_host_save_bytes(lumvik_host_photo* photo, const lumvik_host_save_options* options,
                                          uint8_t** data, size_t* size) {
  return WithPhoto(photo, [&](Photo& opened) {
    RequireArgument(data, "data");
    RequireArgument(size, "size");
    const std::string bytes = SaveToBytes(opened, PlanForBytes(OptionsOf(options)));
    *data = static_cast<uint8_t*>(Lend(bytes.data(), bytes.size()));
    *size = bytes.size();
  });
}

lumvik_host_status lumvik_host_save_cutout(lumvik_host_photo* photo, const char* path,
                                           const lumvik_host_save_options* options) {
  return WithPhoto(photo, [&](Photo& opened) {
    RequireArgument(path, "path");
    SaveCutout(opened, path, PlanForPng(OptionsOf(options)));
  });
}

lumvik_host_status lumvik_host_write_file(const char* path, const void* data, size_t size,
                                          int32_t overwrite) {
  return Guarded([&] {
    RequireArgument(path, "path");
    RequireArgument(data, "data");
    WriteSafely(path, {static_cast<const char*>(data), size}, OverwriteOf(overwrite));
  });
}

lumvik_host_status lumvik_host_write_png(const char* path, const uint8_t* pixels, int32_t width,
                                         int32_t height, int32_t channels,
                                         const lumvik_host_save_options* options) {
  return Guarded([&] {
    RequireArgument(path, "path");
    RequireArgument(pixels, "pixels");
    const PngPlan plan = PlanForPng(OptionsOf(options));
    SafeFile file(path, plan.overwrite);
    std::string png = EncodePng(pixels, width, height, channels);
    if (plan.mark) png = WithMark(std::move(png), LUMVIK_HOST_FORMAT_PNG, *plan.mark);
    file.Write(png);
    file.Commit();
  });
}

lumvik_host_status lumvik_host_read_mark(const char* path, char** mark) {
  return Guarded([&] {
    RequireArgument(path, "path");
    RequireArgument(mark, "mark");
    const std::optional<std::string> intact = IntactMarkOf(path);
    if (!intact) throw Failure(LUMVIK_HOST_NOT_FOUND, "'" + std::string(path) + "' has no intact mark");
    *mark = LendText(*intact);
  });
}
