// A 64-bit hash of how a picture looks. The hashes of a picture and of its reduced or recompressed copies
// differ in few bits (DCT hash, after Zauner, "Implementation and Benchmarking of Perceptual Image Hash
// Functions", 2010).
#ifndef LUMVIK_ANALYSIS_PERCEPTUAL_HASH_H_
#define LUMVIK_ANALYSIS_PERCEPTUAL_HASH_H_

#include <cstdint>
#include <opencv2/core.hpp>
#include <string>

#include "image/embedded_preview.h"

namespace lumvik {

enum class HashStatus {
  kHashed = 0,
  kUnreadable = static_cast<int>(PreviewStatus::kUnreadable),
  kNoPreview = static_cast<int>(PreviewStatus::kNone),
  kPreviewNotDelivered = static_cast<int>(PreviewStatus::kNotDelivered),
  kPreviewUndecodable = -4,
};

// Of a gray image (CV_8UC1, not empty). A bit for each of the 8 x 8 lowest frequencies of the image at 32 x
// 32, row by row from the most significant on: whether it is above the median of all of them but the mean
// brightness. That one has its bit like the others.
uint64_t PerceptualHash(const cv::Mat& gray);

// Of an ordinary image, or of a RAW file's embedded preview. Writes `hash` on success only.
HashStatus PerceptualHashOfFile(const std::string& path, uint64_t& hash);

}  // namespace lumvik

#endif  // LUMVIK_ANALYSIS_PERCEPTUAL_HASH_H_
