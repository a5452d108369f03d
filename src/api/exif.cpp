// EXIF data of the loaded photograph.
#include "api/engine_context.h"
#include "image/exif_info.h"

int lumvik_get_exif(EngineContext* ctx, ExifInfo* info) {
  if (ctx == nullptr || info == nullptr) return lumvik::kFailure;
  if (ctx->source_path.empty()) return lumvik::Fail(*ctx, "no file loaded");
  if (!lumvik::ReadExifFile(ctx->source_path, *info)) *info = lumvik::ExifInfoFromDecoded(ctx->decoded);
  return lumvik::kSuccess;
}
