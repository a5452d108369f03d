#include "pipeline/area_transform.h"

#include <array>
#include <vector>

#include "base/large_image.h"
#include "pipeline/packed_rows.h"
#include "pipeline/wide_gaussian.h"

namespace lumvik {
namespace {

std::vector<WideGaussian> WideBlurs(const AreaTransform& area, const StoreRows& store) {
  if (area.input == AreaTransform::Input::kLuminance) {
    return {WideGaussian(store(CV_32F, StoreLuminance), area.blur)};
  }
  const cv::Mat working = store(CV_32FC4, StoreIn);
  std::vector<WideGaussian> blurs;
  for (int color = 0; color < kColorChannels; ++color) {
    cv::Mat plane = LargeImage(working.size(), CV_32F);
    cv::extractChannel(working, plane, color);
    blurs.emplace_back(plane, area.blur);
  }
  return blurs;
}

}  // namespace

RowTransform WideAreaTransform(const AreaTransform& area, const StoreRows& store) {
  return {[blurs = WideBlurs(area, store), change = area.change](const RowPart& part) {
    float blurred[kColorChannels][kMaxPart];
    std::array<const float*, kColorChannels> planes = {};
    for (size_t i = 0; i < blurs.size(); ++i) {
      blurs[i].Read(part.x, part.y, part.columns, blurred[i]);
      planes[i] = blurred[i];
    }
    change(part, planes.data());
  }};
}

}  // namespace lumvik
