// Detects truncated image files.
#ifndef LUMVIK_APPS_DEVELOP_COMPLETE_IMAGE_H_
#define LUMVIK_APPS_DEVELOP_COMPLETE_IMAGE_H_

#include <string>

#include "develop/output_format.h"

namespace lumvik {

// Whether the file is complete: a JPEG or PNG has its end marker, and a TIFF everything its directories refer
// to. Files truncated by a full disk or a power failure do not.
bool IsCompleteImage(const std::string& path, OutputFormat format);

}  // namespace lumvik

#endif  // LUMVIK_APPS_DEVELOP_COMPLETE_IMAGE_H_
