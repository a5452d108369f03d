// Files as exiv2 reads them.
#ifndef LUMVIK_APPS_METADATA_FILE_H_
#define LUMVIK_APPS_METADATA_FILE_H_

#include <exiv2/exiv2.hpp>
#include <memory>
#include <string>

namespace lumvik {

using MetadataFile = std::unique_ptr<Exiv2::Image>;

// The file with its metadata; null for a kind of file that exiv2 does not know. Throws std::exception when
// the metadata is broken.
MetadataFile ReadMetadata(const std::string& path);

}  // namespace lumvik

#endif  // LUMVIK_APPS_METADATA_FILE_H_
