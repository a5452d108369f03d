// RAW files by UTF-8 path. One implementation per platform.
#ifndef LUMVIK_IMAGE_RAW_FILE_H_
#define LUMVIK_IMAGE_RAW_FILE_H_

#include <libraw/libraw.h>

#include <string>

namespace lumvik {

// LibRaw's status of opening the file. What is no file is refused: LibRaw would wait for ever for the other
// end of a pipe.
int OpenRawFile(LibRaw& raw, const std::string& path);

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_RAW_FILE_H_
