// Converting paths for the Windows API.
#ifndef LUMVIK_BASE_WIDE_PATH_WIN32_H_
#define LUMVIK_BASE_WIDE_PATH_WIN32_H_

#include <string>

namespace lumvik {

// The UTF-8 path in UTF-16. Invalid UTF-8 becomes replacement characters, which match no file.
std::wstring WidePath(const std::string& path);

}  // namespace lumvik

#endif  // LUMVIK_BASE_WIDE_PATH_WIN32_H_
