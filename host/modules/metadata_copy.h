// Copies metadata from a photograph to a developed image.
#ifndef LUMVIK_HOST_MODULES_METADATA_COPY_H_
#define LUMVIK_HOST_MODULES_METADATA_COPY_H_

#include <exiv2/exiv2.hpp>
#include <optional>
#include <string>

#include "modules/metadata_reading.h"

namespace lumvik::metadata {

// What is kept of a photograph's metadata: data about the shot and its author. Data about the original file,
// such as thumbnails and maker notes, is dropped.
struct KeptMetadata {
  Exiv2::ExifData exif;
  Exiv2::IptcData iptc;
  Exiv2::XmpData xmp;

  bool Empty() const { return exif.empty() && iptc.empty() && xmp.empty(); }
};

struct KeepOptions {
  bool position = true;
  bool is_srgb = true;  // the image, whatever the photograph states
  std::optional<std::string> copyright;
};

inline constexpr char kExifCopyright[] = "Exif.Image.Copyright";
inline constexpr char kXmpCopyright[] = "Xmp.dc.rights";

KeptMetadata KeptOf(const SourceMetadata& source, const KeepOptions& options);

// An image with the metadata added to it, its size and orientation those of the image. Exiv2 works in memory,
// since it does not report write errors such as a full disk.
class ImageWithMetadata {
 public:
  // Throws std::exception if the format of the image cannot hold the metadata.
  ImageWithMetadata(const void* image, std::size_t size, const KeptMetadata& metadata);

  const void* Data() const { return data_; }
  std::size_t Size() const { return image_->io().size(); }

 private:
  std::unique_ptr<Exiv2::Image> image_;
  const void* data_ = nullptr;
};

}  // namespace lumvik::metadata

#endif  // LUMVIK_HOST_MODULES_METADATA_COPY_H_
