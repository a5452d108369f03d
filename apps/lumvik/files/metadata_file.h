// Reads files with exiv2.
#ifndef LUMVIK_APPS_FILES_METADATA_FILE_H_
#define LUMVIK_APPS_FILES_METADATA_FILE_H_

#include <exiv2/exiv2.hpp>
#include <memory>
#include <string>

namespace lumvik {

using MetadataFile = std::unique_ptr<Exiv2::Image>;

// The file with its metadata; null for a format unknown to exiv2. Throws std::exception when the metadata is
// damaged.
MetadataFile ReadMetadata(const std::string& path);

}  // namespace lumvik

#endif  // LUMVIK_APPS_FILES_METADATA_FILE_H_
