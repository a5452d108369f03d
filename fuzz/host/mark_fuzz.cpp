// The mark of any file is read or reported missing. No change of a marked image leaves its mark intact. Any
// bytes that are taken for an image, and images with any XMP packet, are given a mark and a profile, or
// refused with a failure.
#include <fuzzer/FuzzedDataProvider.h>

#include "base/failure.h"
#include "color/profile_attachment.h"
#include "files/format.h"
#include "files/intact_mark.h"
#include "files/jpeg_metadata.h"
#include "files/xmp_part.h"
#include "fuzz_input.h"
#include "host/marked_images.h"
#include "save/mark.h"

namespace lumvik::fuzz {
namespace {

constexpr int kMaxEdits = 8;
constexpr std::size_t kMaxEditBytes = 64;

const std::vector<MarkedImage>& MarkedImages() {
  static const std::vector<MarkedImage> kImages = MakeMarkedImages();
  return kImages;
}

void ReadMarkOf(const uint8_t* data, size_t size) {
  const std::string path = WriteFile("input.jpg", ToBytes(data, size));
  char* mark = nullptr;
  const lumvik_host_status status = lumvik_host_read_mark(path.c_str(), &mark);
  Require(status == LUMVIK_HOST_OK || status == LUMVIK_HOST_NOT_FOUND);
  Require((status == LUMVIK_HOST_OK) == (mark != nullptr));
  lumvik_host_free(mark);
}

// Replaces parts with bytes of the input or with other parts of the image.
std::string Edited(std::string image, FuzzedDataProvider& input) {
  for (int i = 0; i < kMaxEdits && input.remaining_bytes() > 0; ++i) {
    const auto position = input.ConsumeIntegralInRange<std::size_t>(0, image.size());
    const auto removed = input.ConsumeIntegralInRange<std::size_t>(0, kMaxEditBytes);
    const auto other = input.ConsumeIntegralInRange<std::size_t>(0, image.size());
    const auto copied = input.ConsumeIntegralInRange<std::size_t>(0, image.size());
    image.replace(
        position, removed,
        input.ConsumeBool() ? image.substr(other, copied) : input.ConsumeRandomLengthString(kMaxEditBytes));
  }
  return image;
}

void EditMarkedImages(const uint8_t* data, size_t size) {
  for (const MarkedImage& image : MarkedImages()) {
    FuzzedDataProvider input(data, size);
    const std::string edited = Edited(image.bytes, input);
    Require(host::IntactMarkIn(edited).has_value() == (edited == image.bytes));
  }
}

void Mark(const std::string& image, lumvik_host_format format) {
  constexpr char kMark[] = "<another> & mark";
  try {
    Require(host::IntactMarkIn(host::WithMark(image, format, kMark)) == kMark);
  } catch (const host::Failure&) {  // an image that cannot be marked
  }
}

void MarkAnything(const std::string& bytes) {
  for (const MarkedImage& image : MarkedImages()) {
    Mark(bytes, image.format);
    try {
      Mark(host::AttachProfile(bytes, image.format, "a profile"), image.format);
    } catch (const host::Failure&) {  // an image that cannot be extended
    }
    try {
      Mark(host::ReplaceXmp(image.bytes, image.format, bytes), image.format);
    } catch (const host::Failure&) {  // a packet that is too long
    }
  }
}

void TurnJpeg(const std::string& bytes) {
  constexpr std::int32_t kTurned = 6;
  if (host::FormatOfBeginning(bytes) != LUMVIK_HOST_FORMAT_JPEG) return;
  const std::string turned = host::WithOrientation(host::WithoutMetadata(bytes), kTurned);
  Require(host::OrientationOfJpeg(turned) == kTurned);
  Mark(turned, LUMVIK_HOST_FORMAT_JPEG);
}

}  // namespace
}  // namespace lumvik::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  lumvik::fuzz::ReadMarkOf(data, size);
  lumvik::fuzz::EditMarkedImages(data, size);
  lumvik::fuzz::MarkAnything({data, data + size});
  lumvik::fuzz::TurnJpeg({data, data + size});
  return 0;
}
