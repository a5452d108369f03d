// RAW files as LibRaw reads them. One implementation per platform.
#ifndef LUMVIK_IMAGE_RAW_FILE_H_
#define LUMVIK_IMAGE_RAW_FILE_H_

#include <libraw/libraw.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace lumvik {

struct RawFileHooks {
  std::function<void()> before_seek;
  std::function<void(uint8_t* bytes, size_t wanted)> after_read;  // `wanted`: as LibRaw asked for
};

// LibRaw's own stream, except that memory is set where the file ends too early. Null for a path that cannot
// be opened or is not a regular file: LibRaw would wait forever for the other end of a pipe.
std::unique_ptr<LibRaw_abstract_datastream> OpenRawFile(const std::string& path, RawFileHooks hooks);

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_RAW_FILE_H_
