#include "support/raw_previews.h"

#include <libraw/libraw.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <opencv2/imgcodecs.hpp>
#include <stdexcept>

#include "support/raw_writer.h"
#include "support/tiff_tags.h"

namespace lumvik::test {
namespace {

using Bytes = std::vector<uint8_t>;

constexpr uint8_t kMarker = 0xFF;  // starts a segment of a JPEG file
constexpr uint8_t kFrame = 0xC0;   // size and components
constexpr uint8_t kQuantization = 0xDB;

const cv::Mat kPicture(32, 48, CV_8UC3, cv::Scalar(90, 150, 210));

Bytes::iterator Find(Bytes& bytes, const Bytes& part) {
  const auto found = std::search(bytes.begin(), bytes.end(), part.begin(), part.end());
  if (found == bytes.end()) throw std::logic_error("not in the file");
  return found;
}

Bytes Jpeg() {
  Bytes jpeg;
  cv::imencode(".jpg", kPicture, jpeg);
  return jpeg;
}

Bytes WithPreview(Bytes jpeg) {
  RawOptions options;
  options.format = RawFormat::kDng;
  options.preview_jpeg = std::move(jpeg);
  return MakeRawFile(kPicture, options);
}

}  // namespace

Bytes MakeBitmapPreviewRaw(const cv::Mat& bitmap) {
  RawOptions options;
  options.format = RawFormat::kDng;
  options.preview = RawPreview::kBitmap;
  options.preview_picture = bitmap;
  return MakeRawFile(kPicture, options);
}

Bytes MakeShortBitmapPreviewRaw(const cv::Mat& bitmap) {
  Bytes file = MakeBitmapPreviewRaw(bitmap);
  // The entry StripByteCounts: tag, type LONG, one value, which is the size of the bitmap.
  const auto entry = Find(file, {0x17, 0x01, 4, 0, 1, 0, 0, 0});
  const size_t size = bitmap.total();
  for (int byte = 0; byte < 4; ++byte) entry[8 + byte] = static_cast<uint8_t>(size >> (8 * byte));
  return file;
}

Bytes WithTwoValues(Bytes file, uint16_t tag, const std::array<uint32_t, 2>& values) {
  constexpr uint8_t kLong = 4;
  constexpr size_t kCount = 4;  // positions in an entry
  constexpr size_t kValue = 8;
  const auto entry =
      Find(file, {static_cast<uint8_t>(tag & 0xFF), static_cast<uint8_t>(tag >> 8), kLong, 0, 1, 0, 0, 0});
  const uint32_t count = 2;
  const auto position = static_cast<uint32_t>(file.size());
  std::memcpy(&*entry + kCount, &count, sizeof(count));
  std::memcpy(&*entry + kValue, &position, sizeof(position));
  const auto* bytes = reinterpret_cast<const uint8_t*>(values.data());
  file.insert(file.end(), bytes, bytes + sizeof(values));
  return file;
}

Bytes MakeMissingStripRaw(const cv::Mat& bitmap) {
  const Bytes file = MakeBitmapPreviewRaw(bitmap);
  const auto end = static_cast<uint32_t>(file.size());
  const auto half = static_cast<uint32_t>(bitmap.total() * bitmap.elemSize() / 2);
  return WithTwoValues(WithTwoValues(file, tag::kStripByteCounts, {half, half}), tag::kStripOffsets,
                       {end - half, 2 * end});
}

Bytes MakeUndecodablePreviewRaw() {
  Bytes jpeg = Jpeg();
  for (int table = 0; table < 2; ++table) {
    const auto segment = Find(jpeg, {kMarker, kQuantization});
    jpeg.erase(segment, segment + 2 + (segment[2] << 8 | segment[3]));
  }
  return WithPreview(std::move(jpeg));
}

Bytes MakeOversizedPreviewRaw(uint16_t side) {
  Bytes file = WithPreview(Jpeg());
  const auto high = static_cast<uint8_t>(side >> 8);
  const auto low = static_cast<uint8_t>(side & 0xFF);
  // Behind the marker: two bytes of length, one of depth, then height and width.
  const uint8_t size[] = {high, low, high, low};
  std::copy(std::begin(size), std::end(size), Find(file, {kMarker, kFrame, 0, 17, 8}) + 5);
  return file;
}

Bytes DeliveredPreview(const Bytes& raw_file) {
  const auto raw = std::make_unique<LibRaw>();
  // LibRaw does not write to what it reads from.
  if (raw->open_buffer(const_cast<uint8_t*>(raw_file.data()), raw_file.size()) != LIBRAW_SUCCESS) return {};
  if (raw->unpack_thumb() != LIBRAW_SUCCESS) return {};
  libraw_processed_image_t* image = raw->dcraw_make_mem_thumb();
  if (image == nullptr) return {};
  Bytes bytes(image->data, image->data + image->data_size);
  LibRaw::dcraw_clear_mem(image);
  return bytes;
}

bool SameDelivery(Bytes a, Bytes b) {
  constexpr size_t kUnset = 376;     // where the count of a position's latitude reference stands
  constexpr size_t kUnsetBytes = 8;  // the count and the value
  for (Bytes* bytes : {&a, &b}) {
    if (bytes->size() >= kUnset + kUnsetBytes) std::fill_n(bytes->begin() + kUnset, kUnsetBytes, uint8_t{0});
  }
  return a == b;
}

}  // namespace lumvik::test
