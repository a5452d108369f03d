// What is left to do on a JPEG into which the engine has put the photograph's EXIF.
#ifndef LUMVIK_APPS_WRITTEN_JPEG_H_
#define LUMVIK_APPS_WRITTEN_JPEG_H_

#include <string>

namespace lumvik {

// Sets the EXIF orientation of the JPEG at `path` to upright and keeps everything else; a file without an
// orientation is left alone. The engine turns the pixels upright when it loads a photograph, but carries the
// photograph's EXIF over unchanged, so a viewer would turn them once more. Throws std::runtime_error when the
// EXIF cannot be read or written, and when the file is not whole: the engine tells of a failure to write the
// picture, but not of one to put the EXIF into it.
void FinishExif(const std::string& path);

}  // namespace lumvik

#endif  // LUMVIK_APPS_WRITTEN_JPEG_H_
