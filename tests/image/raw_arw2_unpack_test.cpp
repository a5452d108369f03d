// The samples of a compressed ARW are those of LibRaw's own decoder.
#include <gtest/gtest.h>
#include <libraw/libraw.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <opencv2/core/utility.hpp>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "image/guarded_libraw.h"
#include "image/raw/known_libraw.h"
#include "support/file_bytes.h"
#include "support/instruction_sets.h"
#include "support/raw_writer.h"
#include "support/temp_dir.h"

namespace lumvik::test {
namespace {

using Bytes = std::vector<uint8_t>;

constexpr int kRows = 70;
constexpr int kColumns = 160;

// Keeps LibRaw's own decoder.
class LibRawDecoder : public GuardedLibRaw {
 public:
  int get_decoder_info(libraw_decoder_info_t* decoder) override { return LibRaw::get_decoder_info(decoder); }
};

// Records how the rows are read.
class RecordingStream : public LibRaw_buffer_datastream {
 public:
  explicit RecordingStream(Bytes& file) : LibRaw_buffer_datastream(file.data(), file.size()) {}
  int read(void* items, size_t size, size_t count) override {
    largest_read_ = std::max(largest_read_, size * count);
    return LibRaw_buffer_datastream::read(items, size, count);
  }
  void Reset() { largest_read_ = 0; }
  size_t LargestRead() const { return largest_read_; }

 private:
  size_t largest_read_ = 0;
};

size_t SensorOffset(LibRaw& raw) {
  return static_cast<size_t>(raw.get_internal_data_pointer()->unpacker_data.data_offset);
}

// A compressed ARW of random groups. Some have both extremes at one position.
Bytes RandomArw() {
  RawOptions options;
  options.preview = RawPreview::kNone;
  Bytes file = MakeRawFile(cv::Mat(kRows, kColumns, CV_8UC3, cv::Scalar::all(90)), options);
  const auto raw = std::make_unique<LibRaw>();
  EXPECT_EQ(raw->open_buffer(file.data(), file.size()), LIBRAW_SUCCESS);
  std::mt19937 random(11);
  const size_t begin = SensorOffset(*raw);
  EXPECT_EQ(begin + kRows * kColumns, file.size());
  std::generate(file.begin() + static_cast<std::ptrdiff_t>(begin), file.end(),
                [&] { return static_cast<uint8_t>(random()); });
  return file;
}

// LibRaw's own decoder depends on the byte after the row, which it never sets, if the last groups do.
Bytes WithPlainLastGroups(Bytes file) {
  for (size_t group = file.size() - 16; group >= file.size() - kRows * kColumns; group -= kColumns)
    std::memset(&file[group], 0x5A, 16);
  return file;
}

using Change = std::function<void(LibRaw& raw)>;

void NoChange(LibRaw& /*raw*/) {}

// The status, the whole buffer, and what LibRaw derives from it.
using Unpacked = std::tuple<int, std::vector<uint16_t>, unsigned, unsigned>;

Unpacked Result(GuardedLibRaw& raw, const Change& change) {
  change(raw);
  const int status = raw.UnpackSensor();
  if (status != LIBRAW_SUCCESS || raw.imgdata.rawdata.raw_image == nullptr) return {status, {}, 0, 0};
  const libraw_image_sizes_t& sizes = raw.imgdata.sizes;
  const size_t columns = std::max<size_t>(sizes.raw_width, size_t{sizes.left_margin} + sizes.width);
  const size_t rows = std::max<size_t>(sizes.raw_height, size_t{sizes.top_margin} + sizes.height);
  const uint16_t* samples = raw.imgdata.rawdata.raw_image;
  const libraw_colordata_t& color = raw.imgdata.color;
  return {status, {samples, samples + columns * rows}, color.black, color.maximum};
}

template <typename Decoder>
Unpacked Unpack(const std::string& path, const Change& change = NoChange) {
  const auto raw = std::make_unique<Decoder>();
  EXPECT_EQ(raw->OpenFile(path), LIBRAW_SUCCESS);
  return Result(*raw, change);
}

class Arw2UnpackTest : public ::testing::Test {
 protected:
  ~Arw2UnpackTest() override { cv::setNumThreads(usual_threads_); }

  std::string Written(const Bytes& file) const { return WriteBytes(folder_.File("a.arw"), file); }

  // Whether several rows were read at once, which only our decoder does.
  bool DecodesRowsAtOnce(Bytes file, const Change& change = NoChange) const {
    RecordingStream stream(file);
    const auto raw = std::make_unique<GuardedLibRaw>();
    EXPECT_EQ(raw->open_datastream(&stream), LIBRAW_SUCCESS);
    stream.Reset();
    Result(*raw, change);
    return stream.LargestRead() > raw->imgdata.sizes.raw_width;
  }

  const Bytes file_ = RandomArw();
  const TempDir folder_;

 private:
  const int usual_threads_ = cv::getNumThreads();
};

TEST_F(Arw2UnpackTest, EqualsLibRawWithoutAnyGuard) {
  Bytes file = WithPlainLastGroups(file_);
  const auto plain = std::make_unique<LibRaw>();
  ASSERT_EQ(plain->open_buffer(file.data(), file.size()), LIBRAW_SUCCESS);
  ASSERT_EQ(plain->unpack(), LIBRAW_SUCCESS);
  const uint16_t* samples = plain->imgdata.rawdata.raw_image;
  const std::string path = Written(file);
  WithEachInstructionSet([&] {
    for (int threads = 1; threads <= 4; ++threads) {
      cv::setNumThreads(threads);
      EXPECT_EQ(std::get<1>(Unpack<GuardedLibRaw>(path)),
                std::vector<uint16_t>(samples, samples + kRows * kColumns));
    }
  });
  EXPECT_EQ(DecodesRowsAtOnce(file), IsKnownLibRaw());
}

TEST_F(Arw2UnpackTest, AnyWidthOfTheSensor) {
  const std::string path = Written(file_);
  for (int columns = 24; columns <= kColumns; ++columns) {
    SCOPED_TRACE(columns);
    const Change narrow = [&](LibRaw& raw) {
      raw.imgdata.sizes.raw_width = static_cast<ushort>(columns);
      raw.imgdata.sizes.width = 24;
    };
    EXPECT_EQ(Unpack<GuardedLibRaw>(path, narrow), Unpack<LibRawDecoder>(path, narrow));
  }
}

TEST_F(Arw2UnpackTest, RowsAndColumnsThatAreNotDecodedAreZero) {
  const std::string path = Written(file_);
  const Change margins = [](LibRaw& raw) {
    raw.imgdata.sizes.height = kRows - 20;
    raw.imgdata.sizes.top_margin = 26;
    raw.imgdata.sizes.raw_width = 50;
    raw.imgdata.sizes.width = 40;
    raw.imgdata.sizes.left_margin = 20;
  };
  const Unpacked ours = Unpack<GuardedLibRaw>(path, margins);
  EXPECT_EQ(ours, Unpack<LibRawDecoder>(path, margins));
  EXPECT_EQ(std::get<1>(ours).back(), 0);
  EXPECT_TRUE(DecodesRowsAtOnce(file_, margins) || !IsKnownLibRaw());
}

TEST_F(Arw2UnpackTest, ATruncatedFile) {
  constexpr size_t kSamples = size_t{kRows} * kColumns;
  for (const size_t missing :
       {size_t{1}, size_t{15}, size_t{16}, size_t{17}, size_t{kColumns - 1}, size_t{kColumns},
        size_t{kColumns + 1}, kSamples / 2, kSamples - 1, kSamples}) {
    SCOPED_TRACE(missing);
    const std::string path = Written({file_.begin(), file_.end() - static_cast<std::ptrdiff_t>(missing)});
    EXPECT_EQ(Unpack<GuardedLibRaw>(path), Unpack<LibRawDecoder>(path));
  }
}

TEST_F(Arw2UnpackTest, LibRawDecodesWhatIsUnusual) {
  ASSERT_EQ(DecodesRowsAtOnce(file_), IsKnownLibRaw());
  EXPECT_FALSE(DecodesRowsAtOnce({file_.begin(), file_.end() - 1}));
  const std::string path = Written(WithPlainLastGroups(file_));
  const std::vector<Change> changes = {
      [](LibRaw& raw) { raw.imgdata.params.raw_processing_options |= LIBRAW_PROCESSING_SONYARW2_BASEONLY; },
      [](LibRaw& raw) { raw.get_internal_data_pointer()->unpacker_data.order = 0x4D4D; },
      [](LibRaw& raw) { raw.imgdata.idata.filters = 0; },  // LibRaw decodes to another buffer
  };
  for (const Change& change : changes) {
    EXPECT_FALSE(DecodesRowsAtOnce(file_, change));
  }
  for (size_t i = 0; i < 2; ++i) {
    EXPECT_EQ(Unpack<GuardedLibRaw>(path, changes[i]), Unpack<LibRawDecoder>(path, changes[i]));
    EXPECT_NE(Unpack<GuardedLibRaw>(path, changes[i]), Unpack<GuardedLibRaw>(path));
  }
}

TEST_F(Arw2UnpackTest, TheDecoderKeepsItsName) {
  const auto raw = std::make_unique<GuardedLibRaw>();
  ASSERT_EQ(raw->OpenFile(Written(file_)), LIBRAW_SUCCESS);
  const std::string name = raw->unpack_function_name();
  ASSERT_EQ(raw->UnpackSensor(), LIBRAW_SUCCESS);
  EXPECT_EQ(raw->unpack_function_name(), name);
}

TEST_F(Arw2UnpackTest, AFailureKeepsItsCode) {
  const std::string path = Written(file_);
  const Change canceled = [](LibRaw& raw) { raw.setCancelFlag(); };
  const Change too_big = [](LibRaw& raw) { raw.imgdata.params.max_raw_memory_mb = 0; };
  for (const Change& change : {canceled, too_big}) {
    const Unpacked ours = Unpack<GuardedLibRaw>(path, change);
    EXPECT_NE(std::get<0>(ours), LIBRAW_SUCCESS);
    EXPECT_EQ(ours, Unpack<LibRawDecoder>(path, change));
  }
}

}  // namespace
}  // namespace lumvik::test
