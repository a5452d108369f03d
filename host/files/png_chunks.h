// The chunks of PNG files.
#ifndef LUMVIK_HOST_FILES_PNG_CHUNKS_H_
#define LUMVIK_HOST_FILES_PNG_CHUNKS_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace lumvik::host {

inline constexpr std::size_t kPngFieldSize = 4;  // of the length, the type and the checksum
inline constexpr std::string_view kPngSignature = "\x89PNG\r\n\x1A\n";

struct PngChunk {
  std::string_view type;  // 4 characters
  std::string_view data;  // as far as it is within the file
  std::uint64_t end = 0;  // where the chunk ends, which may be beyond the end of the file
  bool is_sound = false;  // complete and with the right checksum
};

// Up to IEND or the end of the file.
std::vector<PngChunk> PngChunks(std::string_view png);

// Those before the image data.
std::vector<PngChunk> PngHeaderChunks(std::string_view png);

// Decompresses the data of a chunk. "" for data that is corrupt or has more than `max_bytes`.
std::string InflatePng(std::string_view compressed, std::size_t max_bytes);

// The checksum that follows these bytes: the type and the data of a chunk.
std::string PngChecksum(std::string_view type_and_data);

// The bytes of a chunk. `type` has 4 characters.
std::string MakePngChunk(std::string_view type, std::string_view data);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_FILES_PNG_CHUNKS_H_
