// Which existing files a command may replace.
#ifndef LUMVIK_APPS_OPTIONS_OVERWRITE_H_
#define LUMVIK_APPS_OPTIONS_OVERWRITE_H_

#include "lumvik_host.hpp"

namespace lumvik {

inline api::SaveOptions Overwriting() {
  api::SaveOptions options;
  options.overwrite = LUMVIK_HOST_OVERWRITE_ANY;
  return options;
}

}  // namespace lumvik

#endif  // LUMVIK_APPS_OPTIONS_OVERWRITE_H_
