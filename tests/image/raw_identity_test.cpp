// The RAW decoder gives the bytes, the metadata and the failures of LibRaw's own calls.
#include <gtest/gtest.h>

#include <iostream>
#include <opencv2/core/utility.hpp>
#include <set>
#include <string>

#include "image/raw/known_libraw.h"
#include "image/raw_decoder.h"
#include "support/bayer_file_set.h"
#include "support/broken_raw.h"
#include "support/file_bytes.h"
#include "support/instruction_sets.h"
#include "support/plain_raw_decode.h"
#include "support/raw_kinds.h"
#include "support/same_decode.h"
#include "support/temp_dir.h"

namespace lumvik::test {
namespace {

using Files = std::vector<BayerFile>;

// A sanitizer takes ten times as long.
#if defined(LUMVIK_SANITIZE_ADDRESS) || defined(LUMVIK_SANITIZE_THREAD) || defined(LUMVIK_SANITIZE_UNDEFINED)
constexpr size_t kFilesPerUsedOne = 8;
#else
constexpr size_t kFilesPerUsedOne = 1;
#endif
constexpr int kQualities = 4;

Files EveryNth(const Files& files, size_t n) {
  Files some;
  for (size_t i = 0; i < files.size(); i += n) some.push_back(files[i]);
  return some;
}

class RawIdentityTest : public ::testing::Test {
 protected:
  ~RawIdentityTest() override { cv::setNumThreads(threads_); }

  std::string Write(const std::vector<uint8_t>& bytes) const { return WriteBytes(dir_.File("a"), bytes); }

  // Expects identity at each quality, and most of the images to be developed in tiles.
  void ExpectIdentity(const Files& all, int least_percent_of_tiles) const {
    const Files files = EveryNth(all, kFilesPerUsedOne);
    int decoded = 0;
    int tiles = 0;
    for (const BayerFile& file : files) {
      const std::string path = Write(MakeBayerFile(file));
      for (int quality = 1; quality <= kQualities; ++quality) {
        SCOPED_TRACE(::testing::Message() << "quality " << quality << ", " << file);
        const DecodedImage image = ExpectSameDecode(path, quality, PlainDecode(path, quality));
        if (image.image.empty()) continue;
        ++decoded;
        if (image.developer == RawDeveloper::kTiles) ++tiles;
      }
    }
    std::cout << files.size() << " files at " << kQualities << " qualities: " << decoded << " decoded, "
              << tiles << " in tiles\n";
    EXPECT_TRUE(!IsKnownLibRaw() || 100 * tiles >= least_percent_of_tiles * decoded);
  }

  TempDir dir_;

 private:
  int threads_ = cv::getNumThreads();
};

TEST_F(RawIdentityTest, PhasesAndOrientations) {
  ExpectIdentity(PhaseAndOrientationFiles(), 100);
}

TEST_F(RawIdentityTest, Margins) {
  ExpectIdentity(MarginFiles(), 60);
}

TEST_F(RawIdentityTest, BlackAndWhiteLevels) {
  ExpectIdentity(LevelFiles(), 70);
}

TEST_F(RawIdentityTest, WhiteBalancesAndMatrices) {
  ExpectIdentity(ColorFiles(), 70);
}

TEST_F(RawIdentityTest, SonyFiles) {
  ExpectIdentity(ArwFiles(), 70);
}

TEST_F(RawIdentityTest, RandomFiles) {
  constexpr int kFiles = 240;
  ExpectIdentity(RandomBayerFiles(kFiles, 1), 60);
}

TEST_F(RawIdentityTest, TileBorders) {
  ExpectIdentity(TileBorderFiles(), 100);
}

TEST_F(RawIdentityTest, LargeFilesAreReduced) {
  ExpectIdentity(LargeFiles(), 100);
}

TEST_F(RawIdentityTest, EachInstructionSet) {
  Files files = RandomBayerFiles(24, 2);
  const Files large = EveryNth(LargeFiles(), 5);
  files.insert(files.end(), large.begin(), large.end());
  for (const BayerFile& file : EveryNth(files, kFilesPerUsedOne)) {
    const std::string path = Write(MakeBayerFile(file));
    for (int quality = 1; quality <= kQualities; ++quality) {
      SCOPED_TRACE(::testing::Message() << "quality " << quality << ", " << file);
      const PlainDecode plain(path, quality);
      WithEachInstructionSet([&] { ExpectSameDecode(path, quality, plain); });
    }
  }
}

TEST_F(RawIdentityTest, OneToFourThreads) {
  constexpr int kMostThreads = 4;
  Files files = EveryNth(LargeFiles(), 3);
  const Files borders = EveryNth(TileBorderFiles(), 4);
  files.insert(files.end(), borders.begin(), borders.end());
  for (const BayerFile& file : EveryNth(files, kFilesPerUsedOne)) {
    const std::string path = Write(MakeBayerFile(file));
    for (int quality = 1; quality <= kQualities; ++quality) {
      const PlainDecode plain(path, quality);
      for (int threads = 1; threads <= kMostThreads; ++threads) {
        SCOPED_TRACE(::testing::Message() << threads << " threads, quality " << quality << ", " << file);
        cv::setNumThreads(threads);
        ExpectSameDecode(path, quality, plain);
      }
    }
  }
}

TEST_F(RawIdentityTest, Photographs) {
  for (const char* name : {LUMVIK_SAMPLES "/sample_small.ARW", LUMVIK_TEST_DATA "/uncompressed.ARW",
                           LUMVIK_TEST_DATA "/bitmap_thumb.dng", LUMVIK_TEST_DATA "/jpeg_thumb.dng",
                           LUMVIK_TEST_DATA "/no_thumb.dng"}) {
    for (int quality = 1; quality <= kQualities; ++quality) {
      SCOPED_TRACE(::testing::Message() << "quality " << quality << ", " << name);
      const DecodedImage decoded = ExpectSameDecode(name, quality, PlainDecode(name, quality));
      EXPECT_TRUE(!IsKnownLibRaw() || decoded.developer == RawDeveloper::kTiles);
    }
  }
}

TEST_F(RawIdentityTest, EachKindOfRawFile) {
  const std::set<std::string> damaged = {"arw_compressed_flat_no_preview", "arw_lossless_no_preview",
                                         "dng_lossless_missing_tile_no_preview"};
  for (const RawKind& kind : RawKinds()) {
    const std::string path = Write(kind.file);
    for (int quality = 1; quality <= kQualities; ++quality) {
      SCOPED_TRACE(::testing::Message() << "quality " << quality << ", " << kind.name);
      const bool is_damaged = damaged.count(kind.name) != 0;
      ExpectSameDecode(path, quality,
                       is_damaged ? PlainDecode::OfDamaged(path, quality) : PlainDecode(path, quality));
    }
  }
}

TEST_F(RawIdentityTest, DamagedFiles) {
  const std::vector<std::vector<uint8_t>> files = {MakeUnsupportedFile(),
                                                   MakeTruncatedRaw(RawFormat::kArwCompressed),
                                                   MakeTruncatedRaw(RawFormat::kArwUncompressed),
                                                   MakeTruncatedRaw(RawFormat::kDng),
                                                   MakeOversizedRaw(),
                                                   MakeUndecodableRaw(),
                                                   MakeUndevelopableRaw(),
                                                   MakeTwoColorRaw(),
                                                   MakeDamagedPreviewRaw(),
                                                   MakeDiagonalRaw(60),
                                                   ReadBytes(LUMVIK_TEST_DATA "/truncated.ARW")};
  for (size_t i = 0; i < files.size(); ++i) {
    const std::string path = Write(files[i]);
    for (int quality = 1; quality <= kQualities; ++quality) {
      SCOPED_TRACE(::testing::Message() << "quality " << quality << ", file " << i);
      ExpectSameDecode(path, quality, PlainDecode::OfDamaged(path, quality));
    }
  }
}

}  // namespace
}  // namespace lumvik::test
