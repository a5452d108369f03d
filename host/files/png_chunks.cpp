#include "files/png_chunks.h"

#include <zlib.h>

#include "files/byte_reading.h"

namespace lumvik::host {
namespace {

constexpr unsigned kPngFieldSize = 4;  // of the length, the type and the checksum

std::uint32_t ChecksumOf(std::string_view bytes) {
  return static_cast<std::uint32_t>(crc32_z(0, reinterpret_cast<const Bytef*>(bytes.data()), bytes.size()));
}

std::string BigEndian(std::uint32_t number) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8) bytes.push_back(static_cast<char>(number >> shift & 0xFFU));
  return bytes;
}

}  // namespace

std::vector<PngChunk> PngChunks(std::string_view png) {
  std::vector<PngChunk> chunks;
  std::uint64_t offset = kPngSignature.size();
  while (const auto length = NumberAt(png, offset, kPngFieldSize, ByteOrder::kBig)) {
    PngChunk chunk;
    chunk.type = PartOf(png, offset + kPngFieldSize, kPngFieldSize);
    chunk.data = PartOf(png, offset + 2 * kPngFieldSize, *length);
    chunk.end = offset + 3 * kPngFieldSize + *length;
    const auto checksum = NumberAt(png, chunk.end - kPngFieldSize, kPngFieldSize, ByteOrder::kBig);
    chunk.is_sound = checksum == ChecksumOf(PartOf(png, offset + kPngFieldSize, kPngFieldSize + *length));
    chunks.push_back(chunk);
    offset = chunk.end;
    if (chunk.type == "IEND") break;
  }
  return chunks;
}

std::string MakePngChunk(std::string_view type, std::string_view data) {
  const std::string body = std::string(type) + std::string(data);
  return BigEndian(static_cast<std::uint32_t>(data.size())) + body + BigEndian(ChecksumOf(body));
}

}  // namespace lumvik::host
