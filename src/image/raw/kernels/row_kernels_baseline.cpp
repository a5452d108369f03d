#define LUMVIK_ROW_KERNELS kBaselineRowKernels
#include "image/raw/kernels/row_kernels.inc"
