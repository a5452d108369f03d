#include "image/guarded_libraw.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "image/raw_file.h"

namespace lumvik {
namespace {

// LibRaw 0.21 has these faults no more.
constexpr bool kIsOldLibRaw = LIBRAW_COMPILE_CHECK_VERSION_NOTLESS(0, 21) == 0;

// Called ahead of each tag. Of a colour filter pattern of 36 entries LibRaw 0.20 reads on without end, past
// all its memory, unless a tag before it said that it repeats over 6 x 6 pixels. LibRaw catches what is
// thrown here and gives up the file.
void RefuseEndlessPattern(void* libraw, int tag, int /*type*/, int count, unsigned /*order*/,
                          void* /*stream*/, INT64 /*base*/) {
  constexpr int kTagMask = 0xFFFF;  // the bits above tell of the directory
  constexpr int kCfaPattern = 0x828E;
  constexpr int kKodakCfaPattern = 0xFD09;
  constexpr int kEntries = 36;
  constexpr unsigned kSixBySix = 9;
  if (count != kEntries) return;
  const int name = tag & kTagMask;
  const bool known = static_cast<LibRaw*>(libraw)->imgdata.idata.filters == kSixBySix;
  if (name == kKodakCfaPattern || (name == kCfaPattern && !known))
    throw LibRaw_exceptions{LIBRAW_EXCEPTION_IO_CORRUPT};
}

}  // namespace

GuardedLibRaw::GuardedLibRaw() {
  // Its default handler reports damaged data on the host's standard error.
  set_dataerror_handler(nullptr, nullptr);
  if (kIsOldLibRaw) set_exifparser_handler(RefuseEndlessPattern, static_cast<LibRaw*>(this));
}

int GuardedLibRaw::OpenFile(const std::string& path) {
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
