#include "integrity/raw_check.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <new>

#include "files/byte_reading.h"
#include "files/tiff_reading.h"
#include "image/guarded_libraw.h"
#include "integrity/tiff_check.h"

namespace lumvik::host {
namespace {

// Where the box at the top level of an ISO base media file ends.
std::uint64_t EndOfBox(std::string_view bytes, std::uint64_t offset) {
  constexpr std::uint64_t kToTheEnd = 0;
  constexpr std::uint64_t kHasLongSize = 1;
  constexpr std::uint64_t kLongSizeOffset = 8;
  constexpr std::uint64_t kHeaderSize = 8;
  const std::uint64_t size = NumberAt(bytes, offset, 4, ByteOrder::kBig).value_or(kHeaderSize);
  if (size == kToTheEnd) return std::max<std::uint64_t>(bytes.size(), EndOf(offset, kHeaderSize));
  if (size != kHasLongSize) return EndOf(offset, std::max(size, kHeaderSize));
  const auto long_size = NumberAt(bytes, offset + kLongSizeOffset, 8, ByteOrder::kBig);
  return EndOf(offset, std::max(long_size.value_or(0), 2 * kHeaderSize));
}

// Canon's CR3.
std::optional<Damage> CheckBoxes(std::string_view bytes) {
  std::uint64_t offset = 0;
  while (offset < bytes.size()) offset = EndOfBox(bytes, offset);
  return MissingEnd(bytes.size(), offset);
}

// Fujifilm's RAF: a preview, a header and the sensor's data, each with its offset and size.
std::optional<Damage> CheckRaf(std::string_view bytes) {
  constexpr std::uint64_t kBlockFields[] = {84, 92, 100};
  std::uint64_t end = 0;
  for (const std::uint64_t field : kBlockFields) {
    const auto offset = NumberAt(bytes, field, 4, ByteOrder::kBig);
    const auto size = NumberAt(bytes, field + 4, 4, ByteOrder::kBig);
    end = std::max(end, offset && size ? EndOf(*offset, *size) : EndOf(field, 8));
  }
  return MissingEnd(bytes.size(), end);
}

std::optional<Damage> CheckStructure(std::string_view bytes) {
  const TiffReader tiff(bytes);
  if (tiff.IsTiff()) return CheckTiffImages(bytes, tiff);
  if (PartOf(bytes, 4, 4) == "ftyp") return CheckBoxes(bytes);
  if (PartOf(bytes, 0, 8) == "FUJIFILM") return CheckRaf(bytes);
  return std::nullopt;
}

// `offset` is -1 at the end of the file.
void NoteCorruptData(std::optional<Damage>& noted, std::int64_t offset) {
  if (noted) return;
  noted = Damage{offset < 0 ? "the sensor data ends early"
                            : "the sensor data is corrupt before byte " + std::to_string(offset)};
}

void RequireSuccess(int status, std::optional<Damage>& damage) {
  if (status == LIBRAW_UNSUFFICIENT_MEMORY) throw std::bad_alloc();
  if (status == LIBRAW_SUCCESS || damage) return;
  damage = Damage{"LibRaw cannot decode it: " + std::string(LibRaw::strerror(status))};
}

// LibRaw reads past the end of some files without an error, so that this says little about a cut file.
std::optional<Damage> CheckDecoding(const std::string& path) {
  std::optional<Damage> damage;
  const auto raw = std::make_unique<GuardedLibRaw>();
  // LibRaw 0.20 passes an int, later versions more.
  const auto note = [](void* noted, const char* /*path*/, auto offset) {
    NoteCorruptData(*static_cast<std::optional<Damage>*>(noted), offset);
  };
  raw->set_dataerror_handler(note, &damage);
  RequireSuccess(raw->OpenFile(path), damage);
  if (!damage) RequireSuccess(raw->UnpackSensor(), damage);
  return damage;
}

}  // namespace

std::optional<Damage> CheckRaw(const std::string& path, std::string_view bytes) {
  if (auto damage = CheckStructure(bytes)) return damage;
  return CheckDecoding(path);
}

}  // namespace lumvik::host
