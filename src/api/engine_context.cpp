#include "api/engine_context.h"

#include <lcms2.h>

#include "pipeline/develop_pipeline.h"

namespace lumvik {

IccProfileHolder::~IccProfileHolder() {
  if (handle_ != nullptr) cmsCloseProfile(handle_);
}

bool RequireImage(EngineContext& context) {
  const bool loaded = !context.decoded.image.empty() || !context.source.empty();
  if (!loaded) Fail(context, "no image loaded");
  return loaded;
}

int Fail(EngineContext& context, std::string text) {
  context.last_error = std::move(text);
  return kFailure;
}

void ResetAdjustments(EngineContext& context) {
  context.adjustments = Adjustments();
  context.render_valid = false;
}

void RenderIfStale(EngineContext& context) {
  if (!context.render_valid) DevelopPipeline(context.source, context.adjustments, context.rendered);
}

}  // namespace lumvik
