#include "photo/suggestions.h"

#include <array>
#include <cstddef>
#include <iterator>
#include <string>

#include "photo/engine_call.h"

namespace lumvik::host {
namespace {

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
                                         nullptr,  // radius: the engine suggests 0, which it cannot apply
                                         "sharpening_threshold",
                                         "nr_luminance",
                                         "nr_color"};

using Values = std::array<float, LUMVIK_ENHANCE_SLOTS>;

struct AutoTool {
  std::uint32_t flag;
  int (*analyze)(EngineContext* context, Values& values);
  void (*store)(const Values& values, Settings& suggested);
};

constexpr AutoTool kAutoTools[] = {
    {LUMVIK_HOST_SUGGEST_ENHANCEMENT,
     [](EngineContext* context, Values& values) { return lumvik_auto_enhance(context, values.data()); },
     [](const Values& values, Settings& suggested) {
       for (std::size_t slot = 0; slot < std::size(kEnhanceSlots); ++slot) {
         if (kEnhanceSlots[slot] != nullptr) suggested[kEnhanceSlots[slot]] = values[slot];
       }
     }},
    {LUMVIK_HOST_SUGGEST_EXPOSURE,
     [](EngineContext* context, Values& values) { return lumvik_auto_exposure(context, values.data()); },
     [](const Values& values, Settings& suggested) { suggested["exposure"] = values[0]; }},
    {LUMVIK_HOST_SUGGEST_WHITE_BALANCE,
     [](EngineContext* context, Values& values) {
       return lumvik_auto_white_balance(context, values.data(), &values[1]);
     },
     [](const Values& values, Settings& suggested) {
       suggested["temperature"] = values[0];
       suggested["tint"] = values[1];
     }},
    {LUMVIK_HOST_SUGGEST_CROP,
     [](EngineContext* context, Values& values) {
       return lumvik_auto_crop(context, values.data(), &values[1], &values[2], &values[3]);
     },
     [](const Values& values, Settings& suggested) {
       suggested["crop.x"] = values[0];
       suggested["crop.y"] = values[1];
       suggested["crop.w"] = values[2];
       suggested["crop.h"] = values[3];
     }},
    {LUMVIK_HOST_SUGGEST_ROTATION,
     [](EngineContext* context, Values& values) { return lumvik_auto_straighten(context, values.data()); },
     // The engine returns how far lines rise to the right, while positive rotation is counterclockwise.
     [](const Values& values, Settings& suggested) { suggested["rotation"] = 0.0F - values[0]; }},
};

}  // namespace

Settings Suggest(const Photo& photo, std::uint32_t what) {
  Settings suggested;
  std::uint32_t known = 0;
  for (const AutoTool& tool : kAutoTools) known |= tool.flag;
  if (what == 0 || (what & ~known) != 0) {
    throw Failure(LUMVIK_HOST_INVALID_ARGUMENT,
                  "what is " + std::to_string(what) + ", which is no combination of suggestions");
  }
  for (const AutoTool& tool : kAutoTools) {
    if ((what & tool.flag) == 0) continue;
    Values values{};
    CallEngine(photo.Engine(), "cannot analyze " + photo.Shown(),
               [&](EngineContext* context) { return tool.analyze(context, values); });
    tool.store(values, suggested);
  }
  return suggested;
}

}  // namespace lumvik::host
