#include "files/png_chunks.h"

#include <zlib.h>

#include <algorithm>
#include <new>
#include <optional>

#include "files/byte_reading.h"

namespace lumvik::host {
namespace {

std::uint32_t ChecksumOf(std::string_view bytes) {
  return static_cast<std::uint32_t>(crc32_z(0, reinterpret_cast<const Bytef*>(bytes.data()), bytes.size()));
}

std::string BigEndian(std::uint32_t number) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8) bytes.push_back(static_cast<char>(number >> shift & 0xFFU));
  return bytes;
}

std::string_view TypeAt(std::string_view png, std::uint64_t offset) {
  return PartOf(png, offset + kPngFieldSize, kPngFieldSize);
}

// Nothing at the end of the file.
std::optional<PngChunk> ChunkAt(std::string_view png, std::uint64_t offset) {
  const auto length = NumberAt(png, offset, kPngFieldSize, ByteOrder::kBig);
  if (!length) return std::nullopt;
  PngChunk chunk;
  chunk.type = TypeAt(png, offset);
  chunk.data = PartOf(png, offset + 2 * kPngFieldSize, *length);
  chunk.end = offset + 3 * kPngFieldSize + *length;
  const auto checksum = NumberAt(png, chunk.end - kPngFieldSize, kPngFieldSize, ByteOrder::kBig);
  chunk.is_sound = checksum == ChecksumOf(PartOf(png, offset + kPngFieldSize, kPngFieldSize + *length));
  return chunk;
}

}  // namespace

std::vector<PngChunk> PngChunks(std::string_view png) {
  std::vector<PngChunk> chunks;
  std::uint64_t offset = kPngSignature.size();
  while (const auto chunk = ChunkAt(png, offset)) {
    chunks.push_back(*chunk);
    offset = chunk->end;
    if (chunk->type == "IEND") break;
  }
  return chunks;
}

std::vector<PngChunk> PngHeaderChunks(std::string_view png) {
  std::vector<PngChunk> chunks;
  std::uint64_t offset = kPngSignature.size();
  while (TypeAt(png, offset) != "IDAT") {
    const auto chunk = ChunkAt(png, offset);
    if (!chunk) break;
    chunks.push_back(*chunk);
    offset = chunk->end;
  }
  return chunks;
}

std::string InflatePng(std::string_view compressed, std::size_t max_bytes) {
  constexpr std::size_t kUsualBytes = 1U << 16U;
  std::string data;
  for (std::size_t size = std::min(kUsualBytes, max_bytes);; size = std::min(size * 4, max_bytes)) {
    data.resize(size);
    auto length = static_cast<uLongf>(size);
    const int status =
        uncompress(reinterpret_cast<Bytef*>(data.data()), &length,
                   reinterpret_cast<const Bytef*>(compressed.data()), static_cast<uLong>(compressed.size()));
    if (status == Z_BUF_ERROR && size < max_bytes) continue;  // it is longer
    if (status == Z_MEM_ERROR) throw std::bad_alloc();
    if (status != Z_OK) return {};
    data.resize(length);
    return data;
  }
}

std::string PngChecksum(std::string_view type_and_data) {
  return BigEndian(ChecksumOf(type_and_data));
}

std::string MakePngChunk(std::string_view type, std::string_view data) {
  const std::string body = std::string(type) + std::string(data);
  return BigEndian(static_cast<std::uint32_t>(data.size())) + body + PngChecksum(body);
}

}  // namespace lumvik::host
