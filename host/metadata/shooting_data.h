// The shooting data of a photograph, from every source.
#ifndef LUMVIK_HOST_METADATA_SHOOTING_DATA_H_
#define LUMVIK_HOST_METADATA_SHOOTING_DATA_H_

#include <string>

#include "lumvik.h"
#include "lumvik_host.h"

namespace lumvik::host {

// The data that the engine reports for the file at `path`, completed for a RAW file by LibRaw and, if it is
// installed, the metadata module.
lumvik_host_exif CompleteShootingData(const ExifInfo& reported, const std::string& path, bool is_raw);

// The same for a file that was not loaded. Throws Failure.
lumvik_host_exif ReadShootingData(const std::string& path, lumvik_host_format format);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_METADATA_SHOOTING_DATA_H_
