// The option for the subject of a photograph.
#ifndef LUMVIK_APPS_OPTIONS_SUBJECT_H_
#define LUMVIK_APPS_OPTIONS_SUBJECT_H_

#include <CLI/App.hpp>

namespace lumvik {

// Where to look, in fractions of width and height; negative for the center.
struct SubjectPoint {
  float x = -1;
  float y = -1;
};

// Adds --at X,Y; `point` must outlive the command.
CLI::Option* AddSubjectOption(CLI::App& command, SubjectPoint& point);

}  // namespace lumvik

#endif  // LUMVIK_APPS_OPTIONS_SUBJECT_H_
