/* A metadata module of another version of the library. */
#include "modules/metadata_interface.h"

const lumvik_metadata_functions* lumvik_metadata_module(void);

const lumvik_metadata_functions* lumvik_metadata_module(void) {
  static const lumvik_metadata_functions kFunctions = {LUMVIK_METADATA_VERSION + 1, 0, 0, 0, 0};
  return &kFunctions;
}
