// The orientation in the EXIF of a written JPEG.
#ifndef LUMVIK_APPS_UPRIGHT_EXIF_H_
#define LUMVIK_APPS_UPRIGHT_EXIF_H_

#include <string>

namespace lumvik {

// Sets the EXIF orientation of the JPEG at `path` to upright and keeps everything else; a file without an
// orientation is left alone. The engine turns the pixels upright when it loads a photograph, but carries the
// photograph's EXIF over unchanged, so a viewer would turn them once more. Throws std::runtime_error, naming
// the file `shown_path`, when the EXIF cannot be read or written.
void MarkUpright(const std::string& path, const std::string& shown_path);

}  // namespace lumvik

#endif  // LUMVIK_APPS_UPRIGHT_EXIF_H_
