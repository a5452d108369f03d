// RAW files for testing previews.
#ifndef LUMVIK_TESTS_SUPPORT_RAW_PREVIEWS_H_
#define LUMVIK_TESTS_SUPPORT_RAW_PREVIEWS_H_

#include <array>
#include <cstdint>
#include <opencv2/core.hpp>
#include <vector>

namespace lumvik::test {

// A DNG with this bitmap (CV_8UC3, red first) as its preview.
std::vector<uint8_t> MakeBitmapPreviewRaw(const cv::Mat& bitmap);

// The same, but the file claims one byte per preview pixel: LibRaw delivers that many and calls them three
// colors.
std::vector<uint8_t> MakeShortBitmapPreviewRaw(const cv::Mat& bitmap);

// The same in two strips of which the second lies beyond the end of the file.
std::vector<uint8_t> MakeMissingStripRaw(const cv::Mat& bitmap);

// The file with two values in place of the one of its first LONG entry of that tag.
std::vector<uint8_t> WithTwoValues(std::vector<uint8_t> file, uint16_t tag,
                                   const std::array<uint32_t, 2>& values);

// A DNG with a JPEG preview that LibRaw delivers but no decoder can decode: it has no quantization tables.
std::vector<uint8_t> MakeUndecodablePreviewRaw();

// A DNG whose preview claims side x side pixels in its JPEG header.
std::vector<uint8_t> MakeOversizedPreviewRaw(uint16_t side);

// The preview as LibRaw itself delivers it; empty on failure.
std::vector<uint8_t> DeliveredPreview(const std::vector<uint8_t>& raw_file);

// Whether two deliveries are equal, ignoring an entry of the EXIF header LibRaw adds: it fills it from unset
// memory.
bool SameDelivery(std::vector<uint8_t> a, std::vector<uint8_t> b);

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_RAW_PREVIEWS_H_
