/* A host that does not name the folder of the metadata module. */
#include <stdio.h>

#include "lumvik_host.h"

int main(void) {
  const lumvik_host_status status = lumvik_host_has_metadata_module();
  if (status != LUMVIK_HOST_OK) fprintf(stderr, "%s\n", lumvik_host_last_error());
  return status != LUMVIK_HOST_OK;
}
