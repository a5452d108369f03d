// Checksums of the results of lumvik.h.
#ifndef LUMVIK_TESTS_CHECKSUMS_ENGINE_CHECKSUMS_H_
#define LUMVIK_TESTS_CHECKSUMS_ENGINE_CHECKSUMS_H_

#include <string>
#include <vector>

#include "checksum_list.h"
#include "photographs.h"

namespace lumvik::checksums {

// Exports are written to `folder`.
void AddEngineChecksums(const std::vector<Photograph>& photographs, const std::string& folder,
                        ChecksumList& list);

}  // namespace lumvik::checksums

#endif  // LUMVIK_TESTS_CHECKSUMS_ENGINE_CHECKSUMS_H_
