#include "pipeline/working_image.h"

#include "image/large_image.h"
#include "image/luminance.h"

namespace lumvik {

ColorPlanes LargePlanes(cv::Size size) {
  return {LargeImage(size, CV_32F), LargeImage(size, CV_32F), LargeImage(size, CV_32F)};
}

RowKernel StoreLuminance(const cv::Mat& plane) {
  return [own = plane](const PixelRow& row) mutable {
    float* const luminance = own.ptr<float>(row.y) + row.x;
    Vectorized([&] {
      const PixelRow part = row;
      float* __restrict const out = luminance;
      for (int i = 0; i < part.columns; ++i) out[i] = Luminance(part.red[i], part.green[i], part.blue[i]);
    });
  };
}

}  // namespace lumvik
