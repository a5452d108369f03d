#include "image/raw/kernels/row_kernels.h"

#include "base/vectorized.h"
#include "image/raw/kernels/kernel_sets.h"

namespace lumvik {

const SampleBounds kSampleBounds = {0.0F, 65535.0F, 2147483648.0F};

const RowKernels& BestRowKernels() {
#if defined(__x86_64__)
  switch (BestInstructionSet()) {
    case InstructionSet::kAvx512:
      return kAvx512RowKernels;
    case InstructionSet::kAvx2:
      return kAvx2RowKernels;
    case InstructionSet::kBaseline:
      break;
  }
#endif
  return kBaselineRowKernels;
}

}  // namespace lumvik
