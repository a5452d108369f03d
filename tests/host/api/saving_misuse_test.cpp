// How the tests of misuse call the functions that save and write files.
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>

#include "host/api/misuse_table.h"
#include "lumvik_host.h"
#include "support/temp_dir.h"

namespace lumvik::host::test {
namespace {

constexpr int32_t kLowestInteger = std::numeric_limits<int32_t>::min();
constexpr int32_t kHighestInteger = std::numeric_limits<int32_t>::max();
constexpr char kText[] = "text";

int32_t ValidRule(CallArguments& a) {
  return a.Integer(LUMVIK_HOST_OVERWRITE_MARKED, {-1, 3, kLowestInteger, kHighestInteger});
}

const char* ValidMark(CallArguments& a) {
  static const std::string too_long(1001, 'a');
  if (a.Takes("no mark", LUMVIK_HOST_OK)) return nullptr;
  if (a.Takes("a mark that is too long", LUMVIK_HOST_INVALID_ARGUMENT)) return too_long.c_str();
  if (a.Takes("a mark that is not UTF-8", LUMVIK_HOST_INVALID_ARGUMENT)) return "\xFF";
  return a.Takes("a mark of two lines", LUMVIK_HOST_INVALID_ARGUMENT) ? "a\nb" : "a mark";
}

// The file of an image with a mark.
class MarkedImage {
 public:
  MarkedImage() {
    constexpr uint8_t kGray = 128;
    lumvik_host_save_options options{};
    options.struct_size = sizeof(options);
    options.mark = "a mark";
    if (lumvik_host_write_png(Path().c_str(), &kGray, 1, 1, 1, &options) != LUMVIK_HOST_OK) {
      throw std::runtime_error(lumvik_host_last_error());
    }
  }
  std::string Path() const { return folder_.File("a.png"); }

 private:
  lumvik::test::TempDir folder_;
};

lumvik_host_save_options ValidPngOptions(CallArguments& a) {
  lumvik_host_save_options options{};
  options.overwrite = ValidRule(a);
  options.mark = ValidMark(a);
  return options;
}

// Without metadata, for which the module may be missing.
lumvik_host_save_options ValidSaveOptions(CallArguments& a, int32_t format) {
  lumvik_host_save_options options{};
  options.format = a.Integer(format, {-1, LUMVIK_HOST_FORMAT_RAW, LUMVIK_HOST_FORMAT_WEBP, kHighestInteger});
  options.quality = a.Integer(0, {-1, 101, kLowestInteger, kHighestInteger});
  options.bits = a.Integer(0, {-1, 1, 12, 32, kHighestInteger});
  options.max_width = a.Integer(0, {-1, kLowestInteger});
  options.max_height = a.Integer(0, {-1, kLowestInteger});
  options.metadata = a.Integer(LUMVIK_HOST_METADATA_NONE, {-1, 3, kHighestInteger});
  options.overwrite = ValidRule(a);
  options.mark = ValidMark(a);
  return options;
}

[[maybe_unused]] const bool saving_functions = AddTestedFunctions({
    {"lumvik_host_save",
     [](CallArguments& a) {
       lumvik_host_photo* const photo = a.Photo();
       const bool no_extension = a.Takes("a name without extension", LUMVIK_HOST_INVALID_ARGUMENT);
       const bool unknown = a.Takes("an unknown extension", LUMVIK_HOST_INVALID_ARGUMENT);
       const bool another = a.Takes("the extension of another format", LUMVIK_HOST_INVALID_ARGUMENT);
       const char* const path = a.OutputFile(no_extension ? "a"
                                             : unknown    ? "a.xyz"
                                             : another    ? "a.tif"
                                                          : "a.jpg");
       const int32_t format = no_extension || unknown ? LUMVIK_HOST_FORMAT_UNKNOWN : LUMVIK_HOST_FORMAT_JPEG;
       return lumvik_host_save(photo, path, a.In(ValidSaveOptions(a, format)));
     }},
    {"lumvik_host_save_bytes",
     [](CallArguments& a) {
       lumvik_host_photo* const photo = a.Photo();
       const bool none = a.Takes("no format", LUMVIK_HOST_INVALID_ARGUMENT);
       const auto options = ValidSaveOptions(a, none ? LUMVIK_HOST_FORMAT_UNKNOWN : LUMVIK_HOST_FORMAT_JPEG);
       const bool null = a.Takes("no options", LUMVIK_HOST_INVALID_ARGUMENT);
       return lumvik_host_save_bytes(photo, null ? nullptr : a.In(options), a.OutData(), a.Out<size_t>());
     }},
    {"lumvik_host_save_cutout",
     [](CallArguments& a) {
       lumvik_host_photo* const photo = a.PhotoWithMask();
       const char* const path = a.OutputFile("a.png");
       return lumvik_host_save_cutout(photo, path, a.InOrNull(ValidPngOptions(a)));
     }},
    {"lumvik_host_write_file",
     [](CallArguments& a) {
       const char* const path = a.OutputFile("a.txt");
       const void* const data = a.Data(kText);
       return lumvik_host_write_file(path, data, sizeof(kText), ValidRule(a));
     }},
    {"lumvik_host_write_png",
     [](CallArguments& a) {
       const char* const path = a.OutputFile("a.png");
       const auto* const pixels = static_cast<const uint8_t*>(a.Data(std::string(6, '\x80')));
       const int32_t width = a.Integer(2, {-1, 0, kLowestInteger});
       const int32_t height = a.Integer(1, {-1, 0, kLowestInteger});
       const int32_t channels = a.Integer(3, {-1, 0, 2, 5, kHighestInteger});
       return lumvik_host_write_png(path, pixels, width, height, channels, a.InOrNull(ValidPngOptions(a)));
     }},
    {"lumvik_host_read_mark",
     [](CallArguments& a) {
       static const MarkedImage image;
       return lumvik_host_read_mark(a.InputFile(image.Path()), a.OutText());
     }},
    {"lumvik_host_format_of",
     [](CallArguments& a) {
       const bool null = a.Takes("null", LUMVIK_HOST_OK);
       return OkIf(lumvik_host_format_of(null ? nullptr : "a.png") ==
                   (null ? LUMVIK_HOST_FORMAT_UNKNOWN : LUMVIK_HOST_FORMAT_PNG));
     }},
    {"lumvik_host_extension_of",
     [](CallArguments&) {
       return OkIf(lumvik_host_extension_of(LUMVIK_HOST_FORMAT_JPEG) != nullptr &&
                   lumvik_host_extension_of(LUMVIK_HOST_FORMAT_RAW) == nullptr &&
                   lumvik_host_extension_of(-1) == nullptr);
     }},
});

}  // namespace
}  // namespace lumvik::host::test
