// An image of half the sensor's size, without demosaicing.
#ifndef LUMVIK_IMAGE_RAW_HALF_SIZE_ROWS_H_
#define LUMVIK_IMAGE_RAW_HALF_SIZE_ROWS_H_

#include <cstdint>
#include <functional>

#include "image/raw/ahd_rows.h"

namespace lumvik {

// Receives red, green and blue of a row, from the first wanted column on.
using TakeHalfSizeRow = std::function<void(int row, const uint16_t* const rgb[3])>;

// The given rows and columns of the image whose pixels are the sensor's squares of 2 x 2, the greens
// averaged. What a square at the edge of an odd size lacks is zero.
void HalveSensor(const BayerSensor& sensor, Span rows, Span columns, const RowKernels& kernels,
                 RowArena& arena, const TakeHalfSizeRow& take);

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_RAW_HALF_SIZE_ROWS_H_
