#include "photo/engine_image.h"

#include <new>

#include "base/failure.h"
#include "files/served_file.h"
#include "photo/engine_call.h"

namespace lumvik::host {

EngineImage::EngineImage(const std::string& path, int quality, const std::string& shown)
    : context_(lumvik_create_context(), lumvik_destroy_context), quality_(quality) {
  if (!context_) throw std::bad_alloc();
  const std::string what = "cannot open " + shown;
  EngineContext* const context = context_.get();
  if (CallLibrary(what, [&] { return lumvik_load_arw(context, path.c_str(), quality); }) != LUMVIK_OK) {
    const bool is_image = DecoderFor(path) == Decoder::kImage;
    throw LoadFailure(what, is_image ? "its image data cannot be decoded" : lumvik_last_error(context));
  }
  width_ = lumvik_get_width(context);
  height_ = lumvik_get_height(context);
}

}  // namespace lumvik::host
