// A preview as a host gets it, including the render, against the reference pipeline and a plain blend.
#include <cstring>
#include <memory>
#include <opencv2/imgproc.hpp>
#include <vector>

#include "alternating.h"
#include "analysis/preview.h"
#include "pipeline/develop_pipeline.h"
#include "reference/develop_pipeline.h"
#include "reference/preview.h"
#include "support/test_images.h"

namespace lumvik::bench {
namespace {

// A third of the image, with a soft edge.
cv::Mat EllipseMask(cv::Size size) {
  cv::Mat mask(size, CV_8U, cv::Scalar(0));
  cv::ellipse(mask, cv::Point(size / 2), {size.width / 3, size.height / 3}, 0, 0, 360, 255, cv::FILLED);
  cv::GaussianBlur(mask, mask, cv::Size(9, 9), 2);
  return mask;
}

Comparison Preview(cv::Size size, float bg_blur) {
  const cv::Mat source = test::ResizedPhotograph("cat.jpg", size);
  const cv::Mat mask = EllipseMask(size);
  const Adjustments adjustments;
  const auto rendered = std::make_shared<cv::Mat>();
  const auto buffer = std::make_shared<std::vector<uint8_t>>(source.total() * 4);
  const auto bytes = static_cast<int64_t>(source.total() * (source.elemSize() + 4));
  return {[=] {
            DevelopPipeline(source, adjustments, *rendered);
            cv::Mat preview(size, CV_8UC4, buffer->data());
            RenderPreview(*rendered, mask, bg_blur, preview);
          },
          [=] {
            const cv::Mat preview =
                reference::RenderPreview(reference::DevelopPipeline(source, adjustments), mask, bg_blur);
            std::memcpy(buffer->data(), preview.data, buffer->size());
          },
          static_cast<int64_t>(source.total()), bytes};
}

const bool kRegistered = [] {
  for (const cv::Size size : {cv::Size(2000, 1333), cv::Size(4096, 2731)}) {
    for (const int bg_blur : {0, 50, 100}) {
      RegisterComparison("preview/blur" + std::to_string(bg_blur) + "/" + std::to_string(size.width),
                         [=] { return Preview(size, static_cast<float>(bg_blur)); });
    }
  }
  return true;
}();

}  // namespace
}  // namespace lumvik::bench
