#include "files/intact_mark.h"

#define XXH_INLINE_ALL
#include <xxhash.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <system_error>

#include "base/failure.h"
#include "base/xml_text.h"
#include "files/file_reading.h"
#include "files/format.h"
#include "files/png_chunks.h"
#include "files/xmp_part.h"

namespace lumvik::host {
namespace {

// More than any image that can be marked: a TIFF has offsets of 32 bits.
constexpr std::uintmax_t kMaxMarkedBytes = UINT32_MAX;

std::size_t OffsetIn(std::string_view whole, std::string_view part) {
  return static_cast<std::size_t>(part.data() - whole.data());
}

// Digests an image from beginning to end.
class ImageDigest {
 public:
  explicit ImageDigest(std::string_view image) : rest_(image), size_(image.size()) {
    XXH3_128bits_reset(&state_);
  }

  // Takes these bytes, which come after those of the call before, for zeros.
  void SkipTo(std::size_t offset, std::size_t count) {
    constexpr std::array<char, kMarkDigits> kZeros{};
    const std::size_t before = offset - (size_ - rest_.size());
    XXH3_128bits_update(&state_, rest_.data(), before);
    XXH3_128bits_update(&state_, kZeros.data(), count);
    rest_.remove_prefix(before + count);
  }

  XXH128_canonical_t Finish() {
    XXH3_128bits_update(&state_, rest_.data(), rest_.size());
    XXH128_canonical_t digest;
    XXH128_canonicalFromHash(&digest, XXH3_128bits_digest(&state_));
    return digest;
  }

 private:
  std::string_view rest_;
  std::size_t size_;
  XXH3_state_t state_{};
};

}  // namespace

std::optional<MarkPlace> FindMark(std::string_view image, lumvik_host_format format) {
  const XmpPart xmp = FindXmp(image, format);
  if (xmp.is_compressed) return std::nullopt;
  const std::size_t text_end = xmp.packet.rfind(kMarkDigestBegin);
  if (text_end == std::string_view::npos) return std::nullopt;
  const std::size_t begin = xmp.packet.rfind(kMarkBegin, text_end);
  if (begin == std::string_view::npos) return std::nullopt;
  const std::size_t text = begin + kMarkBegin.size();
  const std::size_t digits = text_end + kMarkDigestBegin.size();
  if (xmp.packet.size() - digits < kMarkDigits) return std::nullopt;
  return MarkPlace{xmp.packet.substr(text, text_end - text), OffsetIn(image, xmp.packet) + digits,
                   xmp.png_checked};
}

std::string MarkDigest(std::string_view image, const MarkPlace& place) {
  constexpr char kHexDigits[] = "0123456789abcdef";
  ImageDigest digest(image);
  digest.SkipTo(place.digits, kMarkDigits);
  if (!place.png_checked.empty()) {
    digest.SkipTo(OffsetIn(image, place.png_checked) + place.png_checked.size(), kPngFieldSize);
  }
  std::string digits;
  for (const unsigned char byte : digest.Finish().digest) {
    digits.push_back(kHexDigits[byte >> 4U]);
    digits.push_back(kHexDigits[byte & 0xFU]);
  }
  return digits;
}

std::optional<std::string> IntactMarkIn(std::string_view image) {
  const auto place = FindMark(image, FormatOfBeginning(image));
  if (!place || image.substr(place->digits, kMarkDigits) != MarkDigest(image, *place)) return std::nullopt;
  return PlainText(place->text);
}

std::optional<std::string> IntactMarkOf(const std::string& path) {
  RequireReadable(path);
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(PathOf(path), error);
  if (error) throw FileFailure("read", path, error);
  if (size > kMaxMarkedBytes) return std::nullopt;
  if (ReadEnds(path, kMarkDistance).find(kMarkBegin) == std::string::npos) return std::nullopt;
  return IntactMarkIn(ReadFile(path, kMaxMarkedBytes));
}

}  // namespace lumvik::host
