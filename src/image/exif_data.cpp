#include "image/exif_data.h"

#include <libexif/exif-loader.h>

#include <array>
#include <fstream>

#include "base/file_io.h"

namespace lumvik {
namespace {

// Until the loader has enough. Its own function takes a path in the process's code page on Windows.
void Feed(ExifLoader* loader, const std::string& path) {
  std::ifstream file(SystemPath(path), std::ios::binary);
  std::array<char, 1024> block{};
  while (file) {
    file.read(block.data(), block.size());
    const auto count = static_cast<unsigned int>(file.gcount());
    if (count == 0 || exif_loader_write(loader, reinterpret_cast<unsigned char*>(block.data()), count) == 0) {
      return;
    }
  }
}

}  // namespace

ExifDataPtr LoadExifData(const std::string& path) {
  const std::unique_ptr<ExifLoader, decltype(&exif_loader_unref)> loader(exif_loader_new(),
                                                                         &exif_loader_unref);
  ExifDataPtr data(nullptr, &exif_data_unref);
  // The path may have become a pipe since it was loaded, and libexif would block on it.
  if (loader && !ReadingMayBlock(path)) {
    Feed(loader.get(), path);
    data.reset(exif_loader_get_data(loader.get()));
  }
  return data;
}

}  // namespace lumvik
