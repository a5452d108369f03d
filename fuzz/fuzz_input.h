// Shared by the fuzz targets: passing their input to the engine as a file.
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

// The path of a file of this name in this process's temporary folder.
inline std::string FilePath(const std::string& name) {
  static const test::TempDir folder;
  return folder.File(name);
}

// Writes the bytes to the file of this name, replacing an earlier one. Returns its path.
inline std::string WriteFile(const std::string& name, const std::vector<uint8_t>& bytes) {
  return test::WriteBytes(FilePath(name), bytes);
}

// Aborts the process unless the condition holds, which is how a target reports a failure.
inline void Require(bool condition) {
  if (!condition) __builtin_trap();
}

}  // namespace lumvik::fuzz

#endif  // LUMVIK_FUZZ_FUZZ_INPUT_H_
