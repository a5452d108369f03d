// Allocating whole images.
#ifndef LUMVIK_BASE_LARGE_IMAGE_H_
#define LUMVIK_BASE_LARGE_IMAGE_H_

#include <cstddef>
#include <opencv2/core.hpp>

namespace lumvik {

// An image with undefined content, in huge pages where the system has them: with small pages, first touching
// the memory costs more than running a simple stage over it.
cv::Mat LargeImage(cv::Size size, int type);

// While one exists, the memory of freed large images is kept for later ones of about the same size, at most
// kMostKeptBytes of it: touching fresh memory can cost more than a stage. The system may take its pages when
// it needs them. The last one to be destroyed frees what is kept.
class LargeImageReuse {
 public:
  static constexpr size_t kMostKeptBytes = size_t{640} << 20;

  LargeImageReuse() noexcept;
  ~LargeImageReuse();
  LargeImageReuse(const LargeImageReuse&) = delete;
  LargeImageReuse& operator=(const LargeImageReuse&) = delete;
};

}  // namespace lumvik

#endif  // LUMVIK_BASE_LARGE_IMAGE_H_
