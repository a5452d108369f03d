// Paths that are missing, damaged, misnamed or not files: each gives its error text, without a crash or a
// hang, and leaves the loaded photograph unchanged.
#include <libraw/libraw.h>

#include <opencv2/imgcodecs.hpp>

#include "api_test.h"
#include "support/broken_raw.h"
#include "support/process_state.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;

std::string OpenFailed(int code) {
  return std::string("LibRaw open_file failed: ") + libraw_strerror(code);
}

Bytes RandomBytes(int count) {
  Bytes bytes(static_cast<size_t>(count));
  cv::RNG(7).fill(bytes, cv::RNG::UNIFORM, 0, 256);
  return bytes;
}

// SmallPicture() in the format of the extension.
Bytes Encoded(const char* extension) {
  Bytes bytes;
  cv::imencode(extension, SmallPicture(), bytes);
  return bytes;
}

Bytes First(const Bytes& bytes, size_t count) {
  return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count)};
}

class BadInputTest : public ApiTest {
 protected:
  BadInputTest() { LoadNeutral(); }

  // Expects the load to fail with this text and to leave the loaded photograph unchanged.
  void ExpectFailure(const std::string& path, const std::string& text) const {
    SCOPED_TRACE(path);
    ctx()->last_error = "another";
    EXPECT_EQ(lumvik_load_arw(ctx(), path.c_str(), 1), kFailed);
    EXPECT_EQ(LastError(), text);
    EXPECT_EQ(ctx()->source_path, Path("neutral.png"));
    EXPECT_TRUE(SameBytes(Exported(), Widened(SmallPicture())));
  }

  void ExpectUnreadable(const std::string& path) const {
    ExpectFailure(path, "OpenCV could not read: " + path);
  }

  std::string Written(const std::string& name, const Bytes& bytes) const {
    return WriteBytes(Path(name), bytes);
  }
};

TEST_F(BadInputTest, UndecodableOrdinaryImages) {
  const std::string text = "This is a text, and not a photograph.";
  // Claims 2147483632 x 16 pixels, with a correct checksum.
  const std::string huge_png(
      "\x89PNG\r\n\x1a\n\0\0\0\rIHDR\x7f\xff\xff\xf0\0\0\0\x10\x08\x02\0\0\0\x16\xd5\x2e\x39", 33);
  for (const char* name : {"a.jpg", "a.jpeg", "a.png", "a.tif", "a.tiff", "a.bmp", "a.webp"}) {
    ExpectUnreadable(Written(name, {}));
    ExpectUnreadable(Written(name, {'x'}));
    ExpectUnreadable(Written(name, RandomBytes(5000)));
    ExpectUnreadable(Written(name, Bytes(5000, 0)));
    ExpectUnreadable(Written(name, {text.begin(), text.end()}));
    ExpectUnreadable(Written(name, {huge_png.begin(), huge_png.end()}));
  }
}

TEST_F(BadInputTest, OrdinaryImagesCutAfterTheirSignature) {
  for (const char* extension : {".jpg", ".png", ".tif", ".bmp", ".webp"}) {
    ExpectUnreadable(Written(std::string("a") + extension, First(Encoded(extension), 16)));
  }
}

TEST_F(BadInputTest, UndecodableRawFiles) {
  const struct {
    Bytes bytes;
    std::string text;
  } cases[] = {
      {{}, OpenFailed(LIBRAW_IO_ERROR)},
      {Bytes(63, 'Z'), OpenFailed(LIBRAW_IO_ERROR)},
      {MakeUnsupportedFile(), OpenFailed(LIBRAW_FILE_UNSUPPORTED)},
      {MakeTruncatedRaw(RawFormat::kDng), "LibRaw unpack failed: Input/output error"},
      {MakeTruncatedRaw(RawFormat::kArwUncompressed), "LibRaw unpack failed: Input/output error"},
      {MakeOversizedRaw(), "LibRaw unpack failed: Image too big for processing"},
      {MakeUndecodableRaw(), "LibRaw unpack failed: Corrupted data or unexpected EOF"},
      {MakeUndevelopableRaw(), "LibRaw dcraw_process failed: Input/output error"},
  };
  for (const auto& c : cases) {
    ExpectFailure(Written("a.arw", c.bytes), c.text);
    ExpectFailure(Written("no extension", c.bytes), c.text);
  }
}

TEST_F(BadInputTest, OtherFilesWithARawExtension) {
  ExpectFailure(Written("a.arw", Encoded(".png")), OpenFailed(LIBRAW_FILE_UNSUPPORTED));
  ExpectFailure(Written("a.arw", Encoded(".jpg")), OpenFailed(LIBRAW_FILE_UNSUPPORTED));
  ExpectFailure(Written("a.arw", RandomBytes(5000)), OpenFailed(LIBRAW_FILE_UNSUPPORTED));
  ExpectFailure(Written("a.arw", Bytes(5000, 0)), OpenFailed(LIBRAW_FILE_UNSUPPORTED));
}

TEST_F(BadInputTest, MissingFiles) {
  const std::string long_name(300, 'n');
  fs::create_symlink(Path("nowhere"), Path("dangling.png"));
  fs::create_symlink(Path("nowhere"), Path("dangling.arw"));
  for (const std::string& name : {std::string("missing"), std::string("no folder/a"), std::string("dangling"),
                                  std::string("neutral.png/a"), long_name}) {
    ExpectUnreadable(Path(name + ".png"));
    ExpectFailure(Path(name + ".arw"), OpenFailed(LIBRAW_IO_ERROR));
  }
  ExpectFailure("", OpenFailed(LIBRAW_IO_ERROR));
  ExpectUnreadable(".png");
}

TEST_F(BadInputTest, Folders) {
  fs::create_directory(Path("folder.png"));
  fs::create_directory(Path("folder.arw"));
  ExpectUnreadable(Path("folder.png"));
  ExpectFailure(Path("folder.arw"), OpenFailed(LIBRAW_IO_ERROR));
}

TEST_F(BadInputTest, PipesAndDevicesDoNotBlock) {
  const Deadline deadline;
  for (const char* name : {"pipe.arw", "pipe.png"}) MakePipe(Path(name));
  for (const char* name : {"zero.arw", "zero.png"}) fs::create_symlink("/dev/zero", Path(name));
  for (const char* name : {"pipe.png", "zero.png"}) ExpectUnreadable(Path(name));
  for (const char* name : {"pipe.arw", "zero.arw"}) ExpectFailure(Path(name), OpenFailed(LIBRAW_IO_ERROR));
}

TEST_F(BadInputTest, UnreadableFiles) {
  const std::string ordinary = WritePicture("a.png");
  const std::string raw = WriteRaw("a.arw");
  for (const std::string& path : {ordinary, raw}) fs::permissions(path, fs::perms::none);
  fs::permissions(folder(), fs::perms::all);
  const OrdinaryUser user;
  EXPECT_EQ(lumvik_load_arw(ctx(), ordinary.c_str(), 1), kFailed);
  EXPECT_EQ(LastError(), "OpenCV could not read: " + ordinary);
  EXPECT_EQ(lumvik_load_arw(ctx(), raw.c_str(), 1), kFailed);
  EXPECT_EQ(LastError(), OpenFailed(LIBRAW_IO_ERROR));
}

// Wherever the file is cut, the engine's result is that of the image decoder.
TEST_F(BadInputTest, TruncatedOrdinaryImages) {
  int decoded = 0;
  int refused = 0;
  for (const char* extension : {".jpg", ".png", ".tif", ".bmp", ".webp"}) {
    const Bytes whole = Encoded(extension);
    for (size_t part = 1; part <= 20; ++part) {
      const Bytes cut = First(whole, whole.size() * part / 20);
      const std::string path = Written(std::string("cut") + extension, cut);
      const cv::Mat expected = cv::imdecode(cut, cv::IMREAD_COLOR);
      if (expected.empty()) {
        ExpectUnreadable(path);
        ++refused;
        continue;
      }
      ASSERT_EQ(lumvik_load_arw(ctx(), path.c_str(), 1), LUMVIK_OK) << LastError();
      lumvik_set_temperature(ctx(), 6500);
      EXPECT_TRUE(SameBytes(Exported(), Widened(expected))) << extension << part;
      LoadNeutral();
      ++decoded;
    }
  }
  EXPECT_GT(decoded, 5);
  EXPECT_GT(refused, 20);
}

TEST_F(BadInputTest, TruncatedRawFiles) {
  int decoded = 0;
  int refused = 0;
  for (const RawFormat format : {RawFormat::kArwCompressed, RawFormat::kArwUncompressed, RawFormat::kDng}) {
    RawOptions options;
    options.format = format;
    const Bytes whole = ReadBytes(WriteRaw("whole.arw", options));
    for (size_t part = 1; part <= 16; ++part) {
      const std::string path = Written("cut.arw", First(whole, whole.size() * part / 16));
      if (lumvik_load_arw(ctx(), path.c_str(), 1) == LUMVIK_OK) {
        EXPECT_EQ(lumvik_process(ctx()), LUMVIK_OK);
        EXPECT_EQ(Exported().size(), cv::Size(48, 32));
        LoadNeutral();
        ++decoded;
        continue;
      }
      EXPECT_EQ(LastError().rfind("LibRaw ", 0), 0U) << LastError();
      ExpectFailure(path, LastError());
      ++refused;
    }
  }
  EXPECT_GE(decoded, 3);
  EXPECT_GT(refused, 10);
}

}  // namespace
}  // namespace lumvik::test
