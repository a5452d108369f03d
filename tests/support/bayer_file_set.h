// The Bayer files with which the RAW decoder is compared with LibRaw.
#ifndef LUMVIK_TESTS_SUPPORT_BAYER_FILE_SET_H_
#define LUMVIK_TESTS_SUPPORT_BAYER_FILE_SET_H_

#include <vector>

#include "support/bayer_file.h"

namespace lumvik::test {

// Each property at all its values, the others ordinary.
std::vector<BayerFile> PhaseAndOrientationFiles();
std::vector<BayerFile> MarginFiles();
std::vector<BayerFile> LevelFiles();
std::vector<BayerFile> ColorFiles();
std::vector<BayerFile> ArwFiles();

// All properties at random.
std::vector<BayerFile> RandomBayerFiles(int count, uint64_t seed);

// Sides around those of our tiles, at full and half size, so that the frame that is not demosaiced lies on
// both sides of a border.
std::vector<BayerFile> TileBorderFiles();

// Images larger than the working size or than several tiles.
std::vector<BayerFile> LargeFiles();

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_BAYER_FILE_SET_H_
