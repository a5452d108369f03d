#include "photo/photo_source.h"

#include <utility>

#include "base/failure.h"
#include "color/srgb_conversion.h"
#include "files/file_reading.h"
#include "files/format.h"

namespace lumvik::host {

std::unique_ptr<PhotoSource> PhotoSource::OfFile(const std::string& path) {
  return std::unique_ptr<PhotoSource>(new PhotoSource(nullptr, path, "'" + path + "'"));
}

std::unique_ptr<PhotoSource> PhotoSource::OfBytes(std::string_view bytes) {
  auto file = std::make_unique<MemoryFile>(bytes);
  const std::string path = file->Path();
  return std::unique_ptr<PhotoSource>(new PhotoSource(std::move(file), path, "the photograph in memory"));
}

PhotoSource::PhotoSource(std::unique_ptr<MemoryFile> bytes, const std::string& path, std::string shown)
    : bytes_(std::move(bytes)),
      path_(AbsolutePath(path)),
      shown_(std::move(shown)),
      format_(IdentifyFormat(path, shown_)),
      served_(path, IsRaw() ? Decoder::kRaw : Decoder::kImage) {}

std::unique_ptr<EngineImage> PhotoSource::Load(int quality) const {
  try {
    return std::make_unique<EngineImage>(ServedPath(), quality, shown_);
  } catch (const Failure&) {
    RequireReadable(path_);  // a decoder takes a file that is gone for a damaged one
    throw;
  }
}

PhotoSource::Converted PhotoSource::LoadConverted() {
  constexpr int kFullQuality = 1;
  const SrgbConversion conversion = ConvertToSrgb(ServedPath(), format_);
  if (conversion.converted.empty()) {
    return {Load(kFullQuality), conversion.profile, false, conversion.warning};
  }
  const MemoryFile pixels(conversion.converted);
  served_.Substitute(pixels.Path());
  auto image = Load(kFullQuality);
  served_.Substitute(path_);  // for its metadata
  return {std::move(image), conversion.profile, true, conversion.warning};
}

}  // namespace lumvik::host
