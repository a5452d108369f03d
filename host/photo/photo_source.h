// Where a photograph comes from.
#ifndef LUMVIK_HOST_PHOTO_PHOTO_SOURCE_H_
#define LUMVIK_HOST_PHOTO_PHOTO_SOURCE_H_

#include <memory>
#include <string>
#include <string_view>

#include "color/stated_profile.h"
#include "files/memory_file.h"
#include "files/served_file.h"
#include "lumvik_host.h"
#include "photo/engine_image.h"

namespace lumvik::host {

// A file or bytes in memory, served to the engine under a name that matches the content. Each function throws
// Failure.
class PhotoSource {
 public:
  static std::unique_ptr<PhotoSource> OfFile(const std::string& path);
  static std::unique_ptr<PhotoSource> OfBytes(std::string_view bytes);

  lumvik_host_format Format() const { return format_; }
  bool IsRaw() const { return format_ == LUMVIK_HOST_FORMAT_RAW; }

  // What the engine reads.
  const std::string& ServedPath() const { return served_.Path(); }
  // What the host opened.
  const std::string& OriginalPath() const { return path_; }
  // For messages: "'a.jpg'".
  const std::string& Shown() const { return shown_; }

  // Immutable, so that several threads can load it.
  std::unique_ptr<EngineImage> Load(int quality) const;

  // The same for an image, with its colors converted to sRGB.
  struct Converted {
    std::unique_ptr<EngineImage> image;
    std::string profile;  // the description of the embedded profile; "" without one
    bool is_converted;    // false if there was nothing to convert
    std::string warning;  // why the profile was not used; "" if it was, or without one
  };
  Converted LoadConverted();

  // The colors of an image that is loaded without conversion.
  KeptColors Colors() const { return ColorsOf(ServedPath(), format_); }

 private:
  PhotoSource(std::unique_ptr<MemoryFile> bytes, const std::string& path, std::string shown);

  std::unique_ptr<MemoryFile> bytes_;
  std::string path_;
  std::string shown_;
  lumvik_host_format format_;
  ServedFile served_;
};

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_PHOTO_PHOTO_SOURCE_H_
