// Auto crop: the search alone and the whole tool, against a reference that sums every candidate.
#include "alternating.h"
#include "analysis/auto_crop.h"
#include "analysis/interest_map.h"
#include "analysis/reduced_copy.h"
#include "reference/auto_crop.h"
#include "support/test_images.h"

namespace lumvik::bench {
namespace {

constexpr int kCopyWidth = 512;
constexpr float kAspect = 1.5F;
constexpr float kMargin = 0.02F;

Comparison Search(cv::Size size) {
  const cv::Mat photograph = test::ResizedPhotograph("cat.jpg", size);
  const cv::Mat interest = InterestMap(ToRgbaFloat(ReducedCopy(photograph, kCopyWidth)));
  return {[=] { BestCrop(interest, kAspect, kMargin); },
          [=] { reference::BestCrop(interest, kAspect, kMargin); }, static_cast<int64_t>(interest.total()),
          static_cast<int64_t>(interest.total() * interest.elemSize())};
}

Comparison Whole(cv::Size size) {
  const cv::Mat photograph = test::ResizedPhotograph("cat.jpg", size);
  return {[=] { AutoCrop(photograph); }, [=] { reference::AutoCrop(photograph); },
          static_cast<int64_t>(photograph.total()),
          static_cast<int64_t>(photograph.total() * photograph.elemSize())};
}

const bool kRegistered = [] {
  for (const cv::Size size : {cv::Size(2000, 1333), cv::Size(1333, 2000)}) {
    const std::string name = std::to_string(size.width) + "x" + std::to_string(size.height);
    RegisterComparison("auto_crop/search/" + name, [size] { return Search(size); });
    RegisterComparison("auto_crop/whole/" + name, [size] { return Whole(size); });
  }
  return true;
}();

}  // namespace
}  // namespace lumvik::bench
