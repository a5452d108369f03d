// What the engine's automatic tools suggest for a loaded photograph, as settings.
#ifndef LUMVIK_APPS_SUGGESTIONS_H_
#define LUMVIK_APPS_SUGGESTIONS_H_

#include "engine.h"
#include "settings.h"

namespace lumvik {

// Each throws std::runtime_error when the engine fails.

Settings SuggestedExposure(Engine& engine);
Settings SuggestedWhiteBalance(Engine& engine);

// Tone, color and detail. The sharpening radius is not among them: the engine fills its slot with 0, by
// which nothing can be sharpened.
Settings SuggestedEnhancement(Engine& engine);

Settings SuggestedCrop(Engine& engine);

// The rotation that levels the lines near the horizontal.
Settings SuggestedRotation(Engine& engine);

}  // namespace lumvik

#endif  // LUMVIK_APPS_SUGGESTIONS_H_
