#include "color/srgb_conversion.h"

namespace lumvik::host {

SrgbConversion ConvertToSrgb(const std::string& /*path*/, lumvik_host_format /*format*/) {
  return {};
}

}  // namespace lumvik::host
