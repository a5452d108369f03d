// Decoding Sony's compressed RAW format of one byte per pixel.
#ifndef LUMVIK_IMAGE_RAW_ARW2_ROWS_H_
#define LUMVIK_IMAGE_RAW_ARW2_ROWS_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <opencv2/core/types.hpp>

namespace lumvik {

inline constexpr size_t kArw2Codes = 2048;

// The linear value of each 11-bit code.
using Arw2Curve = std::array<uint16_t, kArw2Codes>;

// Decodes a row of `columns` bytes to as many samples. A row holds whole groups of 16 samples, one for the
// even and one for the odd columns of 32; the columns of incomplete groups are 0.
void DecodeArw2Row(const uint8_t* bytes, int columns, const Arw2Curve& curve, uint16_t* samples);

// Fills `bytes` with the next `count` bytes of the file.
using ReadNextBytes = std::function<void(uint8_t* bytes, size_t count)>;

// Decodes `size.height` rows on all threads. `read` is called by one thread at a time. Passes on what `read`
// throws, and throws std::bad_alloc.
void DecodeArw2Rows(const ReadNextBytes& read, cv::Size size, const Arw2Curve& curve, uint16_t* samples);

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_RAW_ARW2_ROWS_H_
