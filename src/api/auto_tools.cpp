// The automatic tools, which work on the undeveloped image.
#include <algorithm>

#include "analysis/auto_crop.h"
#include "analysis/auto_exposure.h"
#include "analysis/auto_straighten.h"
#include "analysis/scene_analysis.h"
#include "api/engine_context.h"

namespace lumvik {
namespace {

const ImageBuffer& UndevelopedImage(const EngineContext& context) {
  return context.decoded.image.empty() ? context.source : context.decoded.image;
}

}  // namespace
}  // namespace lumvik

int lumvik_auto_exposure(EngineContext* ctx, float* exposure) {
  if (ctx == nullptr || exposure == nullptr || !lumvik::RequireImage(*ctx)) return lumvik::kFailure;
  *exposure = lumvik::AutoExposure(lumvik::UndevelopedImage(*ctx));
  return lumvik::kSuccess;
}

int lumvik_auto_white_balance(EngineContext* ctx, float* temperature, float* tint) {
  if (ctx == nullptr || temperature == nullptr || tint == nullptr || !lumvik::RequireImage(*ctx)) {
    return lumvik::kFailure;
  }
  const lumvik::Suggestions suggestions = lumvik::analyze_scene(lumvik::UndevelopedImage(*ctx));
  *temperature = suggestions[lumvik::kTemperatureSlot];
  *tint = suggestions[lumvik::kTintSlot];
  return lumvik::kSuccess;
}

int lumvik_auto_enhance(EngineContext* ctx, float* slots) {
  if (ctx == nullptr || slots == nullptr || !lumvik::RequireImage(*ctx)) return lumvik::kFailure;
  const lumvik::Suggestions suggestions = lumvik::analyze_scene(lumvik::UndevelopedImage(*ctx));
  std::copy(suggestions.begin(), suggestions.end(), slots);
  return lumvik::kSuccess;
}

int lumvik_auto_crop(EngineContext* ctx, float* x, float* y, float* w, float* h) {
  if (ctx == nullptr || x == nullptr || y == nullptr || w == nullptr || h == nullptr ||
      !lumvik::RequireImage(*ctx)) {
    return lumvik::kFailure;
  }
  const lumvik::CropRectangle crop = lumvik::AutoCrop(lumvik::UndevelopedImage(*ctx));
  *x = crop.x, *y = crop.y, *w = crop.w, *h = crop.h;
  return lumvik::kSuccess;
}

int lumvik_auto_straighten(EngineContext* ctx, float* angle) {
  if (ctx == nullptr || angle == nullptr || !lumvik::RequireImage(*ctx)) return lumvik::kFailure;
  *angle = lumvik::AutoStraighten(lumvik::UndevelopedImage(*ctx));
  return lumvik::kSuccess;
}
