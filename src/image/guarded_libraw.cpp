#include "image/guarded_libraw.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <string_view>

#include "base/pages.h"
#include "image/raw/arw2_rows.h"
#include "image/raw/known_libraw.h"
#include "image/raw/own_thread.h"
#include "image/raw_file.h"

namespace lumvik {
namespace {

// LibRaw 0.21 fixed these faults.
constexpr bool kIsOldLibRaw = LIBRAW_COMPILE_CHECK_VERSION_NOTLESS(0, 21) == 0;

constexpr int kTagMask = 0xFFFF;  // the higher bits identify the directory
constexpr int kNameLength = 63;   // LibRaw truncates names to this

// LibRaw 0.20 reads a color filter pattern of 36 entries endlessly, past all its memory, unless an earlier
// tag declared a 6 x 6 pattern.
bool IsEndlessPattern(const libraw_iparams_t& camera, int name, int count) {
  constexpr int kCfaPattern = 0x828E;
  constexpr int kKodakCfaPattern = 0xFD09;
  constexpr int kEntries = 36;
  constexpr unsigned kSixBySix = 9;
  if (!kIsOldLibRaw || count != kEntries) return false;
  return name == kKodakCfaPattern || (name == kCfaPattern && camera.filters != kSixBySix);
}

// Whether the tag belongs to a TIFF directory rather than to EXIF or the maker notes.
bool IsOfDirectory(int tag) {
  constexpr int kPanasonic = 0x30000;
  constexpr int kFirstDirectory = 1 << 20;
  return (tag & ~kTagMask) == kPanasonic || tag >= kFirstDirectory;
}

bool IsArw2(const libraw_decoder_info_t& decoder) {
  return decoder.decoder_name != nullptr && decoder.decoder_name == std::string_view("sony_arw2_load_raw()");
}

// The text at the stream's position, at most `limit` bytes and truncated as LibRaw truncates names.
std::string ReadText(LibRaw_abstract_datastream& stream, int limit) {
  std::array<char, kNameLength + 1> text{};
  stream.read(text.data(), 1, static_cast<size_t>(std::clamp(limit, 0, kNameLength)));
  return text.data();
}

}  // namespace

// Called before each tag. LibRaw catches what is thrown here and rejects the file.
void GuardedLibRaw::InspectTag(void* guarded, int tag, int /*type*/, int count, unsigned /*order*/,
                               void* stream, INT64 /*base*/) {
  auto& raw = *static_cast<GuardedLibRaw*>(guarded);
  if (IsOfDirectory(tag))
    raw.NoteName(tag & kTagMask, count, *static_cast<LibRaw_abstract_datastream*>(stream));
  if (IsEndlessPattern(raw.imgdata.idata, tag & kTagMask, count) ||
      (raw.is_hasselblad_ && raw.has_long_name_))
    throw LibRaw_exceptions{LIBRAW_EXCEPTION_IO_CORRUPT};
}

// LibRaw joins a Hasselblad's names in a buffer of 64 bytes, whatever their length, and appends at most
// "-II-FFF".
void GuardedLibRaw::NoteName(int name, int count, LibRaw_abstract_datastream& stream) {
  constexpr int kMake = 0x010F;
  constexpr int kModel = 0x0110;
  constexpr int kUniqueCameraModel = 0xC614;
  constexpr int kLocalizedCameraModel = 0xC615;
  constexpr int kHasselbladOnly = 0xC51A;
  constexpr size_t kMaxLength = 56;
  if (name == kHasselbladOnly) is_hasselblad_ = true;
  if (name != kMake && name != kModel && name != kUniqueCameraModel && name != kLocalizedCameraModel) return;
  // LibRaw reads make and model up to their NUL, even beyond their stated length.
  std::string text = ReadText(stream, name == kMake || name == kModel ? kNameLength : count);
  if (name != kMake && text.size() > kMaxLength) has_long_name_ = true;
  if (strcasestr(text.data(), "Hasselblad") != nullptr) is_hasselblad_ = true;
}

GuardedLibRaw::GuardedLibRaw() {
  // The default handler writes to the host's standard error.
  set_dataerror_handler(nullptr, nullptr);
  set_exifparser_handler(InspectTag, this);
}

int GuardedLibRaw::OpenFile(const std::string& path) {
  recycle();
  is_hasselblad_ = false;
  has_long_name_ = false;
  auto file = OpenRawFile(
      path, {[this] { BeforeSeek(); }, [this](uint8_t* bytes, size_t wanted) { AfterRead(bytes, wanted); }});
  if (!file) return LIBRAW_IO_ERROR;
  const int status = open_datastream(file.get());
  if (status != LIBRAW_SUCCESS) return status;
  libraw_internal_data.internal_data.input = file.release();
  libraw_internal_data.internal_data.input_internal = 1;  // recycle() closes it
  return status;
}

int GuardedLibRaw::UnpackSensor() {
  libraw_decoder_info_t decoder{};
  get_decoder_info(&decoder);
  awaits_sensor_buffer_ = (decoder.decoder_flags & LIBRAW_DECODER_OWNALLOC) == 0;
  // A group of samples whose extremes share a place has a delta too many: LibRaw reads it from beyond the
  // row.
  clears_byte_after_row_ = kIsOldLibRaw && IsArw2(decoder);
  is_unpacking_sensor_ = true;
  const int status = unpack();
  is_unpacking_sensor_ = false;
  awaits_sensor_buffer_ = false;
  clears_byte_after_row_ = false;
  RestoreDecoder();
  return status;
}

// LibRaw asks this of itself right before it calls the decoder.
int GuardedLibRaw::get_decoder_info(libraw_decoder_info_t* decoder) {
  const int status = LibRaw::get_decoder_info(decoder);
  if (is_unpacking_sensor_ && status == LIBRAW_SUCCESS && IsArw2(*decoder) && IsKnownLibRaw()) {
    libraw_decoder_ = load_raw;
    load_raw = static_cast<Decoder>(&GuardedLibRaw::LoadArw2);
    awaits_sensor_buffer_ = false;  // which touches all its memory
  }
  return status;
}

// LibRaw compares its decoder with others later on.
void GuardedLibRaw::RestoreDecoder() {
  if (libraw_decoder_ != nullptr && load_raw == static_cast<Decoder>(&GuardedLibRaw::LoadArw2))
    load_raw = libraw_decoder_;
  libraw_decoder_ = nullptr;
}

int GuardedLibRaw::UnpackPreview() {
  if (!MakePreviewFit()) return LIBRAW_UNSUPPORTED_THUMBNAIL;
#if !LIBRAW_COMPILE_CHECK_VERSION_NOTLESS(0, 21)
  awaits_preview_buffer_ = write_thumb == &GuardedLibRaw::ppm_thumb;
#endif
  const int status = unpack_thumb();
  awaits_preview_buffer_ = false;
  return status;
}

// LibRaw seeks the samples after allocating the sensor's buffer, and a preview's strips after allocating the
// preview's. A decoder that gives up without an error, or a missing strip, leaves part of the buffer unset.
void GuardedLibRaw::BeforeSeek() {
  if (awaits_sensor_buffer_ && imgdata.rawdata.raw_alloc != nullptr) {
    ClearSensorBuffer();
    awaits_sensor_buffer_ = false;
  }
  if (awaits_preview_buffer_ && imgdata.thumbnail.thumb != nullptr) {
    std::memset(imgdata.thumbnail.thumb, 0, imgdata.thumbnail.tlength);
    awaits_preview_buffer_ = false;
  }
}

void GuardedLibRaw::ClearSensorBuffer() {
  PreferHugePages(imgdata.rawdata.raw_alloc, SensorBufferSize());
  std::memset(imgdata.rawdata.raw_alloc, 0, SensorBufferSize());
}

// Only a row's buffer is known to have a byte more than was read.
void GuardedLibRaw::AfterRead(uint8_t* bytes, size_t wanted) const {
  if (clears_byte_after_row_ && wanted == imgdata.sizes.raw_width) bytes[wanted] = 0;
}

// As LibRaw computes it, without the rows it adds for safety.
size_t GuardedLibRaw::SensorBufferSize() const {
  const libraw_image_sizes_t& sizes = imgdata.sizes;
  size_t columns = sizes.raw_width;
  size_t rows = sizes.raw_height;
  if (libraw_internal_data.internal_output_params.fuji_width == 0) {
    columns = std::max(columns, size_t{sizes.width} + sizes.left_margin);
    rows = std::max(rows, size_t{sizes.height} + sizes.top_margin);
  }
  const size_t samples = imgdata.rawdata.color3_image != nullptr ? 3 : 1;
  return columns * rows * samples * sizeof(uint16_t);
}

// Called as LibRaw's decoder, with the stream at the first row.
void GuardedLibRaw::LoadArw2() {
  RestoreDecoder();
  if (!HasWholeArw2Rows()) {
    if (imgdata.rawdata.raw_alloc != nullptr) ClearSensorBuffer();
    return (this->*load_raw)();
  }
  try {
    DecodeArw2();
  } catch (const std::bad_alloc&) {
    throw LibRaw_exceptions{LIBRAW_EXCEPTION_ALLOC};
  }
}

// Whether all that LibRaw's decoder would read is in the file, and is what our decoder expects.
bool GuardedLibRaw::HasWholeArw2Rows() const {
  constexpr short kLittleEndian = 0x4949;
#if !LIBRAW_COMPILE_CHECK_VERSION_NOTLESS(0, 21)
  if ((imgdata.params.raw_processing_options & LIBRAW_PROCESSING_SONYARW2_ALLFLAGS) != 0) return false;
#endif
  LibRaw_abstract_datastream& file = *libraw_internal_data.internal_data.input;
  const INT64 begin = file.tell();
  const INT64 bytes = INT64{imgdata.sizes.raw_width} * imgdata.sizes.height;
  return imgdata.rawdata.raw_image != nullptr && imgdata.rawdata.raw_image == imgdata.rawdata.raw_alloc &&
         libraw_internal_data.internal_output_params.fuji_width == 0 &&
         libraw_internal_data.unpacker_data.order == kLittleEndian && begin >= 0 &&
         bytes <= file.size() - begin;
}

void GuardedLibRaw::DecodeArw2() {
  clears_byte_after_row_ = false;
  Arw2Curve curve;
  for (size_t code = 0; code < curve.size(); ++code) curve[code] = imgdata.color.curve[2 * code];
  const libraw_image_sizes_t& sizes = imgdata.sizes;
  const auto read = [this](uint8_t* bytes, size_t count) {
    checkCancel();
    libraw_internal_data.internal_data.input->read(bytes, 1, count);
  };
  uint16_t* const samples = imgdata.rawdata.raw_image;
  PreferHugePages(samples, SensorBufferSize());
  DecodeArw2Rows(read, {sizes.raw_width, sizes.height}, curve, samples);
  const size_t decoded = size_t{sizes.raw_width} * sizes.height;
  std::memset(samples + decoded, 0, SensorBufferSize() - decoded * sizeof(uint16_t));
}

void GuardedLibRaw::fuji_decode_loop(const fuji_compressed_params* common, int count, INT64* offsets,
                                     unsigned* sizes) {
  InOwnThread([=] { LibRaw::fuji_decode_loop(common, count, offsets, sizes); });
}

void GuardedLibRaw::crxLoadDecodeLoop(void* image, int planes) {
  InOwnThread([=] { LibRaw::crxLoadDecodeLoop(image, planes); });
}

void GuardedLibRaw::crxLoadFinalizeLoopE3(void* image, int rows) {
  InOwnThread([=] { LibRaw::crxLoadFinalizeLoopE3(image, rows); });
}

// Keeps LibRaw from reading more of the preview than it allocates. False when that is not possible.
bool GuardedLibRaw::MakePreviewFit() {
#if !LIBRAW_COMPILE_CHECK_VERSION_NOTLESS(0, 21)
  libraw_thumbnail_t& preview = imgdata.thumbnail;
  if (write_thumb == &GuardedLibRaw::layer_thumb) {
    // LibRaw allocates by the preview's dimensions but reads as many bytes as the file states.
    preview.tlength = std::min(preview.tlength, unsigned{preview.twidth} * preview.theight);
  }
  if (write_thumb == &GuardedLibRaw::ppm_thumb) {
    // LibRaw allocates the sum of the strip sizes, which may overflow.
    for (const tiff_ifd_t& directory : tiff_ifd) {
      int64_t total = 0;
      for (int i = 0; i < directory.strip_byte_counts_count; ++i) {
        const int count = directory.strip_byte_counts[i];
        total += count;
        if (count < 0 || total > std::numeric_limits<int>::max()) return false;
      }
    }
  }
#endif
  return true;
}

}  // namespace lumvik
