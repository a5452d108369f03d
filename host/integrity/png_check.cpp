#include "integrity/png_check.h"

#include <png.h>

#include <array>
#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <string>

#include "base/failure.h"
#include "files/byte_reading.h"
#include "files/png_chunks.h"

namespace lumvik::host {
namespace {

constexpr std::uint64_t kPngEndSize = 12;  // the chunk IEND
// More would keep the decoder busy for hours; the engine does not load it either.
constexpr std::uint64_t kMaxPngPixels = 1ULL << 30;

struct PngInput {
  std::string_view rest;
  std::array<char, 256> fault{};
};

void ReadPngInput(png_structp png, png_bytep bytes, std::size_t size) {
  auto& input = *static_cast<PngInput*>(png_get_io_ptr(png));
  if (size > input.rest.size()) png_error(png, "it ends early");
  std::memcpy(bytes, input.rest.data(), size);
  input.rest.remove_prefix(size);
}

[[noreturn]] void FailPng(png_structp png, png_const_charp text) {
  auto& input = *static_cast<PngInput*>(png_get_error_ptr(png));
  std::snprintf(input.fault.data(), input.fault.size(), "%s", text);
  png_longjmp(png, 1);
}

void IgnorePngWarning(png_structp /*png*/, png_const_charp /*text*/) {}

void DecodePng(png_structp png, png_infop info) {
  png_read_info(png, info);
  const std::uint64_t columns = png_get_image_width(png, info);
  if (columns * png_get_image_height(png, info) > kMaxPngPixels) png_error(png, "it claims too many pixels");
  const int passes = png_set_interlace_handling(png);
  png_read_update_info(png, info);
  for (int pass = 0; pass < passes; ++pass) {
    for (png_uint_32 row = 0; row < png_get_image_height(png, info); ++row) {
      png_read_row(png, nullptr, nullptr);
    }
  }
  png_read_end(png, nullptr);
}

// The error that libpng reports; "" without one.
std::string PngFault(std::string_view bytes) {
  PngInput input{bytes};
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &input, FailPng, IgnorePngWarning);
  png_infop info = png == nullptr ? nullptr : png_create_info_struct(png);
  if (info == nullptr) {
    png_destroy_read_struct(&png, nullptr, nullptr);
    throw std::bad_alloc();
  }
  png_set_read_fn(png, &input, ReadPngInput);
  if (setjmp(png_jmpbuf(png)) == 0) DecodePng(png, info);
  png_destroy_read_struct(&png, &info, nullptr);
  return input.fault.data();
}

std::optional<Damage> CheckPngChunks(std::string_view png) {
  std::uint64_t end = kPngSignature.size();
  for (const PngChunk& chunk : PngChunks(png)) {
    end = chunk.end;
    const bool is_last = chunk.type == "IEND";
    if (auto missing = MissingEnd(png.size(), is_last ? end : EndOf(end, kPngEndSize))) return missing;
    if (!chunk.is_sound) return Damage{"the PNG is corrupt: wrong checksum of " + std::string(chunk.type)};
    if (is_last) return std::nullopt;
  }
  return MissingEnd(png.size(), EndOf(end, kPngEndSize));
}

}  // namespace

std::optional<Damage> CheckPng(std::string_view png) {
  if (auto damage = CheckPngChunks(png)) return damage;
  const std::string fault = OneLine(PngFault(png));
  if (fault.empty()) return std::nullopt;
  return Damage{"the PNG is corrupt: " + fault};
}

}  // namespace lumvik::host
