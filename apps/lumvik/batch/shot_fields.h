// Reads the fields of output names from photographs.
#ifndef LUMVIK_APPS_BATCH_SHOT_FIELDS_H_
#define LUMVIK_APPS_BATCH_SHOT_FIELDS_H_

#include <string>
#include <vector>

#include "batch/name_fields.h"

namespace lumvik {

// Throws Interruption.
std::vector<ShotFields> ReadShotFields(const std::vector<std::string>& photographs);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_SHOT_FIELDS_H_
