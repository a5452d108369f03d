/* A host without LUMVIK_MODULES in its environment: the module is in the folder of the library. */
#include <stdio.h>
#include <stdlib.h>

#include "lumvik_host.h"

int main(void) {
  lumvik_host_status status;
  if (getenv("LUMVIK_MODULES") != NULL) return fputs("LUMVIK_MODULES is set\n", stderr), 2;
  status = lumvik_host_has_metadata_module();
  if (status != LUMVIK_HOST_OK) fprintf(stderr, "%s\n", lumvik_host_last_error());
  return status != LUMVIK_HOST_OK;
}
