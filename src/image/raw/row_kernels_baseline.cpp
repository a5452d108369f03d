#define LUMVIK_ROW_KERNELS kBaselineRowKernels
#include "image/raw/row_kernels.inc"
