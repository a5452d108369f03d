// Writing the image of a render, without metadata.
#ifndef LUMVIK_HOST_SAVE_IMAGE_EXPORT_H_
#define LUMVIK_HOST_SAVE_IMAGE_EXPORT_H_

#include "files/safe_file.h"
#include "photo/photo.h"
#include "save/save_plan.h"

namespace lumvik::host {

// Renders if necessary. In full size the file is as the engine exports it. Throws Failure.
void ExportImage(Photo& photo, const SavePlan& plan, const SafeFile& file);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_SAVE_IMAGE_EXPORT_H_
