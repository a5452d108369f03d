#include "image/exif_data.h"

#include <libexif/exif-loader.h>

#include "base/file_io.h"

namespace lumvik {

ExifDataPtr LoadExifData(const std::string& path) {
  const std::unique_ptr<ExifLoader, decltype(&exif_loader_unref)> loader(exif_loader_new(),
                                                                         &exif_loader_unref);
  ExifDataPtr data(nullptr, &exif_data_unref);
  // The path may have become a pipe since it was loaded, and libexif would block on it.
  if (loader && !ReadingMayBlock(path)) {
    exif_loader_write_file(loader.get(), path.c_str());
    data.reset(exif_loader_get_data(loader.get()));
  }
  return data;
}

}  // namespace lumvik
