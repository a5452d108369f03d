// How the tests of misuse call the functions that save and write files.
#include <cstdint>
#include <limits>
#include <string>

#include "host/api/misuse_table.h"
#include "lumvik_host.h"

namespace lumvik::host::test {
namespace {

constexpr int32_t kLowestInteger = std::numeric_limits<int32_t>::min();
constexpr int32_t kHighestInteger = std::numeric_limits<int32_t>::max();
constexpr char kText[] = "text";

// Without metadata, for which the module may be missing.
lumvik_host_save_options ValidSaveOptions(CallArguments& a, int32_t format) {
  lumvik_host_save_options options{};
  options.format = a.Integer(format, {-1, LUMVIK_HOST_FORMAT_RAW, LUMVIK_HOST_FORMAT_WEBP, kHighestInteger});
  options.quality = a.Integer(0, {-1, 101, kLowestInteger, kHighestInteger});
  options.bits = a.Integer(0, {-1, 1, 12, 32, kHighestInteger});
  options.max_width = a.Integer(0, {-1, kLowestInteger});
  options.max_height = a.Integer(0, {-1, kLowestInteger});
  options.metadata = a.Integer(LUMVIK_HOST_METADATA_NONE, {-1, 3, kHighestInteger});
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
       const lumvik_host_save_options options{};
       return lumvik_host_save_cutout(a.PhotoWithMask(), a.OutputFile("a.png"), a.InOrNull(options));
     }},
    {"lumvik_host_write_file",
     [](CallArguments& a) {
       return lumvik_host_write_file(a.OutputFile("a.txt"), a.Data(kText), sizeof(kText), 0);
     }},
    {"lumvik_host_write_png",
     [](CallArguments& a) {
       const char* const path = a.OutputFile("a.png");
       const auto* const pixels = static_cast<const uint8_t*>(a.Data(std::string(6, '\x80')));
       return lumvik_host_write_png(path, pixels, a.Integer(2, {-1, 0, kLowestInteger}),
                                    a.Integer(1, {-1, 0, kLowestInteger}),
                                    a.Integer(3, {-1, 0, 2, 5, kHighestInteger}), nullptr);
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
