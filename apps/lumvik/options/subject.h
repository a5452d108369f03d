// Finding the subject of a photograph.
#ifndef LUMVIK_APPS_OPTIONS_SUBJECT_H_
#define LUMVIK_APPS_OPTIONS_SUBJECT_H_

#include <CLI/App.hpp>
#include <string>

#include "develop/engine.h"

namespace lumvik {

// Where to look, in fractions of width and height; negative for the center.
struct SubjectPoint {
  float x = -1;
  float y = -1;
};

// Adds --at X,Y; `point` must outlive the command.
CLI::Option* AddSubjectOption(CLI::App& command, SubjectPoint& point);

// Finds the subject of the loaded photograph `input`, which must be a camera RAW file. Throws
// std::runtime_error on failure.
void FindSubject(const std::string& input, SubjectPoint point, Engine& engine);

}  // namespace lumvik

#endif  // LUMVIK_APPS_OPTIONS_SUBJECT_H_
