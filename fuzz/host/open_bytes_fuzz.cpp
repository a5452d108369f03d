// Any bytes are opened as a photograph or refused with a status and a one-line text. What was opened can be
// checked, examined and rendered.
#include <cstring>

#include "fuzz_input.h"
#include "large_raw.h"
#include "lumvik_host.h"

namespace lumvik::fuzz {
namespace {

constexpr int32_t kMaxSide = 64;

// The failures that the content of a file may give.
void RequireFailureOfContent(lumvik_host_status status) {
  Require(status == LUMVIK_HOST_NOT_A_PHOTOGRAPH || status == LUMVIK_HOST_DAMAGED ||
          status == LUMVIK_HOST_UNSUPPORTED || status == LUMVIK_HOST_OUT_OF_MEMORY);
  const char* const text = lumvik_host_last_error();
  Require(*text != '\0' && std::strchr(text, '\n') == nullptr);
}

void Use(lumvik_host_photo* photo) {
  lumvik_host_integrity integrity{};
  integrity.struct_size = sizeof(integrity);
  const lumvik_host_status checked = lumvik_host_check(photo, &integrity);
  Require(checked == LUMVIK_HOST_OK || checked == LUMVIK_HOST_DAMAGED || checked == LUMVIK_HOST_UNSUPPORTED ||
          checked == LUMVIK_HOST_OUT_OF_MEMORY);
  Require(checked != LUMVIK_HOST_DAMAGED || (integrity.is_whole == 0 && integrity.reason[0] != '\0'));

  lumvik_host_exif exif{};
  exif.struct_size = sizeof(exif);
  const lumvik_host_status read = lumvik_host_get_exif(photo, &exif);
  Require(read == LUMVIK_HOST_OK || read == LUMVIK_HOST_OUT_OF_MEMORY);

  lumvik_host_preview_options options{};
  options.struct_size = sizeof(options);
  options.max_width = kMaxSide;
  options.max_height = kMaxSide;
  uint8_t pixels[4 * kMaxSide * kMaxSide];
  int32_t width = 0;
  int32_t height = 0;
  const lumvik_host_status rendered =
      lumvik_host_get_preview(photo, &options, pixels, sizeof(pixels), &width, &height);
  Require(rendered == LUMVIK_HOST_OK || rendered == LUMVIK_HOST_OUT_OF_MEMORY);
  Require(rendered != LUMVIK_HOST_OK || (width > 0 && width <= kMaxSide && height > 0 && height <= kMaxSide));
}

}  // namespace
}  // namespace lumvik::fuzz

// Exiv2 keeps the namespaces of a file registered, and leaks the earlier one of a name.
extern "C" const char* __lsan_default_suppressions() {
  return "leak:Exiv2::XmpProperties::registerNs\n";
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (lumvik::fuzz::IsLargeRaw(lumvik::fuzz::WriteFile("input.arw", lumvik::fuzz::ToBytes(data, size))))
    return 0;
  lumvik_host_photo* photo = nullptr;
  const lumvik_host_status status = lumvik_host_open_bytes(data, size, nullptr, &photo);
  if (status != LUMVIK_HOST_OK) {
    lumvik::fuzz::RequireFailureOfContent(status);
    return 0;
  }
  lumvik::fuzz::Use(photo);
  lumvik::fuzz::Require(lumvik_host_close(photo) == LUMVIK_HOST_OK);
  return 0;
}
