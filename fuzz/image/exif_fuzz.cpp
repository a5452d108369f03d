// A file's EXIF block: read into the host's record, copied into a JPEG file, and replaced by another file's
// block.
#include <algorithm>
#include <cstring>
#include <iterator>

#include "fuzz_input.h"
#include "image/exif_info.h"
#include "image/exif_splice.h"
#include "support/exif_jpeg.h"

namespace {

using lumvik::fuzz::Require;

template <size_t kSize>
bool IsTerminated(const char (&text)[kSize]) {
  return std::find(std::begin(text), std::end(text), '\0') != std::end(text);
}

void Read(const std::string& path) {
  ExifInfo info;
  std::memset(&info, 0x5A, sizeof(info));
  lumvik::ReadExifFile(path, info);
  Require(IsTerminated(info.make) && IsTerminated(info.model) && IsTerminated(info.lens) &&
          IsTerminated(info.datetime) && info.reserved == 0);
}

void Copy(const std::string& source, const std::string& jpeg) {
  const std::vector<uint8_t> before = lumvik::test::ReadBytes(jpeg);
  const bool copied = lumvik::CopyExifToJpeg(source, jpeg);
  const std::vector<uint8_t> after = lumvik::test::ReadBytes(jpeg);
  if (!copied) return Require(after == before);
  const uint8_t header[] = {0xFF, 0xD8, 0xFF, 0xE1};
  Require(after.size() > sizeof(header) && std::equal(std::begin(header), std::end(header), after.begin()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const std::vector<uint8_t> plain = lumvik::test::PlainJpeg();
  static const std::string source = lumvik::fuzz::WriteFile(
      "source.jpg", lumvik::test::JpegWithExif(
                        lumvik::test::ExifBlock().Shorts(lumvik::test::Ifd::kZero, 0x0112, {6}).Serialize()));
  const std::string input = lumvik::fuzz::WriteFile("input.jpg", lumvik::fuzz::ToBytes(data, size));
  Read(input);
  Copy(input, lumvik::fuzz::WriteFile("plain.jpg", plain));
  Copy(source, input);
  return 0;
}
