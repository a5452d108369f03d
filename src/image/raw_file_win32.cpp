#include <filesystem>

#include "base/file_io.h"
#include "base/wide_path_win32.h"
#include "image/completed_stream.h"
#include "image/raw_file.h"

namespace lumvik {

// Windows interprets a narrow path in the process's code page, which is rarely UTF-8.
std::unique_ptr<LibRaw_abstract_datastream> OpenRawFile(const std::string& path, RawFileHooks hooks) {
  if (ReadingMayBlock(path)) return nullptr;
  const std::wstring wide = WidePath(path);
  std::error_code missing;
  const uintmax_t bytes = std::filesystem::file_size(wide, missing);
  if (missing) return nullptr;
  return OpenCompletedStream(wide.c_str(), bytes, std::move(hooks));
}

}  // namespace lumvik
