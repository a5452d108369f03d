#define LUMVIK_ROW_KERNELS kAvx512RowKernels
#include "image/raw/kernels/row_kernels.inc"
