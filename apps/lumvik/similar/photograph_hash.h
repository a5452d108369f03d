// The perceptual hash of a photograph.
#ifndef LUMVIK_APPS_SIMILAR_PHOTOGRAPH_HASH_H_
#define LUMVIK_APPS_SIMILAR_PHOTOGRAPH_HASH_H_

#include <cstdint>
#include <string>

namespace lumvik {

// Throws std::runtime_error with a message for the user.
std::uint64_t HashOf(const std::string& path);

// 16 hexadecimal digits.
std::string HexOf(std::uint64_t hash);

}  // namespace lumvik

#endif  // LUMVIK_APPS_SIMILAR_PHOTOGRAPH_HASH_H_
