#include "base/file_io.h"
#include "image/raw_file.h"

namespace lumvik {

int OpenRawFile(LibRaw& raw, const std::string& path) {
  return ReadingMayBlock(path) ? LIBRAW_IO_ERROR : raw.open_file(path.c_str());
}

}  // namespace lumvik
