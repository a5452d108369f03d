#define LUMVIK_ROW_KERNELS kAvx512RowKernels
#include "image/raw/row_kernels.inc"
