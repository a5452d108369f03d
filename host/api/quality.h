// The quality of RAW files.
#ifndef LUMVIK_HOST_API_QUALITY_H_
#define LUMVIK_HOST_API_QUALITY_H_

#include <memory>

#include "api/photo_handle.h"

namespace lumvik::host {

// Throws Failure unless it is in 1..4.
void CheckQuality(int quality);

// Loads the photograph at this quality in a separate thread, unless the photo is closed meanwhile. Throws
// std::system_error if there is no thread.
void LoadInBackground(const std::shared_ptr<PhotoObject>& object, int quality);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_API_QUALITY_H_
