// Files under names that make the engine choose the right decoder: it goes by the extension, we by content.
#ifndef LUMVIK_HOST_FILES_SERVED_FILE_H_
#define LUMVIK_HOST_FILES_SERVED_FILE_H_

#include <optional>
#include <string>

#include "files/private_folder.h"

namespace lumvik::host {

// The engine's decoders.
enum class Decoder { kImage, kRaw };

// The one that the engine chooses for a path.
Decoder DecoderFor(const std::string& path);

// A path that stays valid when the process changes its working folder.
std::string AbsolutePath(const std::string& path);

// A file under its own name if the engine then chooses `decoder`, otherwise under a private one. Throws
// Failure or std::filesystem::filesystem_error.
class ServedFile {
 public:
  ServedFile(const std::string& path, Decoder decoder);

  // For the engine, which reads it again later. Absolute.
  const std::string& Path() const { return path_; }

  // Serves another file from now on, under a private name.
  void Substitute(const std::string& path);

 private:
  Decoder decoder_;
  std::optional<PrivateFolder> folder_;
  std::string path_;
};

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_FILES_SERVED_FILE_H_
