#include "pipeline/pixel_math.h"

namespace lumvik {

const float kBlack = 0.0F;
const float kWhite = 1.0F;
const float kLowestPower = -126.0F;
const float kHighestPower = 127.0F;

}  // namespace lumvik
