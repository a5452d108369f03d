// RAW files that LibRaw rejects at a given step or decodes into something unexpected. (dcraw_make_mem_image
// fails only when memory runs out, which no file can cause.)
#ifndef LUMVIK_TESTS_SUPPORT_BROKEN_RAW_H_
#define LUMVIK_TESTS_SUPPORT_BROKEN_RAW_H_

#include <cstdint>
#include <vector>

#include "support/raw_writer.h"

namespace lumvik::test {

// open_file: "Unsupported file format or not RAW file". (A file of less than 64 bytes: "Input/output error".)
std::vector<uint8_t> MakeUnsupportedFile();

// The last rows are missing. unpack: "Input/output error", but a compressed ARW is decoded.
std::vector<uint8_t> MakeTruncatedRaw(RawFormat format);

// A small file that claims side x side pixels. unpack of 64000: "Image too big for processing".
std::vector<uint8_t> MakeOversizedRaw(uint32_t side = 64000);

// Claims to be deflated, which LibRaw supports for floating point only. unpack: "Corrupted data or unexpected
// EOF".
std::vector<uint8_t> MakeUndecodableRaw();

// A 6 x 6 color pattern on fewer than 512 pixels. dcraw_process: "Input/output error" at full size.
std::vector<uint8_t> MakeUndevelopableRaw();

// Red and green only: LibRaw delivers an image of two colors.
std::vector<uint8_t> MakeTwoColorRaw();

// A DNG whose JPEG preview contains no image. unpack_thumb succeeds, dcraw_make_mem_thumb: "Unsupported
// thumbnail format".
std::vector<uint8_t> MakeDamagedPreviewRaw();

// A diagonal sensor of 22 columns, which LibRaw first expands to a square of about rows x rows pixels: its
// memory grows with the square of the file size. From 46340 rows on, the number of pixels overflows: every
// step succeeds and the image has no pixels and no colors.
std::vector<uint8_t> MakeDiagonalRaw(int rows);

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_BROKEN_RAW_H_
