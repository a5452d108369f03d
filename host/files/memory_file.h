// Bytes in memory under the path of a file, for decoders that read only files.
#ifndef LUMVIK_HOST_FILES_MEMORY_FILE_H_
#define LUMVIK_HOST_FILES_MEMORY_FILE_H_

#include <optional>
#include <string>
#include <string_view>

#include "files/private_folder.h"

namespace lumvik::host {

// The path exists for the life of the object. Where the system has no files in memory, it is a temporary
// file. Throws Failure.
class MemoryFile {
 public:
  explicit MemoryFile(std::string_view bytes);
  ~MemoryFile();
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  // UTF-8, without an extension.
  const std::string& Path() const { return path_; }

 private:
  // False if the system has no files in memory.
  bool StoreInMemory(std::string_view bytes);

  int descriptor_ = -1;
  std::optional<PrivateFolder> folder_;
  std::string path_;
};

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_FILES_MEMORY_FILE_H_
