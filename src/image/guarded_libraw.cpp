#include "image/guarded_libraw.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>

#include "image/raw_file.h"

namespace lumvik {
namespace {

// LibRaw 0.21 has these faults no more.
constexpr bool kIsOldLibRaw = LIBRAW_COMPILE_CHECK_VERSION_NOTLESS(0, 21) == 0;

constexpr int kTagMask = 0xFFFF;  // the bits above tell of the directory
constexpr int kNameLength = 63;   // what LibRaw keeps of a name

// Of a color filter pattern of 36 entries LibRaw 0.20 reads on without end, past all its memory, unless a
// tag before it said that it repeats over 6 x 6 pixels.
bool IsEndlessPattern(const libraw_iparams_t& camera, int name, int count) {
  constexpr int kCfaPattern = 0x828E;
  constexpr int kKodakCfaPattern = 0xFD09;
  constexpr int kEntries = 36;
  constexpr unsigned kSixBySix = 9;
  if (!kIsOldLibRaw || count != kEntries) return false;
  return name == kKodakCfaPattern || (name == kCfaPattern && camera.filters != kSixBySix);
}

// Whether the tag is one of a TIFF directory, not of EXIF or of a maker's notes.
bool IsOfDirectory(int tag) {
  constexpr int kPanasonic = 0x30000;
  constexpr int kFirstDirectory = 1 << 20;
  return (tag & ~kTagMask) == kPanasonic || tag >= kFirstDirectory;
}

// The text that begins at the stream's position, of at most so many bytes and as far as LibRaw keeps it.
std::string Text(LibRaw_abstract_datastream& stream, int most) {
  std::array<char, kNameLength + 1> text{};
  stream.read(text.data(), 1, static_cast<size_t>(std::clamp(most, 0, kNameLength)));
  return text.data();
}

}  // namespace

// Called ahead of each tag. LibRaw catches what is thrown here and gives up the file.
void GuardedLibRaw::InspectTag(void* guarded, int tag, int /*type*/, int count, unsigned /*order*/,
                               void* stream, INT64 /*base*/) {
  auto& raw = *static_cast<GuardedLibRaw*>(guarded);
  if (IsOfDirectory(tag))
    raw.NoteName(tag & kTagMask, count, *static_cast<LibRaw_abstract_datastream*>(stream));
  if (IsEndlessPattern(raw.imgdata.idata, tag & kTagMask, count) ||
      (raw.is_hasselblad_ && raw.has_long_name_))
    throw LibRaw_exceptions{LIBRAW_EXCEPTION_IO_CORRUPT};
}

// LibRaw puts a Hasselblad's names together in 64 bytes, whatever their length: it adds at most "-II-FFF".
void GuardedLibRaw::NoteName(int name, int count, LibRaw_abstract_datastream& stream) {
  constexpr int kMake = 0x010F;
  constexpr int kModel = 0x0110;
  constexpr int kUniqueCameraModel = 0xC614;
  constexpr int kLocalizedCameraModel = 0xC615;
  constexpr int kHasselbladOnly = 0xC51A;
  constexpr size_t kLongest = 56;
  if (name == kHasselbladOnly) is_hasselblad_ = true;
  if (name != kMake && name != kModel && name != kUniqueCameraModel && name != kLocalizedCameraModel) return;
  // LibRaw reads make and model up to where their text ends, beyond their stated length too.
  std::string text = Text(stream, name == kMake || name == kModel ? kNameLength : count);
  if (name != kMake && text.size() > kLongest) has_long_name_ = true;
  if (strcasestr(text.data(), "Hasselblad") != nullptr) is_hasselblad_ = true;
}

GuardedLibRaw::GuardedLibRaw() {
  // Its default handler reports damaged data on the host's standard error.
  set_dataerror_handler(nullptr, nullptr);
  set_exifparser_handler(InspectTag, this);
}

int GuardedLibRaw::OpenFile(const std::string& path) {
  recycle();  // LibRaw's open_file forgets a file that is still open
  is_hasselblad_ = false;
  has_long_name_ = false;
  return OpenRawFile(*this, path);
}

int GuardedLibRaw::UnpackPreview() {
  if (!MakePreviewFit()) return LIBRAW_UNSUPPORTED_THUMBNAIL;
  const libraw_thumbnail_t& preview = imgdata.thumbnail;
  const unsigned stated = preview.tlength;
  const int status = unpack_thumb();
  if (status != LIBRAW_SUCCESS || !IsTakenAsStored() || preview.tlength != stated) return status;
  // LibRaw reads up to the end of the file and takes the rest as it finds the memory.
  const auto& internal = libraw_internal_data.internal_data;
  const auto present = static_cast<int64_t>(internal.input->size()) - static_cast<int64_t>(internal.toffset);
  const auto missing = static_cast<int64_t>(stated) - present;
  if (present >= 0 && missing > 0) std::fill_n(preview.thumb + present, missing, '\0');
  return status;
}

// Whether the preview in memory is a piece of the file.
bool GuardedLibRaw::IsTakenAsStored() const {
#if !LIBRAW_COMPILE_CHECK_VERSION_NOTLESS(0, 21)
  if (write_thumb == &GuardedLibRaw::ppm_thumb) return true;
#endif
  return imgdata.thumbnail.tformat == LIBRAW_THUMBNAIL_JPEG;
}

// Whether LibRaw reads no more of the preview than it has room for.
bool GuardedLibRaw::MakePreviewFit() {
#if !LIBRAW_COMPILE_CHECK_VERSION_NOTLESS(0, 21)
  libraw_thumbnail_t& preview = imgdata.thumbnail;
  if (write_thumb == &GuardedLibRaw::layer_thumb) {
    // Room for the picture's size, but as many bytes read as the file says.
    preview.tlength = std::min(preview.tlength, unsigned{preview.twidth} * preview.theight);
  }
  if (write_thumb == &GuardedLibRaw::ppm_thumb) {
    // Room for the sum of the strips, which may overflow.
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
