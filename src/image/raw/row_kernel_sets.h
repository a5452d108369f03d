// The tables of the row kernels, one for each instruction set.
#ifndef LUMVIK_IMAGE_RAW_ROW_KERNEL_SETS_H_
#define LUMVIK_IMAGE_RAW_ROW_KERNEL_SETS_H_

#include "image/raw/row_kernels.h"

namespace lumvik {

extern const RowKernels kBaselineRowKernels;
extern const RowKernels kAvx2RowKernels;
extern const RowKernels kAvx512RowKernels;

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_RAW_ROW_KERNEL_SETS_H_
