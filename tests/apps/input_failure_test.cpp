// Photographs that cannot be developed: one message, no file.
#include <array>
#include <cstdint>
#include <filesystem>

#include "command_test.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;

class InputFailureTest : public CommandTest {
 protected:
  void TearDown() override {
    EXPECT_FALSE(fs::exists(Path("out.jpg")));
    CommandTest::TearDown();
  }

  void ExpectRefusedInput(const std::string& input, const std::string& reason) const {
    ExpectRefusal(Develop(input, Path("out.jpg")), kFailure, "cannot read '" + input + "': " + reason);
  }
};

void AppendBigEndian(std::string& bytes, std::uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8) bytes.push_back(static_cast<char>(value >> shift & 0xFF));
}

// The checksum that ends a chunk of a PNG file.
std::uint32_t Crc32(const std::string& bytes) {
  std::uint32_t crc = ~0U;
  for (const char c : bytes) {
    crc ^= static_cast<unsigned char>(c);
    for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ (crc & 1 ? 0xEDB88320U : 0);
  }
  return ~crc;
}

void AppendPngChunk(std::string& file, const std::string& type, const std::string& data) {
  AppendBigEndian(file, static_cast<std::uint32_t>(data.size()));
  file += type + data;
  AppendBigEndian(file, Crc32(type + data));
}

// A PNG with a header for this size but no pixels.
std::string EmptyPng(std::uint32_t width, std::uint32_t height) {
  std::string header;
  AppendBigEndian(header, width);
  AppendBigEndian(header, height);
  header += std::string("\x08\x02\x00\x00\x00", 5);  // 8-bit RGB, standard methods
  std::string file = "\x89PNG\r\n\x1A\n";
  AppendPngChunk(file, "IHDR", header);
  AppendPngChunk(file, "IDAT", "");
  AppendPngChunk(file, "IEND", "");
  return file;
}

TEST_F(InputFailureTest, AMissingFile) {
  ExpectRefusedInput(Path("missing.jpg"), "there is no such file");
  ExpectRefusedInput(Path("no folder/missing.ARW"), "there is no such file");
  ExpectRefusedInput("", "there is no such file");
}

TEST_F(InputFailureTest, AFolder) {
  fs::create_directory(Path("folder.jpg"));
  ExpectRefusedInput(Path("folder.jpg"), "it is a folder");
}

TEST_F(InputFailureTest, APipeDoesNotBlock) {
  ExpectRefusedInput(MakePipe(Path("pipe.jpg")), "it is not a regular file");
}

TEST_F(InputFailureTest, AnUnreadableFile) {
  const std::string in = Photograph("secret.jpg");
  ASSERT_EQ(Develop(in, Path("readable.jpg"), {}, UnprivilegedCommand()).status, kSuccess);
  fs::permissions(in, fs::perms::none);
  ExpectRefusal(Develop(in, Path("out.jpg"), {}, UnprivilegedCommand()), kFailure,
                "cannot read '" + in + "': Permission denied");
}

TEST_F(InputFailureTest, AnInaccessibleFolder) {
  fs::create_directory(Path("closed"));
  const std::string in = Photograph("closed/in.jpg");
  fs::permissions(Path("closed"), fs::perms::none);
  ExpectRefusal(Develop(in, Path("out.jpg"), {}, UnprivilegedCommand()), kFailure,
                "cannot read '" + in + "': Permission denied");
  fs::permissions(Path("closed"), fs::perms::owner_all);
}

TEST_F(InputFailureTest, FilesThatAreNotPhotographs) {
  WriteFile(Path("text.jpg"), "not a photograph at all\n");
  WriteFile(Path("empty.png"), "");
  WriteFile(Path("text.ARW"), "not a photograph either\n");
  WriteFile(Path("empty"), "");
  for (const char* name : {"text.jpg", "text.ARW"}) {
    ExpectRefusal(Develop(Path(name), Path("out.jpg")), kFailure,
                  "'" + Path(name) + "' is neither a RAW file nor an image of a known format");
  }
  for (const char* name : {"empty.png", "empty"}) {
    ExpectRefusal(Develop(Path(name), Path("out.jpg")), kFailure, "'" + Path(name) + "' is empty");
  }
}

TEST_F(InputFailureTest, EveryCommandReportsAnEmptyFile) {
  const std::string in = Path("empty.jpg");
  WriteFile(in, "");
  const std::vector<std::vector<std::string>> commands = {
      {"hash", in}, {"info", in}, {"thumb", in, "-o", Path("out.jpg")}, {"settings", "import", in}};
  for (const std::vector<std::string>& arguments : commands) {
    std::vector<std::string> all = Command();
    all.insert(all.end(), arguments.begin(), arguments.end());
    SCOPED_TRACE(arguments.front());
    ExpectRefusal(RunProcess(all), kFailure, "'" + in + "' is empty");
  }
}

TEST_F(InputFailureTest, ASizeBeyondTheDecodersLimits) {
  WriteFile(Path("giant.png"), EmptyPng(60000, 60000));
  ExpectRefusal(Develop(Path("giant.png"), Path("out.jpg")), kDamaged,
                "'" + Path("giant.png") + "' is damaged: the PNG is corrupt: it claims too many pixels");
}

// 3 GB of pixels with a limit of 2 GB.
TEST_F(InputFailureTest, AnImageLargerThanTheMemory) {
#if defined(LUMVIK_SANITIZE_ADDRESS) || defined(LUMVIK_SANITIZE_THREAD)
  GTEST_SKIP() << "the sanitizer itself needs more memory than the limit leaves";
#endif
  WriteFile(Path("huge.png"), EmptyPng(32000, 32000));
  const std::vector<std::string> with_little_memory = {"sh", "-c", "ulimit -v 2000000; exec \"$0\" \"$@\"",
                                                       LUMVIK_COMMAND};
  const ProcessResult result =
      Develop(Path("huge.png"), Path("out.jpg"), {"--accept-damaged"}, with_little_memory);
  EXPECT_EQ(result.status, kFailure);
  EXPECT_NE(result.err.find("cannot open '" + Path("huge.png") + "': not enough memory"), std::string::npos)
      << result.err;
}

TEST_F(InputFailureTest, AnExistingOutputIsKept) {
  WriteFile(Path("text.jpg"), "not a photograph at all\n");
  WriteFile(Path("good.jpg"), "last year's work");
  ExpectRefusal(Develop(Path("text.jpg"), Path("good.jpg"), {"--overwrite"}), kFailure, "is neither");
  EXPECT_EQ(ReadFile(Path("good.jpg")), "last year's work");
}

}  // namespace
}  // namespace lumvik::test
