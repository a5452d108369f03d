// Rendering on request.
#include "api/engine_context.h"
#include "pipeline/develop_pipeline.h"

int lumvik_process(EngineContext* ctx) {
  if (ctx == nullptr || !lumvik::RequireImage(*ctx)) return lumvik::kFailure;
  lumvik::DevelopPipeline(ctx->source, ctx->adjustments, ctx->rendered);
  ctx->render_valid = true;
  return lumvik::kSuccess;
}
