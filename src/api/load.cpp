// Loading and unloading a photograph.
#include <algorithm>

#include "api/engine_context.h"
#include "image/image_loader.h"

namespace lumvik {
namespace {

// Frees the memory kept for more renders of the photograph.
void ForgetRenders(EngineContext& context) {
  context.was_rendered = false;
  context.reuse.reset();
}

// Only moves, which cannot throw: an exception during a load leaves the earlier photograph intact.
void ReplacePhotograph(EngineContext& context, DecodedImage decoded, ImageBuffer source, std::string path) {
  context.decoded = std::move(decoded);
  context.source = std::move(source);
  context.source_path = std::move(path);
  ForgetRenders(context);
  ResetAdjustments(context);
}

int LoadStandard(EngineContext& context, std::string path) {
  ImageBuffer source = LoadStandardImage(path);
  if (source.empty()) return Fail(context, "OpenCV could not read: " + path);
  ReplacePhotograph(context, DecodedImage(), std::move(source), std::move(path));
  return kSuccess;
}

int LoadRaw(EngineContext& context, std::string path, int quality) {
  DecodedImage decoded = context.decoded;
  if (!DecodeRaw(path, std::clamp<int>(quality, kRawFull, kRawQuarter), decoded)) {
    context.decoded = std::move(decoded);
    return Fail(context, context.decoded.error);
  }
  ImageBuffer source;
  AssignImage(source, decoded.image);
  ReplacePhotograph(context, std::move(decoded), std::move(source), std::move(path));
  return kSuccess;
}

}  // namespace
}  // namespace lumvik

int lumvik_load_arw(EngineContext* ctx, const char* path, int quality) {
  if (ctx == nullptr || path == nullptr) return lumvik::kFailure;
  ctx->render_valid = false;
  return lumvik::IsStandardImagePath(path) ? lumvik::LoadStandard(*ctx, path)
                                           : lumvik::LoadRaw(*ctx, path, quality);
}

void lumvik_unload(EngineContext* ctx) {
  if (ctx == nullptr) return;
  ctx->decoded = lumvik::DecodedImage();
  ctx->source.release();
  ctx->rendered.release();
  lumvik::ForgetRenders(*ctx);
  ctx->render_valid = false;
  ctx->source_path.clear();
}
