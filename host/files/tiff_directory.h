// The first directory of TIFF files.
#ifndef LUMVIK_HOST_FILES_TIFF_DIRECTORY_H_
#define LUMVIK_HOST_FILES_TIFF_DIRECTORY_H_

#include <string>

namespace lumvik::host {

// The header of a TIFF file, followed by its first directory as far as it is within the file. Reads nothing
// else of a file that may have gigabytes. Throws Failure.
std::string ReadFirstTiffDirectory(const std::string& path);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_FILES_TIFF_DIRECTORY_H_
