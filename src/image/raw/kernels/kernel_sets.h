// The tables of the row kernels, one for each instruction set.
#ifndef LUMVIK_IMAGE_RAW_KERNELS_KERNEL_SETS_H_
#define LUMVIK_IMAGE_RAW_KERNELS_KERNEL_SETS_H_

#include "image/raw/kernels/row_kernels.h"

namespace lumvik {

// Of a sample, and of what LibRaw converts to an int. The kernels must not see these as constants: from
// constants, the compiler makes longer code than the instructions for a minimum and a maximum.
struct SampleBounds {
  float least;
  float largest;
  float int_limit;
};
extern const SampleBounds kSampleBounds;

extern const RowKernels kBaselineRowKernels;
extern const RowKernels kAvx2RowKernels;
extern const RowKernels kAvx512RowKernels;

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_RAW_KERNELS_KERNEL_SETS_H_
