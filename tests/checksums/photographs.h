// The photographs that have checksums.
#ifndef LUMVIK_TESTS_CHECKSUMS_PHOTOGRAPHS_H_
#define LUMVIK_TESTS_CHECKSUMS_PHOTOGRAPHS_H_

#include <string>
#include <vector>

namespace lumvik::checksums {

struct Photograph {
  std::string name;
  std::string path;
  bool is_raw;
  bool has_preview;  // always true of ordinary images
};

// `source` is the root of the source tree.
std::vector<Photograph> Photographs(const std::string& source);

const Photograph& PhotographNamed(const std::string& name, const std::vector<Photograph>& photographs);

}  // namespace lumvik::checksums

#endif  // LUMVIK_TESTS_CHECKSUMS_PHOTOGRAPHS_H_
