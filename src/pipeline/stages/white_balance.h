// White balance: channel gains from a color temperature and a tint.
#ifndef LUMVIK_PIPELINE_STAGES_WHITE_BALANCE_H_
#define LUMVIK_PIPELINE_STAGES_WHITE_BALANCE_H_

#include "pipeline/row_transform.h"

namespace lumvik {

// CIE 1931 chromaticity.
struct Chromaticity {
  float x;
  float y;
};

struct WhiteBalanceGains {
  float red;
  float green;
  float blue;
};

// The Planckian locus at `temperature` kelvin (held to 1667..25000), in the cubic approximation of Kim et
// al., US patent 7024034.
Chromaticity KelvinToChromaticity(float temperature);

// Gains against the locus at 6504 K. They are not normalized to a neutral point: at 6504 K itself red is
// 1.27 and blue 0.96. `tint` acts on green alone, positive towards magenta.
WhiteBalanceGains ComputeWhiteBalanceGains(float temperature, float tint);

// Multiplies by the gains and clamps to 0..1. Empty when all three gains are exactly 1.
RowTransform WhiteBalance(float temperature, float tint);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_WHITE_BALANCE_H_
