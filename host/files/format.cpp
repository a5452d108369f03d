#include "files/format.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <memory>

#include "base/failure.h"
#include "files/file_reading.h"
#include "files/served_file.h"
#include "lumvik.h"

namespace lumvik::host {
namespace {

using namespace std::string_view_literals;

constexpr std::size_t kBeginning = 32;  // bytes

struct Signature {
  std::string_view bytes;
  lumvik_host_format format;
};

constexpr Signature kSignatures[] = {
    {"\xFF\xD8\xFF"sv, LUMVIK_HOST_FORMAT_JPEG},    {"\x89PNG\r\n\x1A\n"sv, LUMVIK_HOST_FORMAT_PNG},
    {"II*\0"sv, LUMVIK_HOST_FORMAT_TIFF},           {"MM\0*"sv, LUMVIK_HOST_FORMAT_TIFF},
    {"II+\0\x08\0\0\0"sv, LUMVIK_HOST_FORMAT_TIFF},  // BigTIFF
    {"MM\0+\0\x08\0\0"sv, LUMVIK_HOST_FORMAT_TIFF},
};

bool StartsWith(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}

// Two letters are a weak signature: the size of the header that follows has few possible values.
bool IsBmp(std::string_view beginning) {
  constexpr std::size_t kHeaderSizeAt = 14;
  constexpr std::string_view kHeaderSizes = "\x0C\x28\x34\x38\x40\x6C\x7C"sv;
  return StartsWith(beginning, "BM") && beginning.size() >= kHeaderSizeAt + 4 &&
         kHeaderSizes.find(beginning[kHeaderSizeAt]) != std::string_view::npos &&
         beginning.substr(kHeaderSizeAt + 1, 3) == "\0\0\0"sv;
}

bool IsWebp(std::string_view beginning) {
  constexpr std::size_t kKindAt = 8;
  return StartsWith(beginning, "RIFF") && beginning.size() > kKindAt &&
         StartsWith(beginning.substr(kKindAt), "WEBP");
}

// The engine's RAW decoder is protected from damaged files, so it decides.
bool IsRaw(const std::string& path) {
  constexpr int kUnreadable = -1;
  const ServedFile served(path, Decoder::kRaw);
  std::uint8_t* preview = nullptr;
  int size = 0;
  const int status = lumvik_extract_thumbnail(served.Path().c_str(), &preview, &size);
  lumvik_free_thumb(preview);
  return status != kUnreadable;
}

}  // namespace

lumvik_host_format FormatOfBeginning(std::string_view beginning) {
  if (IsBmp(beginning)) return LUMVIK_HOST_FORMAT_BMP;
  if (IsWebp(beginning)) return LUMVIK_HOST_FORMAT_WEBP;
  const auto* const found =
      std::find_if(std::begin(kSignatures), std::end(kSignatures),
                   [&](const Signature& signature) { return StartsWith(beginning, signature.bytes); });
  return found == std::end(kSignatures) ? LUMVIK_HOST_FORMAT_UNKNOWN : found->format;
}

lumvik_host_format IdentifyFormat(const std::string& path, const std::string& shown) {
  RequireContent(path, shown);
  const std::string beginning = ReadBeginning(path, kBeginning);
  const lumvik_host_format format = FormatOfBeginning(beginning);
  const bool may_be_raw = format == LUMVIK_HOST_FORMAT_UNKNOWN || format == LUMVIK_HOST_FORMAT_TIFF;
  if (may_be_raw && IsRaw(path)) return LUMVIK_HOST_FORMAT_RAW;
  if (format != LUMVIK_HOST_FORMAT_UNKNOWN) return format;
  throw Failure(LUMVIK_HOST_NOT_A_PHOTOGRAPH,
                shown + " is neither a RAW file nor an image of a known format");
}

const char* NameOfFormat(lumvik_host_format format) {
  constexpr const char* kNames[] = {"unknown", "RAW", "JPEG", "PNG", "TIFF", "BMP", "WebP"};
  return kNames[format];
}

}  // namespace lumvik::host
