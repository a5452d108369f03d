// Histograms, against plain counting over a float copy of the image.
#include "alternating.h"
#include "analysis/histogram.h"
#include "reference/histogram.h"
#include "support/test_images.h"

namespace lumvik::bench {
namespace {

Comparison CountLevelsOf(cv::Size size) {
  const cv::Mat image = test::ResizedPhotograph("cat.jpg", size);
  return {[=] { benchmark::DoNotOptimize(CountLevels(image)); },
          [=] { benchmark::DoNotOptimize(reference::CountLevels(image)); },
          static_cast<int64_t>(image.total()), static_cast<int64_t>(image.total() * image.elemSize())};
}

const bool kRegistered = [] {
  for (const cv::Size size : {cv::Size(2000, 1333), cv::Size(4096, 2731)}) {
    RegisterComparison("histogram/" + std::to_string(size.width), [size] { return CountLevelsOf(size); });
  }
  return true;
}();

}  // namespace
}  // namespace lumvik::bench
