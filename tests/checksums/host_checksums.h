// Checksums of the results of lumvik_host.h.
#ifndef LUMVIK_TESTS_CHECKSUMS_HOST_CHECKSUMS_H_
#define LUMVIK_TESTS_CHECKSUMS_HOST_CHECKSUMS_H_

#include <vector>

#include "checksum_list.h"
#include "photographs.h"

namespace lumvik::checksums {

void AddHostChecksums(const std::vector<Photograph>& photographs, ChecksumList& list);

}  // namespace lumvik::checksums

#endif  // LUMVIK_TESTS_CHECKSUMS_HOST_CHECKSUMS_H_
