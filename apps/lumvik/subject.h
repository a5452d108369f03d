// The subject of a photograph, as commands look for it.
#ifndef LUMVIK_APPS_SUBJECT_H_
#define LUMVIK_APPS_SUBJECT_H_

#include <CLI/App.hpp>
#include <string>

#include "engine.h"

namespace lumvik {

// Where to look, in fractions of width and height. Below 0: in the middle.
struct SubjectPoint {
  float x = -1;
  float y = -1;
};

// Adds --at X,Y; `point` must outlive the command.
CLI::Option* AddSubjectOption(CLI::App& command, SubjectPoint& point);

// Finds the subject of the loaded photograph `input`. Throws std::runtime_error when that fails, also for a
// photograph that is not a camera RAW file.
void FindSubject(const std::string& input, SubjectPoint point, Engine& engine);

}  // namespace lumvik

#endif  // LUMVIK_APPS_SUBJECT_H_
