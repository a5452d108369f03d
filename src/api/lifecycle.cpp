// The library itself: version, contexts, last error, image size.
#include "api/engine_context.h"

namespace {

// The image a host would see now: the current render, else the loaded image.
const cv::Mat& VisibleImage(const EngineContext& context) {
  if (context.render_valid && !context.rendered.empty()) return context.rendered;
  return context.decoded.image.empty() ? context.source : context.decoded.image;
}

}  // namespace

int lumvik_init() {
  return lumvik::kSuccess;
}

void lumvik_shutdown() {}

const char* lumvik_version() {
  return LUMVIK_VERSION_TEXT;
}

EngineContext* lumvik_create_context() {
  try {
    return new EngineContext();
  } catch (...) {
    return nullptr;
  }
}

void lumvik_destroy_context(EngineContext* ctx) {
  delete ctx;
}

const char* lumvik_last_error(EngineContext* ctx) {
  return ctx == nullptr ? "null context" : ctx->last_error.c_str();
}

int lumvik_get_width(EngineContext* ctx) {
  return ctx == nullptr ? 0 : VisibleImage(*ctx).cols;
}

int lumvik_get_height(EngineContext* ctx) {
  return ctx == nullptr ? 0 : VisibleImage(*ctx).rows;
}
