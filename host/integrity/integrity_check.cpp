#include "integrity/integrity_check.h"

#include "base/failure.h"
#include "files/file_reading.h"
#include "integrity/image_check.h"
#include "integrity/jpeg_check.h"
#include "integrity/png_check.h"
#include "integrity/raw_check.h"
#include "integrity/tiff_check.h"

namespace lumvik::host {
std::optional<Damage> FindDamage(const std::string& path, lumvik_host_format format) {
  const std::string bytes = ReadFile(path, kMaxImageBytes);
  switch (format) {
    case LUMVIK_HOST_FORMAT_RAW:
      return CheckRaw(path, bytes);
    case LUMVIK_HOST_FORMAT_JPEG:
      return CheckJpeg(bytes);
    case LUMVIK_HOST_FORMAT_PNG:
      return CheckPng(bytes);
    case LUMVIK_HOST_FORMAT_TIFF:
      return CheckTiff(bytes);
    case LUMVIK_HOST_FORMAT_BMP:
      return CheckBmp(bytes);
    case LUMVIK_HOST_FORMAT_WEBP:
      return CheckWebp(bytes);
    case LUMVIK_HOST_FORMAT_UNKNOWN:
      break;
  }
  throw Failure(LUMVIK_HOST_NOT_A_PHOTOGRAPH, "'" + path + "' is not a photograph of a known format");
}

}  // namespace lumvik::host
