// Reference clarity and texture: luminance detail at two radii, added to each channel.
#ifndef LUMVIK_TESTS_REFERENCE_CLARITY_TEXTURE_H_
#define LUMVIK_TESTS_REFERENCE_CLARITY_TEXTURE_H_

#include <opencv2/core.hpp>

#include "base/adjustments.h"

namespace lumvik::reference {

void ClarityTexture(cv::Mat& working, const Adjustments& adjustments);

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_CLARITY_TEXTURE_H_
