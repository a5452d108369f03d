#include <sys/stat.h>

#include "image/completed_stream.h"
#include "image/raw_file.h"

namespace lumvik {

std::unique_ptr<LibRaw_abstract_datastream> OpenRawFile(const std::string& path, RawFileHooks hooks) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return nullptr;
  return OpenCompletedStream(path.c_str(), static_cast<uintmax_t>(status.st_size), std::move(hooks));
}

}  // namespace lumvik
