#include "pipeline/pixel_math.h"

namespace lumvik {

const ClampBounds kUnitBounds = {0.0F, 1.0F};
const ClampBounds kExponentBounds = {-126.0F, 127.0F};

}  // namespace lumvik
