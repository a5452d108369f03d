#include "develop/suggestions.h"

#include <array>
#include <cstddef>
#include <iterator>

namespace lumvik {
namespace {

constexpr char kFailure[] = "cannot analyze the photograph";

// The settings in the slots of lumvik_auto_enhance().
constexpr const char* kEnhanceSlots[] = {"exposure",
                                         "brightness",
                                         "contrast",
                                         "highlights",
                                         "shadows",
                                         "whites",
                                         "blacks",
                                         "temperature",
                                         "tint",
                                         "saturation",
                                         "vibrance",
                                         "sharpening_amount",
                                         nullptr,  // radius
                                         "sharpening_threshold",
                                         "nr_luminance",
                                         "nr_color"};

}  // namespace

Settings SuggestedExposure(Engine& engine) {
  float exposure = 0;
  engine.Run(kFailure, [&](EngineContext* context) { return lumvik_auto_exposure(context, &exposure); });
  return {{"exposure", exposure}};
}

Settings SuggestedWhiteBalance(Engine& engine) {
  float temperature = 0;
  float tint = 0;
  engine.Run(kFailure,
             [&](EngineContext* context) { return lumvik_auto_white_balance(context, &temperature, &tint); });
  return {{"temperature", temperature}, {"tint", tint}};
}

Settings SuggestedEnhancement(Engine& engine) {
  std::array<float, LUMVIK_ENHANCE_SLOTS> slots{};
  engine.Run(kFailure, [&](EngineContext* context) { return lumvik_auto_enhance(context, slots.data()); });
  Settings settings;
  for (std::size_t slot = 0; slot < std::size(kEnhanceSlots); ++slot) {
    if (kEnhanceSlots[slot] != nullptr) settings[kEnhanceSlots[slot]] = slots[slot];
  }
  return settings;
}

Settings SuggestedCrop(Engine& engine) {
  float x = 0;
  float y = 0;
  float w = 0;
  float h = 0;
  engine.Run(kFailure, [&](EngineContext* context) { return lumvik_auto_crop(context, &x, &y, &w, &h); });
  return {{"crop.x", x}, {"crop.y", y}, {"crop.w", w}, {"crop.h", h}};
}

Settings SuggestedRotation(Engine& engine) {
  float lean = 0;
  engine.Run(kFailure, [&](EngineContext* context) { return lumvik_auto_straighten(context, &lean); });
  // The engine returns how far lines rise to the right, while positive rotation is counterclockwise.
  return {{"rotation", 0.0F - lean}};
}

}  // namespace lumvik
