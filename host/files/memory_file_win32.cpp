#include "files/memory_file.h"

namespace lumvik::host {

MemoryFile::~MemoryFile() = default;

bool MemoryFile::StoreInMemory(std::string_view /*bytes*/) {
  return false;
}

}  // namespace lumvik::host
