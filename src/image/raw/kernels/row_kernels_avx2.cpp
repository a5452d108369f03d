#define LUMVIK_ROW_KERNELS kAvx2RowKernels
#include "image/raw/kernels/row_kernels.inc"
