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

// The Planckian locus at `temperature` kelvin, clamped to 1667..25000, by the cubic approximation of Kim et
// al., US patent 7024034.
Chromaticity KelvinToChromaticity(float temperature);

// Gains relative to the locus at 6504 K. They are not normalized to a neutral point: at 6504 K red is 1.27
// and blue 0.96. `tint` acts on green alone; positive values shift toward magenta.
WhiteBalanceGains ComputeWhiteBalanceGains(float temperature, float tint);

// Multiplies by the gains and clamps to 0..1. The identity if all three gains are exactly 1.
RowTransform WhiteBalance(float temperature, float tint);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_WHITE_BALANCE_H_
