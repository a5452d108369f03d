// Whether a written picture is all there.
#ifndef LUMVIK_APPS_WHOLE_PICTURE_H_
#define LUMVIK_APPS_WHOLE_PICTURE_H_

#include <string>

#include "output_format.h"

namespace lumvik {

// Looks for what a writer puts into a file of this format last: a file that a full disk or a power failure
// cut off does not have it.
bool IsWholePicture(const std::string& path, OutputFormat format);

}  // namespace lumvik

#endif  // LUMVIK_APPS_WHOLE_PICTURE_H_
