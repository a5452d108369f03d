// Saving renders. Each function throws Failure.
#ifndef LUMVIK_HOST_SAVE_SAVING_H_
#define LUMVIK_HOST_SAVE_SAVING_H_

#include <string>

#include "files/safe_file.h"
#include "photo/photo.h"
#include "save/save_plan.h"

namespace lumvik::host {

void SaveToFile(Photo& photo, const SavePlan& plan, const std::string& path);

std::string SaveToBytes(Photo& photo, const SavePlan& plan);

// The subject on a transparent background, as a PNG.
void SaveCutout(Photo& photo, const std::string& path, const PngPlan& plan);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_SAVE_SAVING_H_
