#include "files/jpeg_size.h"

#include <csetjmp>
#include <cstdio>
// libjpeg's header needs <cstdio> first.
#include <jpeglib.h>

namespace lumvik::host {
namespace {

// The decoder's errors jump back, since an exception must not pass through C.
struct HeaderErrors {
  jpeg_error_mgr manager;
  std::jmp_buf back;
};

void JumpBack(j_common_ptr decoder) {
  std::longjmp(reinterpret_cast<HeaderErrors*>(decoder->err)->back, 1);
}

// Without objects that a jump would leave alive.
bool ReadHeader(const std::uint8_t* data, std::size_t size, jpeg_decompress_struct& decoder) {
  HeaderErrors errors{};
  decoder.err = jpeg_std_error(&errors.manager);
  errors.manager.error_exit = JumpBack;
  errors.manager.output_message = [](j_common_ptr) {};
  if (setjmp(errors.back) != 0) return false;
  jpeg_create_decompress(&decoder);
  jpeg_mem_src(&decoder, data, static_cast<unsigned long>(size));
  return jpeg_read_header(&decoder, TRUE) == JPEG_HEADER_OK;
}

}  // namespace

std::optional<JpegSize> JpegSizeOf(const std::uint8_t* data, std::size_t size) {
  jpeg_decompress_struct decoder{};
  const bool read = ReadHeader(data, size, decoder);
  const JpegSize found = {static_cast<std::int32_t>(decoder.image_width),
                          static_cast<std::int32_t>(decoder.image_height)};
  jpeg_destroy_decompress(&decoder);
  if (!read) return std::nullopt;
  return found;
}

}  // namespace lumvik::host
