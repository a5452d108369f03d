// What the fuzz targets share: the bytes they are called with, as a file that the engine can be pointed at.
#ifndef LUMVIK_FUZZ_FUZZ_INPUT_H_
#define LUMVIK_FUZZ_FUZZ_INPUT_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "support/file_bytes.h"
#include "support/temp_dir.h"

namespace lumvik::fuzz {

inline std::vector<uint8_t> ToBytes(const uint8_t* data, size_t size) {
  return {data, data + size};
}

// The path of a file of this name in the folder of this process.
inline std::string FilePath(const std::string& name) {
  static const test::TempDir folder;
  return folder.File(name);
}

// Writes the bytes to the file of this name, which the next call may replace. Returns its path.
inline std::string WriteFile(const std::string& name, const std::vector<uint8_t>& bytes) {
  return test::WriteBytes(FilePath(name), bytes);
}

// Ends the process, which is how a target reports a result that must not be.
inline void Require(bool condition) {
  if (!condition) __builtin_trap();
}

}  // namespace lumvik::fuzz

#endif  // LUMVIK_FUZZ_FUZZ_INPUT_H_
