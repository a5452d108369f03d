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

void Render(EngineContext& context) {
  // A photograph that is rendered twice is being edited, and many renders follow. One that is not, as in a
  // batch, should not take the memory.
  if (context.was_rendered && !context.reuse) context.reuse.emplace();
  DevelopPipeline(context.source, context.adjustments, context.rendered);
  context.was_rendered = true;
}

void RenderIfStale(EngineContext& context) {
  if (!context.render_valid) Render(context);
}

}  // namespace lumvik
