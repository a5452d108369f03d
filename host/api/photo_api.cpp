// Photographs: opening, describing, rendering and reading back.
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "api/arguments.h"
#include "api/photo_handle.h"
#include "api/quality.h"
#include "api/settings_handle.h"
#include "base/text_cut.h"
#include "files/format.h"
#include "lumvik.h"
#include "photo/engine_call.h"
#include "photo/preview.h"

namespace lumvik::host {
namespace {

constexpr int kFullQuality = 1;

lumvik_host_open_options OpenOptionsOf(const lumvik_host_open_options* given) {
  lumvik_host_open_options options = OptionsOf(given);
  if (options.quality == 0) options.quality = kFullQuality;
  CheckQuality(options.quality);
  return options;
}

lumvik_host_photo* Open(std::unique_ptr<PhotoSource> source, const lumvik_host_open_options& options) {
  auto object = std::make_shared<PhotoObject>(std::move(source), options);
  if (object->photo.Info().quality != options.quality && object->photo.IsRaw()) {
    LoadInBackground(object, options.quality);
  }
  return OpenPhoto(std::move(object));
}

lumvik_host_preview_options PreviewOptionsOf(const lumvik_host_preview_options* given) {
  const lumvik_host_preview_options options = OptionsOf(given);
  CheckPreviewOptions(options);
  return options;
}

void Store(int value, std::int32_t* stored) {
  if (stored != nullptr) *stored = value;
}

}  // namespace
}  // namespace lumvik::host

using namespace lumvik::host;

lumvik_host_status lumvik_host_open(const char* path, const lumvik_host_open_options* options,
                                    lumvik_host_photo** photo) {
  return Guarded([&] {
    RequireArgument(path, "path");
    RequireArgument(photo, "photo");
    const lumvik_host_open_options used = OpenOptionsOf(options);
    *photo = Open(PhotoSource::OfFile(path), used);
  });
}

lumvik_host_status lumvik_host_open_bytes(const void* data, size_t size,
                                          const lumvik_host_open_options* options,
                                          lumvik_host_photo** photo) {
  return Guarded([&] {
    RequireArgument(data, "data");
    RequireArgument(photo, "photo");
    const lumvik_host_open_options used = OpenOptionsOf(options);
    *photo = Open(PhotoSource::OfBytes({static_cast<const char*>(data), size}), used);
  });
}

lumvik_host_status lumvik_host_close(lumvik_host_photo* photo) {
  return Guarded([&] {
    if (photo != nullptr) ClosePhoto(photo);
  });
}

lumvik_host_status lumvik_host_get_error(lumvik_host_photo* photo, char* text, size_t capacity) {
  return WithPhotoAtOnce(photo, [&](const std::shared_ptr<PhotoObject>& object) {
    RequireArgument(text, "text");
    if (capacity == 0) throw Failure(LUMVIK_HOST_BUFFER_TOO_SMALL, "capacity is 0");
    CopyCut(object->error.Get().data(), text, capacity);
  });
}

lumvik_host_status lumvik_host_get_info(lumvik_host_photo* photo, lumvik_host_photo_info* info) {
  return WithPhotoObject(photo, [&](const std::shared_ptr<PhotoObject>& object) {
    RequireResult(info, "info");
    lumvik_host_photo_info present = object->photo.Info();
    present.is_proxy = object->load->IsWanted() ? 1 : 0;
    StoreResult(present, info);
  });
}

lumvik_host_status lumvik_host_set_settings(lumvik_host_photo* photo, lumvik_host_settings* settings) {
  return WithPhotoAtOnce(photo, [&](const std::shared_ptr<PhotoObject>& object) {
    object->settings.Set(
        std::make_shared<const Settings>(settings == nullptr ? Settings() : ValuesOf(settings)));
  });
}

lumvik_host_status lumvik_host_get_settings(lumvik_host_photo* photo, lumvik_host_settings** settings) {
  return WithPhotoAtOnce(photo, [&](const std::shared_ptr<PhotoObject>& object) {
    RequireArgument(settings, "settings");
    *settings = OpenSettings(*object->settings.Get());
  });
}

lumvik_host_status lumvik_host_render(lumvik_host_photo* photo) {
  return WithPhoto(photo, [](Photo& opened) { opened.RenderIfStale(); });
}

lumvik_host_status lumvik_host_get_preview_size(lumvik_host_photo* photo,
                                                const lumvik_host_preview_options* options, int32_t* width,
                                                int32_t* height) {
  return WithPhoto(photo, [&](Photo& opened) {
    RequireArgument(width, "width");
    RequireArgument(height, "height");
    const lumvik_host_preview_options used = PreviewOptionsOf(options);
    const PreviewLayout layout = LayoutOf(used, *opened.RenderedFrame(used.background_blur));
    Store(layout.width, width);
    Store(layout.height, height);
  });
}

lumvik_host_status lumvik_host_get_preview(lumvik_host_photo* photo,
                                           const lumvik_host_preview_options* options, uint8_t* pixels,
                                           size_t capacity, int32_t* width, int32_t* height) {
  return WithPhoto(photo, [&](Photo& opened) {
    RequireArgument(pixels, "pixels");
    const lumvik_host_preview_options used = PreviewOptionsOf(options);
    const auto frame = opened.RenderedFrame(used.background_blur);
    const PreviewLayout layout = LayoutOf(used, *frame);
    const bool fits = layout.Size() <= capacity;
    if (fits) CopyPreview(*frame, layout, pixels);
    Store(layout.width, width);
    Store(layout.height, height);
    if (!fits) {
      throw Failure(LUMVIK_HOST_BUFFER_TOO_SMALL, "the preview takes " + std::to_string(layout.Size()) +
                                                      " bytes, capacity is " + std::to_string(capacity));
    }
  });
}

lumvik_host_status lumvik_host_get_histogram(lumvik_host_photo* photo, lumvik_host_histogram* histogram) {
  return WithPhoto(photo, [&](Photo& opened) {
    RequireArgument(histogram, "histogram");
    opened.RenderIfStale();
    CallEngine(opened.Engine(), "cannot count the pixels of " + opened.Shown(), [&](EngineContext* context) {
      return lumvik_get_histogram(context, histogram->red, histogram->green, histogram->blue,
                                  histogram->luminance);
    });
  });
}

lumvik_host_status lumvik_host_identify(const char* path, int32_t* format) {
  return Guarded([&] {
    RequireArgument(path, "path");
    RequireArgument(format, "format");
    *format = IdentifyFormat(path, "'" + std::string(path) + "'");
  });
}
