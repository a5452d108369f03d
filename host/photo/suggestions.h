// Settings suggested by the engine's automatic tools.
#ifndef LUMVIK_HOST_PHOTO_SUGGESTIONS_H_
#define LUMVIK_HOST_PHOTO_SUGGESTIONS_H_

#include <cstdint>

#include "photo/photo.h"
#include "settings/settings.h"

namespace lumvik::host {

// `what` combines LUMVIK_HOST_SUGGEST_*. What is suggested on its own takes precedence over what belongs to
// the enhancement. Throws Failure.
Settings Suggest(const Photo& photo, std::uint32_t what);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_PHOTO_SUGGESTIONS_H_
