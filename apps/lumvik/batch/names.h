// The output names of a batch.
#ifndef LUMVIK_APPS_BATCH_NAMES_H_
#define LUMVIK_APPS_BATCH_NAMES_H_

#include <string>
#include <vector>

#include "batch/inputs.h"
#include "batch/name_fields.h"
#include "lumvik_host.hpp"

namespace lumvik {

struct NamePattern {
  std::string text = "{stem}.{ext}";
  lumvik_host_format format = LUMVIK_HOST_FORMAT_JPEG;
};

// The fields of one photograph.
struct NameFields {
  std::string stem;
  std::string folder;
  std::string source_ext;  // without the dot
  ShotFields shot;
};

NameFields FieldsOf(const BatchInput& photograph, const ShotFields& shot);

// An error message for an invalid pattern; empty for a valid one.
std::string NamePatternFault(const NamePattern& pattern);

// Whether the pattern uses one of these fields, such as "n".
bool UsesAny(const NamePattern& pattern, const std::vector<std::string>& fields);

// The output path relative to the output folder. The pattern must be valid.
std::string NameOf(const NamePattern& pattern, const NameFields& fields, const std::string& number);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_NAMES_H_
