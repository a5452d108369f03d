// Suggestions and the subject.
#include <cstddef>
#include <string>

#include "api/arguments.h"
#include "api/photo_handle.h"
#include "api/settings_handle.h"
#include "photo/engine_call.h"
#include "photo/suggestions.h"

using namespace lumvik::host;

lumvik_host_status lumvik_host_suggest(lumvik_host_photo* photo, uint32_t what,
                                       lumvik_host_settings** settings) {
  return WithPhoto(photo, [&](const Photo& opened) {
    RequireArgument(settings, "settings");
    *settings = OpenSettings(Suggest(opened, what));
  });
}

lumvik_host_status lumvik_host_find_subject(lumvik_host_photo* photo, float x, float y) {
  return WithPhoto(photo, [&](Photo& opened) {
    if (!(x <= 1) || !(y <= 1)) {
      throw Failure(LUMVIK_HOST_INVALID_ARGUMENT, "the point is " + std::to_string(x) + ", " +
                                                      std::to_string(y) + ", which is not in the preview");
    }
    opened.FindSubject({x, y});
  });
}

lumvik_host_status lumvik_host_get_mask(lumvik_host_photo* photo, uint8_t* mask, size_t capacity,
                                        int32_t* width, int32_t* height) {
  return WithPhoto(photo, [&](const Photo& opened) {
    RequireArgument(mask, "mask");
    RequireArgument(width, "width");
    RequireArgument(height, "height");
    if (!opened.HasMask()) {
      throw Failure(LUMVIK_HOST_NOT_FOUND, "no subject was found in " + opened.Shown() + " yet");
    }
    const lumvik_host_photo_info info = opened.Info();
    const auto size = static_cast<std::size_t>(info.width) * static_cast<std::size_t>(info.height);
    *width = info.width;
    *height = info.height;
    if (capacity < size) {
      throw Failure(LUMVIK_HOST_BUFFER_TOO_SMALL, "the mask takes " + std::to_string(size) +
                                                      " bytes, capacity is " + std::to_string(capacity));
    }
    CallEngine(opened.Engine(), "cannot copy the mask of " + opened.Shown(), [&](EngineContext* context) {
      return lumvik_get_mask(context, mask, static_cast<int>(size));
    });
  });
}
