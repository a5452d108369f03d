#include "integrity/jpeg_check.h"

#include <cstddef>
#include <cstdio>
// Needs the two above.
#include <jpeglib.h>

#include <array>
#include <csetjmp>
#include <string>
#include <vector>

#include "base/failure.h"

namespace lumvik::host {
namespace {

constexpr long kMaxJpegMemory = 1L << 30;  // bytes, of libjpeg
// A progressive file of a few kilobytes can contain enough scans to keep a decoder busy for minutes.
constexpr int kMaxJpegScans = 500;

// libjpeg's error manager, and what it reported. libjpeg passes the address of its first member.
struct JpegErrors {
  jpeg_error_mgr manager{};
  std::jmp_buf failed{};
  bool is_decoding = false;
  std::array<char, JMSG_LENGTH_MAX> text{};  // of the first warning, or of the failure
};

JpegErrors& ErrorsOf(j_common_ptr jpeg) {
  return *reinterpret_cast<JpegErrors*>(jpeg->err);
}

[[noreturn]] void FailJpeg(j_common_ptr jpeg) {
  JpegErrors& errors = ErrorsOf(jpeg);
  if (errors.text[0] == '\0') jpeg->err->format_message(jpeg, errors.text.data());
  std::longjmp(errors.failed, 1);
}

void NoteJpegWarning(j_common_ptr jpeg, int level) {
  JpegErrors& errors = ErrorsOf(jpeg);
  // Headers with stray bytes, which some cameras write, do no harm.
  if (level >= 0 || !errors.is_decoding || errors.text[0] != '\0') return;
  jpeg->err->format_message(jpeg, errors.text.data());
}

void LimitJpegScans(j_common_ptr jpeg) {
  if (reinterpret_cast<j_decompress_ptr>(jpeg)->input_scan_number <= kMaxJpegScans) return;
  std::snprintf(ErrorsOf(jpeg).text.data(), JMSG_LENGTH_MAX, "it has more than %d scans", kMaxJpegScans);
  FailJpeg(jpeg);
}

void DecodeJpeg(std::string_view bytes, jpeg_decompress_struct& jpeg, JpegErrors& errors) {
  jpeg_mem_src(&jpeg, reinterpret_cast<const unsigned char*>(bytes.data()),
               static_cast<unsigned long>(bytes.size()));
  jpeg_read_header(&jpeg, TRUE);
  errors.is_decoding = true;
  jpeg.scale_num = 1;  // an eighth of the size: every bit is read, but little is computed
  jpeg.scale_denom = 8;
  jpeg.out_color_space = jpeg.jpeg_color_space;
  jpeg.dct_method = JDCT_IFAST;
  jpeg.do_fancy_upsampling = FALSE;
  jpeg_start_decompress(&jpeg);
  JSAMPARRAY row =
      (*jpeg.mem->alloc_sarray)(reinterpret_cast<j_common_ptr>(&jpeg), JPOOL_IMAGE,
                                jpeg.output_width * static_cast<JDIMENSION>(jpeg.output_components), 1);
  while (jpeg.output_scanline < jpeg.output_height) jpeg_read_scanlines(&jpeg, row, 1);
  jpeg_finish_decompress(&jpeg);  // reads up to the end marker
}

// The first warning or the failure; "" without one.
std::string JpegFault(std::string_view bytes) {
  jpeg_decompress_struct jpeg{};
  jpeg_progress_mgr progress{};
  JpegErrors errors;
  jpeg.err = jpeg_std_error(&errors.manager);
  errors.manager.error_exit = FailJpeg;
  errors.manager.emit_message = NoteJpegWarning;
  progress.progress_monitor = LimitJpegScans;
  jpeg_create_decompress(&jpeg);
  jpeg.progress = &progress;
  jpeg.mem->max_memory_to_use = kMaxJpegMemory;
  if (setjmp(errors.failed) == 0) DecodeJpeg(bytes, jpeg, errors);
  jpeg_destroy_decompress(&jpeg);
  return errors.text.data();
}

}  // namespace

std::optional<Damage> CheckJpeg(std::string_view jpeg) {
  const std::string fault = OneLine(JpegFault(jpeg));
  if (fault.empty()) return std::nullopt;
  if (fault == "Premature end of JPEG file") return Damage{"the JPEG ends in the middle of the image"};
  return Damage{"the JPEG is corrupt: " + fault};
}

}  // namespace lumvik::host
