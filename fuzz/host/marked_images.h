// Small images with a mark, for the seeds and the target of marks.
#ifndef LUMVIK_FUZZ_HOST_MARKED_IMAGES_H_
#define LUMVIK_FUZZ_HOST_MARKED_IMAGES_H_

#include <opencv2/imgcodecs.hpp>
#include <string>
#include <vector>

#include "lumvik_host.hpp"

namespace lumvik::fuzz {

struct MarkedImage {
  lumvik_host_format format = LUMVIK_HOST_FORMAT_UNKNOWN;
  std::string bytes;
};

inline std::vector<MarkedImage> MakeMarkedImages() {
  cv::Mat pixels(6, 7, CV_8UC3);
  cv::RNG(1).fill(pixels, cv::RNG::UNIFORM, 0, 256);
  std::vector<unsigned char> png;
  cv::imencode(".png", pixels, png);
  api::Photo photo(png.data(), png.size());
  std::vector<MarkedImage> images;
  for (const auto format : {LUMVIK_HOST_FORMAT_JPEG, LUMVIK_HOST_FORMAT_PNG, LUMVIK_HOST_FORMAT_TIFF}) {
    api::SaveOptions options;
    options.format = format;
    options.metadata = LUMVIK_HOST_METADATA_NONE;
    options.mark = "the mark";
    const api::Bytes bytes = photo.SaveBytes(options);
    images.push_back({format, {bytes.begin(), bytes.end()}});
  }
  return images;
}

}  // namespace lumvik::fuzz

#endif  // LUMVIK_FUZZ_HOST_MARKED_IMAGES_H_
