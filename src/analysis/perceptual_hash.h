// A 64-bit perceptual hash: images that look alike, such as resized or recompressed copies, differ in few
// bits. DCT hash after C. Zauner, "Implementation and Benchmarking of Perceptual Image Hash Functions", 2010.
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

// The hash of a gray image (CV_8UC1, not empty). Each bit states whether one of the 8 x 8 lowest frequencies
// of the image, resized to 32 x 32, exceeds their median, row by row from the most significant bit. The mean
// brightness is left out of the median but has its bit.
uint64_t PerceptualHash(const cv::Mat& gray);

// The hash of an ordinary image or of a RAW file's embedded preview. Writes `hash` on success only.
HashStatus PerceptualHashOfFile(const std::string& path, uint64_t& hash);

}  // namespace lumvik

#endif  // LUMVIK_ANALYSIS_PERCEPTUAL_HASH_H_
