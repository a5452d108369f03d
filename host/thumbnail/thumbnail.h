// Thumbnails of files.
#ifndef LUMVIK_HOST_THUMBNAIL_THUMBNAIL_H_
#define LUMVIK_HOST_THUMBNAIL_THUMBNAIL_H_

#include <string>

#include "lumvik_host.h"

namespace lumvik::host {

// A JPEG, see lumvik_host_extract_thumbnail(). Throws Failure.
std::string MakeThumbnail(const std::string& path, const lumvik_host_thumbnail_options& options);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_THUMBNAIL_THUMBNAIL_H_
