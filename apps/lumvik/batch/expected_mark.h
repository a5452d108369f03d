// The mark that the output of a photograph will carry.
#ifndef LUMVIK_APPS_BATCH_EXPECTED_MARK_H_
#define LUMVIK_APPS_BATCH_EXPECTED_MARK_H_

#include <optional>
#include <string>

#include "files/mark.h"
#include "lumvik_host.hpp"
#include "options/export.h"
#include "options/photograph.h"

namespace lumvik {

// Nothing if the photograph or its settings cannot be read.
std::optional<Mark> ExpectedMark(const std::string& input, const Photograph& photograph,
                                 const ExportOptions& how, lumvik_host_format format);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_EXPECTED_MARK_H_
