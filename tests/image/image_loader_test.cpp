#include "image/image_loader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include "support/counting_allocator.h"
#include "support/exif_jpeg.h"
#include "support/file_bytes.h"
#include "support/process_state.h"
#include "support/temp_dir.h"
#include "support/test_images.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;

using Rgba16 = cv::Vec<uint16_t, 4>;

const char* const kExtensions[] = {".jpg", ".jpeg", ".png", ".tif", ".tiff", ".bmp", ".webp"};

cv::Mat Noise(int type, int rows, int cols) {
  cv::Mat image(rows, cols, type);
  cv::RNG(77).fill(image, cv::RNG::UNIFORM, 0, image.depth() == CV_8U ? 256 : 65536);
  return image;
}

// Large smooth areas that survive lossy formats: blue 40, green 120, red 200.
cv::Mat Flat(int rows = 40, int cols = 60) {
  return {rows, cols, CV_8UC3, cv::Scalar(40, 120, 200)};
}

std::vector<uint8_t> Encoded(const char* extension, const cv::Mat& image,
                             const std::vector<int>& params = {}) {
  std::vector<uint8_t> bytes;
  cv::imencode(extension, image, bytes, params);
  return bytes;
}

// The expected result for the decoder's 8-bit image, blue first.
cv::Mat Source(const cv::Mat& bgr) {
  cv::Mat source(bgr.size(), CV_16UC4);
  for (int y = 0; y < bgr.rows; ++y) {
    for (int x = 0; x < bgr.cols; ++x) {
      const auto& from = bgr.at<cv::Vec3b>(y, x);
      source.at<Rgba16>(y, x) =
          Rgba16(static_cast<uint16_t>(257 * from[2]), static_cast<uint16_t>(257 * from[1]),
                 static_cast<uint16_t>(257 * from[0]), 65535);
    }
  }
  return source;
}

class ImageLoader : public ::testing::Test {
 protected:
  std::string Write(const std::string& name, const std::vector<uint8_t>& bytes) const {
    return WriteBytes(dir_.File(name), bytes);
  }
  std::string Write(const std::string& name, const cv::Mat& image) const {
    return Write(name, Encoded(fs::path(name).extension().string().c_str(), image));
  }

  TempDir dir_;
};

TEST(IsStandardImagePath, EveryEndingInAnyCase) {
  for (const std::string extension : kExtensions) {
    EXPECT_TRUE(IsStandardImagePath("/photos/a" + extension)) << extension;
    std::string upper = extension;
    for (char& c : upper) c = static_cast<char>(std::toupper(c));
    EXPECT_TRUE(IsStandardImagePath("/photos/a" + upper)) << upper;
    EXPECT_TRUE(IsStandardImagePath(extension)) << extension;
  }
  for (const char* path : {"photo.JPG", "IMG.JPEG", "a.jPeG", "x.arw.Tif", "no folder/\xC3\xA9.WebP"}) {
    EXPECT_TRUE(IsStandardImagePath(path)) << path;
  }
}

TEST(IsStandardImagePath, EverythingElseIsRaw) {
  for (const std::string extension : kExtensions) {
    EXPECT_FALSE(IsStandardImagePath("photo" + extension.substr(1))) << extension;
    EXPECT_FALSE(IsStandardImagePath("photo" + extension + "x")) << extension;
    EXPECT_FALSE(IsStandardImagePath("photo" + extension + ".arw")) << extension;
  }
  for (const char* path : {"IMG.ARW", "IMG.dng", "x.jpg.arw", "x.jpg/y", "jpg", "photojpg", "photo.jpg ",
                           "photo.jp", "a.jpgx", "a.gif", "a.webp.", "", ".", "g", "jpeg", "noending"}) {
    EXPECT_FALSE(IsStandardImagePath(path)) << path;
  }
}

TEST_F(ImageLoader, LosslessFilesArriveExactly) {
  const cv::Mat bgr = Noise(CV_8UC3, 23, 37);
  for (const char* name : {"a.png", "a.bmp", "a.tif", "a.tiff", "a.PNG"}) {
    EXPECT_TRUE(SameBytes(LoadStandardImage(Write(name, bgr)), Source(bgr))) << name;
  }
}

TEST_F(ImageLoader, LossyFilesArriveAsDecoded) {
  for (const char* name : {"a.jpg", "a.jpeg", "a.webp"}) {
    const std::string path = Write(name, Noise(CV_8UC3, 23, 37));
    EXPECT_TRUE(SameBytes(LoadStandardImage(path), Source(cv::imread(path, cv::IMREAD_COLOR)))) << name;
    const ImageBuffer flat = LoadStandardImage(Write(name, Flat()));
    EXPECT_LE(cv::norm(flat.at<Rgba16>(20, 30), Rgba16(200 * 257, 120 * 257, 40 * 257, 65535), cv::NORM_INF),
              3 * 257)
        << name;
  }
}

TEST_F(ImageLoader, SixteenBitsAreReducedToEightAndWidened) {
  for (const char* name : {"a.png", "a.tif"}) {
    const cv::Mat deep = Noise(CV_16UC3, 20, 30);
    const ImageBuffer image = LoadStandardImage(Write(name, deep));
    ASSERT_EQ(image.type(), CV_16UC4);
    for (int y = 0; y < deep.rows; ++y) {
      for (int x = 0; x < deep.cols; ++x) {
        for (int c = 0; c < 3; ++c) {
          const int sample = image.at<Rgba16>(y, x)[c];
          ASSERT_EQ(sample % 257, 0) << name;
          ASSERT_LE(std::abs(sample - deep.at<cv::Vec<uint16_t, 3>>(y, x)[2 - c]), 257) << name;
        }
      }
    }
  }
}

TEST_F(ImageLoader, GrayBecomesThreeEqualChannels) {
  for (const char* name : {"a.jpg", "a.png"}) {
    const std::string path = Write(name, Noise(CV_8UC1, 16, 24));
    const cv::Mat gray = cv::imread(path, cv::IMREAD_UNCHANGED);
    ASSERT_EQ(gray.type(), CV_8UC1);
    cv::Mat bgr;
    cv::merge(std::vector<cv::Mat>(3, gray), bgr);
    EXPECT_TRUE(SameBytes(LoadStandardImage(path), Source(bgr))) << name;
  }
}

TEST_F(ImageLoader, TransparencyIsDropped) {
  const cv::Mat bgra = Noise(CV_8UC4, 16, 24);
  cv::Mat bgr;
  cv::cvtColor(bgra, bgr, cv::COLOR_BGRA2BGR);
  EXPECT_TRUE(SameBytes(LoadStandardImage(Write("a.png", bgra)), Source(bgr)));
}

TEST_F(ImageLoader, TheContentDecidesNotTheName) {
  const cv::Mat bgr = Noise(CV_8UC3, 9, 11);
  EXPECT_TRUE(SameBytes(LoadStandardImage(Write("a.jpg", Encoded(".png", bgr))), Source(bgr)));
  EXPECT_TRUE(SameBytes(LoadStandardImage(Write("a.webp", Encoded(".bmp", bgr))), Source(bgr)));
}

TEST_F(ImageLoader, NamesMayHoldSpacesAndAnyLetters) {
  const cv::Mat bgr = Noise(CV_8UC3, 9, 11);
  for (const char* name :
       {"two words.png", "\xC3\xA9t\xC3\xA9.png", "\xE5\x86\x99\xE7\x9C\x9F \xF0\x9F\x8F\x94.png", ".png"}) {
    EXPECT_TRUE(SameBytes(LoadStandardImage(Write(name, Encoded(".png", bgr))), Source(bgr))) << name;
  }
}

TEST_F(ImageLoader, LargeImagesAreReducedTo4096) {
  const cv::Mat large = cv::Mat(4000, 6000, CV_8UC3, cv::Scalar(40, 120, 200));
  const ImageBuffer reduced = LoadStandardImage(Write("a.jpg", large));
  ASSERT_EQ(reduced.size(), cv::Size(4096, 2731));
  EXPECT_LE(
      cv::norm(reduced.at<Rgba16>(2000, 3000), Rgba16(200 * 257, 120 * 257, 40 * 257, 65535), cv::NORM_INF),
      3 * 257);
}

TEST_F(ImageLoader, ReductionAveragesAreasBeforeWidening) {
  for (const cv::Size size : {cv::Size(5000, 20), cv::Size(20, 5000), cv::Size(4097, 8)}) {
    const cv::Mat bgr = Noise(CV_8UC3, size.height, size.width);
    const float factor = 4096.0F / static_cast<float>(std::max(size.width, size.height));
    cv::Mat reduced;
    cv::resize(bgr, reduced, cv::Size(0, 0), static_cast<double>(factor), static_cast<double>(factor),
               cv::INTER_AREA);
    const ImageBuffer loaded = LoadStandardImage(Write("a.png", bgr));
    EXPECT_EQ(std::max(loaded.cols, loaded.rows), 4096);
    EXPECT_TRUE(SameBytes(loaded, Source(reduced))) << size;
  }
}

TEST_F(ImageLoader, ReductionKeepsOneImageOfTheFilesSize) {
  const cv::Mat large(4096, 12288, CV_8UC3, cv::Scalar(40, 120, 200));
  const std::string path = Write("a.png", large);
  const CountingAllocator memory;
  ASSERT_EQ(LoadStandardImage(path).size(), cv::Size(4096, 1365));
  EXPECT_LT(memory.Peak(), large.total() * large.elemSize() * 5 / 4);
}

TEST_F(ImageLoader, ImagesOf4096KeepTheirSize) {
  const cv::Mat wide(3000, 4096, CV_8UC3, cv::Scalar(1, 2, 3));
  EXPECT_TRUE(SameBytes(LoadStandardImage(Write("b.png", wide)), Source(wide)));
  const cv::Mat tall(4096, 3, CV_8UC3, cv::Scalar(1, 2, 3));
  EXPECT_TRUE(SameBytes(LoadStandardImage(Write("a.png", tall)), Source(tall)));
}

TEST_F(ImageLoader, VeryLongImagesKeepOnePixelAcross) {
  EXPECT_EQ(LoadStandardImage(Write("a.png", Noise(CV_8UC3, 1, 10000))).size(), cv::Size(4096, 1));
  EXPECT_EQ(LoadStandardImage(Write("b.png", Noise(CV_8UC3, 10000, 1))).size(), cv::Size(1, 4096));
}

// The stored image has quarters a, b (top), c and d (bottom).
TEST_F(ImageLoader, PicturesAreTurnedByTheirExifOrientation) {
  const cv::Size quarter(32, 16);
  const cv::Scalar colors[] = {{0, 0, 255}, {0, 255, 0}, {255, 0, 0}, {255, 255, 255}};
  const Rgba16 loaded_colors[] = {
      {65535, 0, 0, 65535}, {0, 65535, 0, 65535}, {0, 0, 65535, 65535}, {65535, 65535, 65535, 65535}};
  cv::Mat stored(32, 64, CV_8UC3);
  for (int q = 0; q < 4; ++q) {
    stored(cv::Rect(cv::Point(q % 2 * quarter.width, q / 2 * quarter.height), quarter)).setTo(colors[q]);
  }
  const char* const upright[] = {"abcd", "badc", "dcba", "cdab", "acbd", "cadb", "dbca", "bdac"};
  for (const ByteOrder order : {ByteOrder::kLittle, ByteOrder::kBig}) {
    for (int orientation = 1; orientation <= 8; ++orientation) {
      ExifBlock exif(order);
      exif.Shorts(Ifd::kZero, 0x0112, {static_cast<uint16_t>(orientation)});
      const ImageBuffer image =
          LoadStandardImage(Write("a.jpg", JpegWithExif(exif.Serialize(), Encoded(".jpg", stored))));
      ASSERT_EQ(image.size(), orientation < 5 ? cv::Size(64, 32) : cv::Size(32, 64)) << orientation;
      for (int q = 0; q < 4; ++q) {
        const cv::Point center(image.cols / 4 * (1 + q % 2 * 2), image.rows / 4 * (1 + q / 2 * 2));
        const int expected = upright[orientation - 1][q] - 'a';
        EXPECT_LE(cv::norm(image.at<Rgba16>(center), loaded_colors[expected], cv::NORM_INF), 20 * 257)
            << "orientation " << orientation << " quarter " << q;
      }
    }
  }
}

TEST(LoadStandardImage, TurnsAPhotograph) {
  const std::string path = LUMVIK_TEST_DATA "/tower_orientation8.jpg";
  cv::Mat upright;
  cv::rotate(cv::imread(path, cv::IMREAD_COLOR | cv::IMREAD_IGNORE_ORIENTATION), upright,
             cv::ROTATE_90_COUNTERCLOCKWISE);
  ASSERT_EQ(upright.size(), cv::Size(2272, 1704));
  EXPECT_TRUE(SameBytes(LoadStandardImage(path), Source(upright)));
}

TEST_F(ImageLoader, ReadsWithTheFlagItIsGiven) {
  const cv::Mat deep = Noise(CV_16UC4, 9, 11);
  const std::string path = Write("a.png", deep);
  EXPECT_TRUE(SameBytes(ReadImageFileUtf8(path, cv::IMREAD_UNCHANGED), deep));
  EXPECT_EQ(ReadImageFileUtf8(path, cv::IMREAD_COLOR).type(), CV_8UC3);
  EXPECT_EQ(ReadImageFileUtf8(path, cv::IMREAD_GRAYSCALE).type(), CV_8UC1);
}

TEST_F(ImageLoader, WhatCannotBeReadIsEmpty) {
  const Deadline deadline;
  fs::create_directory(dir_.File("folder.png"));
  fs::create_symlink("/dev/zero", dir_.File("endless.png"));
  for (const std::string& path :
       {dir_.File("missing.png"), dir_.File("no/such/folder.png"), Write("empty.png", std::vector<uint8_t>()),
        dir_.File("folder.png"), MakePipe(dir_.File("pipe.png")), dir_.File("endless.png"), std::string()}) {
    EXPECT_TRUE(LoadStandardImage(path).empty()) << path;
    EXPECT_TRUE(ReadImageFileUtf8(path, cv::IMREAD_UNCHANGED).empty()) << path;
  }
}

TEST_F(ImageLoader, WhatIsNoImageIsEmpty) {
  const cv::Mat noise = Noise(CV_8UC1, 1, 5000);
  const std::vector<uint8_t> random(noise.begin<uint8_t>(), noise.end<uint8_t>());
  for (const std::string extension : kExtensions) {
    EXPECT_TRUE(LoadStandardImage(Write("random" + extension, random)).empty()) << extension;
    EXPECT_TRUE(LoadStandardImage(Write("zeros" + extension, std::vector<uint8_t>(5000))).empty())
        << extension;
    EXPECT_TRUE(LoadStandardImage(Write("byte" + extension, {0xFF})).empty()) << extension;
  }
}

TEST_F(ImageLoader, FilesOfFourGibibytesAreEmpty) {
  const std::string path = Write("a.png", Flat());
  fs::resize_file(path, uint64_t{1} << 32U);  // sparse
  EXPECT_TRUE(LoadStandardImage(path).empty());
}

TEST_F(ImageLoader, ACutFileIsEmptyOrOfFullSize) {
  for (const char* extension : {".jpg", ".png", ".tif", ".bmp", ".webp"}) {
    const cv::Mat bgr = Noise(CV_8UC3, 24, 32);
    const std::vector<uint8_t> whole = Encoded(extension, bgr);
    for (size_t size = 0; size < whole.size(); size += 1 + size / 8) {
      const std::vector<uint8_t> cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
      const ImageBuffer image = LoadStandardImage(Write(std::string("cut") + extension, cut));
      EXPECT_TRUE(image.empty() || (size >= 16 && image.size() == bgr.size() && image.type() == CV_16UC4))
          << extension << " " << size;
    }
  }
}

// The decoder throws when a header claims a size beyond its limit.
TEST_F(ImageLoader, ClaimedSizesBeyondTheDecodersLimitAreEmpty) {
  std::vector<uint8_t> bitmap = Encoded(".bmp", Flat());
  const uint8_t two_million[] = {0x80, 0x84, 0x1E, 0x00};
  std::copy(std::begin(two_million), std::end(two_million), bitmap.begin() + 18);  // width
  EXPECT_THROW(cv::imdecode(bitmap, cv::IMREAD_COLOR), cv::Exception);
  EXPECT_TRUE(LoadStandardImage(Write("wide.bmp", bitmap)).empty());

  for (const std::string size : {"2000000 1", "1 2000000", "60000 60000", "1000000 1000000"}) {
    const std::string text = "P6 " + size + " 255 " + std::string(100, 'x');
    EXPECT_TRUE(LoadStandardImage(Write("huge.bmp", std::vector<uint8_t>(text.begin(), text.end()))).empty())
        << size;
  }
}

}  // namespace
}  // namespace lumvik::test
