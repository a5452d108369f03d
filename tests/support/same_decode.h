// Compares the RAW decoder with its reference implementation.
#ifndef LUMVIK_TESTS_SUPPORT_SAME_DECODE_H_
#define LUMVIK_TESTS_SUPPORT_SAME_DECODE_H_

#include <string>

#include "image/raw_decoder.h"
#include "support/plain_raw_decode.h"

namespace lumvik::test {

// Decodes the file and expects the bytes, the metadata and the failure of `plain`. Returns the decoded image.
DecodedImage ExpectSameDecode(const std::string& path, int quality, const PlainDecode& plain);

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_SAME_DECODE_H_
