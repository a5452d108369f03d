#include "files/memory_file.h"

#include "files/safe_file.h"

namespace lumvik::host {

MemoryFile::MemoryFile(std::string_view bytes) {
  if (StoreInMemory(bytes)) return;
  folder_.emplace();
  path_ = (folder_->Path() / "bytes").u8string();
  WriteSafely(path_, bytes, Overwrite::kNo);
}

}  // namespace lumvik::host
