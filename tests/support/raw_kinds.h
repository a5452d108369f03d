// A RAW file for each of LibRaw's decoders that a file of ours can reach.
#ifndef LUMVIK_TESTS_SUPPORT_RAW_KINDS_H_
#define LUMVIK_TESTS_SUPPORT_RAW_KINDS_H_

#include <cstdint>
#include <string>
#include <vector>

namespace lumvik::test {

struct RawKind {
  std::string name;
  std::string decoder;  // LibRaw's name of the function that reads the sensor's samples
  std::vector<uint8_t> file;
};

// Small files of noise, each with a preview unless its name says otherwise.
std::vector<RawKind> RawKinds();

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_RAW_KINDS_H_
