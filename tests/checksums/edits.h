// The edits whose renders have checksums.
#ifndef LUMVIK_TESTS_CHECKSUMS_EDITS_H_
#define LUMVIK_TESTS_CHECKSUMS_EDITS_H_

#include <string>
#include <vector>

#include "lumvik_host.hpp"

namespace lumvik::checksums {

struct Edit {
  std::string name;
  api::Settings settings;
};

// Every stage alone. Together they use every setting there is; a setting without an edit throws.
std::vector<Edit> SingleEdits();

// What photographers do most.
Edit TypicalEdit();

// Everything at once, grain included, and the same without dehaze.
Edit FullEdit();
Edit FullEditWithoutDehaze();

}  // namespace lumvik::checksums

#endif  // LUMVIK_TESTS_CHECKSUMS_EDITS_H_
