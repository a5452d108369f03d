#define LUMVIK_ROW_KERNELS kAvx2RowKernels
#include "image/raw/row_kernels.inc"
