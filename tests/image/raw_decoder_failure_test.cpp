// Files that image/raw_decoder.h cannot decode, or only in part.
#include <gtest/gtest.h>

#include <opencv2/core.hpp>
#include <string>

#include "image/raw_decoder.h"
#include "support/broken_raw.h"
#include "support/file_bytes.h"
#include "support/process_state.h"
#include "support/raw_writer.h"
#include "support/temp_dir.h"
#include "support/test_images.h"

namespace lumvik::test {
namespace {

constexpr char kUnsupported[] = "Unsupported file format or not RAW file";

const cv::Mat kWidePicture(32, 64, CV_8UC3, cv::Scalar(90, 150, 210));

// A record that already holds an image.
const DecodedImage& Earlier() {
  static const DecodedImage kEarlier = [] {
    DecodedImage decoded;
    EXPECT_TRUE(DecodeRaw(kTestData + "no_thumb.dng", 1, decoded));
    return decoded;
  }();
  return kEarlier;
}

// Expects the failure, and an earlier image to be unchanged.
void ExpectFailure(const std::string& path, const std::string& error, int quality = 1) {
  SCOPED_TRACE(path);
  const DecodedImage& earlier = Earlier();
  DecodedImage decoded = earlier;
  decoded.image = earlier.image.clone();
  EXPECT_FALSE(DecodeRaw(path, quality, decoded));
  EXPECT_EQ(decoded.error, error);
  EXPECT_EQ(decoded.path, path);

  EXPECT_TRUE(SameBytes(decoded.image, earlier.image));
  EXPECT_EQ(decoded.width, 480);
  EXPECT_EQ(decoded.height, 320);
  EXPECT_STREQ(decoded.make, "Photobench");
  EXPECT_STREQ(decoded.model, "Bayer 14");
  EXPECT_EQ(decoded.iso_speed, 200.0F);
  EXPECT_EQ(decoded.shutter, earlier.shutter);
  EXPECT_EQ(decoded.aperture, earlier.aperture);
  EXPECT_EQ(decoded.focal_len, 50.0F);
  EXPECT_EQ(decoded.cam_mul, earlier.cam_mul);
  EXPECT_EQ(decoded.rgb_cam, earlier.rgb_cam);
  EXPECT_EQ(decoded.orientation, 0);
}

class RawDecoderFailure : public ::testing::Test {
 protected:
  std::string Write(const std::string& name, const std::vector<uint8_t>& bytes) const {
    return WriteBytes(dir_.File(name), bytes);
  }

  TempDir dir_;
};

TEST_F(RawDecoderFailure, AFileThatCannotBeOpened) {
  const std::string error = "LibRaw open_file failed: Input/output error";
  ExpectFailure(dir_.File("missing.ARW"), error);
  ExpectFailure("", error);
  ExpectFailure(dir_.path().string(), error);
  ExpectFailure(Write("empty.ARW", {}), error);
  ExpectFailure(Write("tiny.ARW", std::vector<uint8_t>(63, 'Z')), error);
}

TEST_F(RawDecoderFailure, WhatIsNotAFileFailsAtOnce) {
  const Deadline deadline;
  const std::string error = "LibRaw open_file failed: Input/output error";
  ExpectFailure(MakePipe(dir_.File("pipe.ARW")), error);
  ExpectFailure("/dev/zero", error);
}

TEST_F(RawDecoderFailure, WhatIsNotARawFile) {
  const std::string error = std::string("LibRaw open_file failed: ") + kUnsupported;
  ExpectFailure(Write("a.ARW", MakeUnsupportedFile()), error);
  ExpectFailure(kTestData + "cat.jpg", error);
}

TEST_F(RawDecoderFailure, RandomBytesAreNeverDecoded) {
  cv::RNG random(3);
  for (int i = 0; i < 20; ++i) {
    cv::Mat noise(1, 5000, CV_8UC1);
    random.fill(noise, cv::RNG::UNIFORM, 0, 256);
    ExpectFailure(Write("noise.ARW", {noise.begin<uint8_t>(), noise.end<uint8_t>()}),
                  std::string("LibRaw open_file failed: ") + kUnsupported);
  }
}

TEST_F(RawDecoderFailure, SamplesThatCannotBeUnpacked) {
  for (const RawFormat format : {RawFormat::kArwUncompressed, RawFormat::kDng}) {
    ExpectFailure(Write("cut.ARW", MakeTruncatedRaw(format)), "LibRaw unpack failed: Input/output error");
  }
  ExpectFailure(Write("deflated.dng", MakeUndecodableRaw()),
                "LibRaw unpack failed: Corrupted data or unexpected EOF");
}

TEST_F(RawDecoderFailure, ASensorThatCannotBeDeveloped) {
  const std::string path = Write("a.dng", MakeUndevelopableRaw());
  ExpectFailure(path, "LibRaw dcraw_process failed: Input/output error");
  DecodedImage decoded;
  EXPECT_TRUE(DecodeRaw(path, 2, decoded)) << decoded.error;  // only a full-size decode demosaics
}

TEST_F(RawDecoderFailure, SensorsWithoutThreeColors) {
  RawOptions monochrome;
  monochrome.format = RawFormat::kDng;
  monochrome.monochrome = true;
  const std::string error = std::string("LibRaw dcraw_make_mem_image failed: ") + kUnsupported;
  for (int quality = 1; quality <= 4; ++quality) {
    ExpectFailure(Write("gray.dng", MakeRawFile(kWidePicture, monochrome)), error, quality);
    ExpectFailure(Write("two.dng", MakeTwoColorRaw()), error, quality);
  }
}

TEST_F(RawDecoderFailure, MorePixelsThanAnyCameraHas) {
  const std::string error = "LibRaw unpack failed: Image too big for processing";
  ExpectFailure(Write("huge.dng", MakeOversizedRaw()), error);
  ExpectFailure(Write("large.dng", MakeOversizedRaw(23171)), error);  // LibRaw would accept this one
}

TEST_F(RawDecoderFailure, ADevelopedImageWithoutPixels) {
#if defined(LUMVIK_SANITIZE_ADDRESS)
  GTEST_SKIP() << "LibRaw asks for more memory than there can be, which the sanitizer does not allow";
#endif
  ExpectFailure(Write("diagonal.dng", MakeDiagonalRaw(46340)),
                std::string("LibRaw dcraw_make_mem_image failed: ") + kUnsupported);
}

TEST_F(RawDecoderFailure, TheTextIsReplacedByTheNextAttempt) {
  DecodedImage decoded;
  EXPECT_FALSE(DecodeRaw(Write("a.dng", MakeUndevelopableRaw()), 1, decoded));
  EXPECT_FALSE(DecodeRaw(dir_.File("missing"), 1, decoded));
  EXPECT_EQ(decoded.error, "LibRaw open_file failed: Input/output error");
  EXPECT_TRUE(DecodeRaw(kTestData + "no_thumb.dng", 1, decoded));
  EXPECT_EQ(decoded.error, "");
}

TEST_F(RawDecoderFailure, ACutFileFailsOrKeepsItsSize) {
  for (const RawFormat format : {RawFormat::kArwCompressed, RawFormat::kArwUncompressed, RawFormat::kDng}) {
    RawOptions options;
    options.format = format;
    const std::vector<uint8_t> whole = MakeRawFile(kWidePicture, options);
    for (size_t size = 0; size < whole.size(); size += 1 + size / 6) {
      const std::vector<uint8_t> cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
      DecodedImage decoded;
      if (DecodeRaw(Write("cut", cut), 1, decoded)) {
        EXPECT_EQ(decoded.image.size(), kWidePicture.size()) << size;
      } else {
        EXPECT_EQ(decoded.error.substr(0, 7), "LibRaw ") << size;
        EXPECT_TRUE(decoded.image.empty()) << size;
      }
    }
  }
}

TEST_F(RawDecoderFailure, WhatIsCutOffACompressedFileCountsAsZeros) {
  const std::vector<uint8_t> whole = MakeRawFile(kWidePicture);
  const std::vector<uint8_t> cut(whole.begin(), whole.end() - 500);
  std::vector<uint8_t> padded = cut;
  padded.resize(whole.size());
  for (const int quality : {1, 2}) {
    DecodedImage from_cut;
    DecodedImage from_padded;
    ASSERT_TRUE(DecodeRaw(Write("cut.ARW", cut), quality, from_cut));
    ASSERT_TRUE(DecodeRaw(Write("padded.ARW", padded), quality, from_padded));
    EXPECT_TRUE(SameBytes(from_cut.image, from_padded.image)) << quality;
  }
}

TEST_F(RawDecoderFailure, DamagedFilesPrintNothing) {
  const std::string files[] = {kTestData + "truncated.ARW",
                               Write("a", MakeTruncatedRaw(RawFormat::kArwCompressed)),
                               Write("b", MakeTruncatedRaw(RawFormat::kDng)),
                               Write("c", MakeUndecodableRaw()),
                               Write("d", MakeUndevelopableRaw()),
                               Write("e", MakeUnsupportedFile())};
  for (const std::string& path : files) {
    StderrCapture capture;
    DecodedImage decoded;
    DecodeRaw(path, 1, decoded);
    EXPECT_EQ(capture.Take(), "") << path;
  }
}

TEST(DecodeRaw, ACutCompressedFileKeepsItsSize) {
  DecodedImage decoded;
  ASSERT_TRUE(DecodeRaw(kTestData + "truncated.ARW", 1, decoded)) << decoded.error;
  EXPECT_EQ(decoded.image.size(), cv::Size(1600, 1066));
}

}  // namespace
}  // namespace lumvik::test
