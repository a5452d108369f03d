#include "base/file_io.h"
#include "base/wide_path_win32.h"
#include "image/raw_file.h"

namespace lumvik {

// A narrow path would be read in the code page of the process, which is hardly ever UTF-8.
int OpenRawFile(LibRaw& raw, const std::string& path) {
  return ReadingMayBlock(path) ? LIBRAW_IO_ERROR : raw.open_file(WidePath(path).c_str());
}

}  // namespace lumvik
