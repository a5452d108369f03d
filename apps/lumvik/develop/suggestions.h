// Settings suggested by the engine's automatic tools for a loaded photograph.
#ifndef LUMVIK_APPS_DEVELOP_SUGGESTIONS_H_
#define LUMVIK_APPS_DEVELOP_SUGGESTIONS_H_

#include "develop/engine.h"
#include "develop/settings.h"

namespace lumvik {

// Each function throws std::runtime_error when the engine fails.

Settings SuggestedExposure(Engine& engine);
Settings SuggestedWhiteBalance(Engine& engine);

// Tone, color and detail, except for the sharpening radius: the engine suggests 0, which it cannot apply.
Settings SuggestedEnhancement(Engine& engine);

Settings SuggestedCrop(Engine& engine);

// The rotation that levels near-horizontal lines.
Settings SuggestedRotation(Engine& engine);

}  // namespace lumvik

#endif  // LUMVIK_APPS_DEVELOP_SUGGESTIONS_H_
