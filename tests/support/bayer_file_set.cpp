#include "support/bayer_file_set.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace lumvik::test {
namespace {

using Values = std::vector<double>;

const std::vector<std::vector<uint8_t>> kPhases = {{0, 1, 1, 2}, {1, 0, 2, 1}, {1, 2, 0, 1}, {2, 1, 1, 0}};
const std::vector<cv::Size> kSmallSizes = {{22, 22}, {23, 22}, {22, 23}, {25, 31}, {37, 64},
                                           {48, 27}, {63, 45}, {65, 33}, {81, 52}, {150, 110}};
const std::vector<int> kWhites = {1, 3, 255, 1023, 4095, 16383, 65534, 65535};

// Columns x rows.
const std::vector<cv::Size> kBlackRepeats = {{1, 1}, {2, 1}, {1, 2}, {2, 2}, {4, 2}, {2, 4}, {3, 3}, {8, 1}};

// What AsShotNeutral states. LibRaw rejects multipliers of 0.001 and below, and ignores a first value of 0.
const std::vector<Values> kNeutrals = {{0.45, 1, 0.625}, {1, 1, 1},
                                       {1, 0.3, 0.9},    {0.01, 1, 0.02},
                                       {1, 0.002, 1},    {3.5, 7, 2.25},
                                       {300, 1, 300},    {900, 900, 900},
                                       {1500, 1, 1500},  {0.0001, 1, 0.5},
                                       {0, 1, 1},        {0.5, 0, 0.5},
                                       {0.5, 1, 0},      {}};

std::vector<Values> ColorMatrices() {
  const Values common = CommonColorMatrix();
  Values huge = common;
  for (double& value : huge) value *= 150;
  Values small = common;
  for (double& value : small) value *= 1e-3;
  Values negative = common;
  for (double& value : negative) value = -value;
  return {
      {},
      common,
      {3.2404542, -1.5371385, -0.4985314, -0.9692660, 1.8760108, 0.0415560, 0.0556434, -0.2040259, 1.0572252},
      huge,
      small,
      negative,
      {1, 1, 1, 1, 1, 1.000001, 1, 1.000001, 1},  // nearly singular
      {1, 1, 1, 1, 1, 1, 1, 1, 1},                // singular
      {0, 0, 0, 0, 0, 0, 0, 0, 0},
      {0.3, 0.9, -0.1, 0.6, 0.7, 0.1, 0.2, 0.8, 0.3},    // primaries close together
      {0.2, 1.9, -0.9, 1.8, -0.9, 0.2, -0.7, 0.3, 1.9},  // primaries far beyond sRGB
      {100, -90, 5, -80, 120, -30, 20, -60, 110}};
}

template <typename Value>
const Value& At(const std::vector<Value>& values, size_t index) {
  return values[index % values.size()];
}

// Levels around `center` that differ by up to a tenth of it.
Values UnequalLevels(cv::Size repeat, double center) {
  Values levels(static_cast<size_t>(repeat.area()));
  for (size_t i = 0; i < levels.size(); ++i) {
    const double share = static_cast<double>(i * 7 % 11) / 100;
    levels[i] = std::floor(center * (1 + share) * 4) / 4;
  }
  return levels;
}

// A small file; `index` varies size, margins and content so that files of one kind differ in more than one
// property.
BayerFile SmallFile(size_t index) {
  BayerFile file;
  file.size = At(kSmallSizes, index);
  file.content = static_cast<BayerContent>(index % kBayerContents);
  file.matrix = CommonColorMatrix();
  file.pattern = At(kPhases, index / 3);
  file.seed = index + 1;
  return file;
}

}  // namespace

std::vector<BayerFile> PhaseAndOrientationFiles() {
  std::vector<BayerFile> files;
  for (const auto& pattern : kPhases) {
    for (int orientation = 1; orientation <= 8; ++orientation) {
      BayerFile file = SmallFile(files.size());
      file.pattern = pattern;
      file.orientation = orientation;
      const int margin = static_cast<int>(files.size() % 5);
      file.margins = {margin, 3 * margin / 2, 4 - margin, margin / 2};
      file.size += cv::Size(margin, margin);
      file.black = {200};
      file.white = 16383;
      files.push_back(file);
    }
  }
  return files;
}

std::vector<BayerFile> MarginFiles() {
  const BayerMargins kMargins[] = {{1, 0, 0, 0},   {0, 1, 0, 0},   {1, 1, 0, 0},  {7, 3, 2, 9},
                                   {0, 0, 40, 60}, {40, 60, 0, 0}, {0, 8, 0, -4}, {8, 0, -4, 0},
                                   {6, 2, -6, -2}, {0, 31, 0, -1}};
  std::vector<BayerFile> files;
  for (const BayerMargins& margins : kMargins) {
    for (const auto& pattern : kPhases) {
      BayerFile file = SmallFile(files.size());
      file.size += cv::Size(2, 2);
      file.margins = margins;
      file.pattern = pattern;
      file.content = BayerContent::kNoise;
      files.push_back(file);
    }
  }
  return files;
}

std::vector<BayerFile> LevelFiles() {
  std::vector<BayerFile> files;
  const auto add = [&files](int white, cv::Size repeat, Values black) {
    BayerFile file = SmallFile(files.size());
    file.white = white;
    file.black_repeat = repeat;
    file.black = std::move(black);
    files.push_back(file);
  };
  for (const int white : kWhites) {
    for (int content = 0; content < kBayerContents; ++content) {
      add(white, {1, 1}, {std::floor(white / 16.0)});
      files.back().content = static_cast<BayerContent>(content);
    }
    // Black above white, equal to it, and just below.
    for (const double black : {white + 1.0, double{1} * white, white - 1.0, 70000.0})
      add(white, {1, 1}, {black});
  }
  for (const cv::Size repeat : kBlackRepeats) {
    for (size_t phase = 0; phase < kPhases.size(); ++phase) {
      add(4095, repeat, UnequalLevels(repeat, 256));
      files.back().pattern = kPhases[phase];
      add(16383, repeat, Values(static_cast<size_t>(repeat.area()), 512));
      files.back().pattern = kPhases[phase];
    }
    add(1023, repeat, UnequalLevels(repeat, 1000));
  }
  return files;
}

std::vector<BayerFile> ColorFiles() {
  std::vector<BayerFile> files;
  const auto add = [&files](const Values& neutral, const Values& matrix) {
    BayerFile file = SmallFile(files.size());
    file.neutral = neutral;
    file.matrix = matrix;
    file.white = At(kWhites, files.size() / 2 + 3);
    files.push_back(file);
  };
  for (const Values& neutral : kNeutrals) {
    add(neutral, {});
    for (int i = 0; i < 3; ++i) add(neutral, CommonColorMatrix());
  }
  for (const Values& matrix : ColorMatrices()) {
    for (int content = 0; content < kBayerContents; ++content) {
      add(kNeutrals.front(), matrix);
      files.back().content = static_cast<BayerContent>(content);
    }
  }
  // Differences in color whose squares exceed an int.
  constexpr int kExtremes = 8;
  for (int i = 0; i < kExtremes; ++i) {
    add(kNeutrals.front(),
        {0.5, 0.52, 0.1, 0.48, 0.54, 0.1, 0.1, 0.1, 0.8});  // red and green nearly the same
    files.back().content = i % 2 == 0 ? BayerContent::kNoise : BayerContent::kPrimaries;
    files.back().white = 16383;
  }
  return files;
}

std::vector<BayerFile> ArwFiles() {
  const std::vector<std::array<uint16_t, 4>> kLevels = {
      {2253, 1024, 1024, 1638}, {2253, 1024, 1100, 1638}, {1024, 2000, 1900, 1024}, {1, 1, 1, 1},
      {65535, 1, 1, 65535},     {0, 1024, 1024, 1000},    {1024, 0, 0, 1024},       {2000, 1024, 0, 1500}};
  const std::vector<Values> kBlacks = {
      {512, 512, 512, 512}, {500, 510, 520, 530}, {0, 0, 0, 0}, {900, 100, 0, 40}};
  std::vector<BayerFile> files;
  for (const RawFormat format : {RawFormat::kArwCompressed, RawFormat::kArwUncompressed}) {
    for (size_t i = 0; i < 2 * kLevels.size(); ++i) {
      BayerFile file = SmallFile(i);
      file.format = format;
      file.arw_levels = At(kLevels, i);
      file.black = At(kBlacks, i / 2);
      file.orientation = static_cast<int>(i % 8) + 1;
      constexpr int kGroup = 32;
      file.margins.right = (kGroup - file.size.width % kGroup) % kGroup;
      files.push_back(file);
    }
  }
  return files;
}

std::vector<BayerFile> RandomBayerFiles(int count, uint64_t seed) {
  cv::RNG random(seed);
  const auto below = [&random](int end) { return random.uniform(0, end); };
  const auto choice = [&below](const auto& values) {
    return At(values, static_cast<size_t>(below(1 << 16)));
  };
  const std::vector<Values> matrices = ColorMatrices();
  std::vector<BayerFile> files(static_cast<size_t>(count));
  for (BayerFile& file : files) {
    file.size = {22 + below(129), 22 + below(89)};
    if (below(3) == 0) file.margins = {below(9), below(9), below(9), below(9)};
    file.size += cv::Size(1, 1);  // LibRaw may take a row and a column for the margins
    file.pattern = choice(kPhases);
    file.orientation = 1 + below(8);
    file.white = below(3) == 0 ? 1 + below(65535) : choice(kWhites);
    file.black_repeat = below(2) == 0 ? cv::Size(2, 2) : choice(kBlackRepeats);
    file.black = UnequalLevels(file.black_repeat, below(std::max(1, file.white / 4)));
    if (below(2) == 0) {
      file.neutral = {random.uniform(0.05, 2.0), random.uniform(0.05, 2.0), random.uniform(0.05, 2.0)};
    } else if (below(3) == 0) {
      file.neutral = choice(kNeutrals);
    }
    file.matrix = choice(matrices);
    if (below(2) == 0) {
      file.matrix = CommonColorMatrix();
      for (double& value : file.matrix) value += random.uniform(-0.2, 0.2);
    }
    file.content = static_cast<BayerContent>(below(kBayerContents));
    file.seed = random.next();
  }
  return files;
}

std::vector<BayerFile> TileBorderFiles() {
  constexpr int kColumns = 640;
  constexpr int kRows = 128;
  std::vector<BayerFile> files;
  for (int beyond = -1; beyond <= 7; ++beyond) {
    for (const cv::Size size : {cv::Size(kColumns + beyond, 40), cv::Size(50, kRows + beyond),
                                cv::Size(2 * kColumns + 2 * beyond - 1, 2 * kRows + 2 * beyond - 1)}) {
      BayerFile file = SmallFile(files.size());
      file.size = size;
      file.content = BayerContent::kNoise;
      file.orientation = 1 + static_cast<int>(files.size() % 8);
      files.push_back(file);
    }
  }
  return files;
}

std::vector<BayerFile> LargeFiles() {
  const cv::Size kSizes[] = {{1999, 40}, {2000, 25}, {2001, 30}, {24, 2101}, {2305, 61},
                             {3000, 40}, {4000, 24}, {24, 4000}, {3999, 27}, {4001, 23},
                             {6000, 32}, {32, 6001}, {900, 700}, {701, 900}};
  std::vector<BayerFile> files;
  for (const cv::Size size : kSizes) {
    BayerFile file = SmallFile(files.size());
    file.size = size;
    file.white = 16383;
    file.black = {512};
    // One that keeps the sides and one that exchanges them.
    for (const int orientation :
         {1 + static_cast<int>(files.size() / 2 % 4), 5 + static_cast<int>(files.size() / 2 % 4)}) {
      file.orientation = orientation;
      files.push_back(file);
      file.content = files.size() % 3 == 0 ? BayerContent::kNoise : BayerContent::kPhotograph;
    }
  }
  return files;
}

}  // namespace lumvik::test
