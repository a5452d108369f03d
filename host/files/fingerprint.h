// Fingerprints of files.
#ifndef LUMVIK_HOST_FILES_FINGERPRINT_H_
#define LUMVIK_HOST_FILES_FINGERPRINT_H_

#include <cstdint>
#include <string>

namespace lumvik::host {

// From the size and both ends of a file. Throws Failure.
std::uint64_t FingerprintOf(const std::string& path);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_FILES_FINGERPRINT_H_
