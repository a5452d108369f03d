// How the tests of misuse call the functions on photos.
#include <cstdint>
#include <limits>
#include <string>

#include "host/api/misuse_photographs.h"
#include "host/api/misuse_table.h"
#include "lumvik_host.h"
#include "support/file_bytes.h"

namespace lumvik::host::test {
namespace {

constexpr int32_t kMostNegative = std::numeric_limits<int32_t>::min();
constexpr int32_t kLargest = std::numeric_limits<int32_t>::max();
constexpr std::size_t kPreviewPixels = std::size_t{48} * 32;
constexpr std::size_t kTextSize = 100;

lumvik_host_open_options ValidOpenOptions(CallArguments& a) {
  lumvik_host_open_options options{};
  options.quality = a.Integer(1, {-1, 5, kMostNegative, kLargest});
  return options;
}

lumvik_host_preview_options ValidPreviewOptions(CallArguments& a) {
  lumvik_host_preview_options options{};
  options.max_width = a.Integer(0, {-1, kMostNegative});
  options.max_height = a.Integer(0, {-1, kMostNegative});
  options.channels = a.Integer(4, {-1, 1, 2, 5, kLargest});
  options.stride = a.Size(0, {1, 4 * 48 - 1});
  options.background_blur = a.Number(0, {-0.01F, 100.01F});
  return options;
}

[[maybe_unused]] const bool photo_functions = AddTestedFunctions({
    {"lumvik_host_open",
     [](CallArguments& a) {
       const char* const path = a.InputFile(PhotographPath());
       return lumvik_host_open(path, a.InOrNull(ValidOpenOptions(a)), a.OutPhoto());
     }},
    {"lumvik_host_open_bytes",
     [](CallArguments& a) {
       const std::vector<uint8_t> bytes = lumvik::test::ReadBytes(PhotographPath());
       const std::string content(bytes.begin(), bytes.end());
       const bool other = a.Takes("what is no photograph", LUMVIK_HOST_NOT_A_PHOTOGRAPH);
       const bool empty = a.Takes("no bytes", kAnyFailure);
       const void* const data = a.Data(other ? std::string(content.size(), 'Z') : content);
       return lumvik_host_open_bytes(data, empty ? 0 : content.size(), a.InOrNull(ValidOpenOptions(a)),
                                     a.OutPhoto());
     }},
    {"lumvik_host_close", [](CallArguments& a) { return lumvik_host_close(a.PhotoToClose()); }},
    {"lumvik_host_get_error",
     [](CallArguments& a) {
       const bool no_capacity = a.Takes("a buffer of no bytes", LUMVIK_HOST_BUFFER_TOO_SMALL);
       lumvik_host_photo* const photo = a.Photo();
       return lumvik_host_get_error(photo, a.Out<char>(WrittenOn::kSuccess, kTextSize),
                                    no_capacity ? 0 : kTextSize);
     }},
    {"lumvik_host_get_info",
     [](CallArguments& a) { return lumvik_host_get_info(a.Photo(), a.OutStruct<lumvik_host_photo_info>()); }},
    {"lumvik_host_set_settings",
     [](CallArguments& a) { return lumvik_host_set_settings(a.Photo(), a.SettingsOrNull()); }},
    {"lumvik_host_get_settings",
     [](CallArguments& a) { return lumvik_host_get_settings(a.Photo(), a.OutSettings()); }},
    {"lumvik_host_render", [](CallArguments& a) { return lumvik_host_render(a.Photo()); }},
    {"lumvik_host_get_preview_size",
     [](CallArguments& a) {
       return lumvik_host_get_preview_size(a.Photo(), a.InOrNull(ValidPreviewOptions(a)), a.Out<int32_t>(),
                                           a.Out<int32_t>());
     }},
    {"lumvik_host_get_preview",
     [](CallArguments& a) {
       return lumvik_host_get_preview(a.Photo(), a.InOrNull(ValidPreviewOptions(a)),
                                      a.Out<uint8_t>(WrittenOn::kSuccess, 4 * kPreviewPixels),
                                      a.Capacity(4 * kPreviewPixels),
                                      a.OutOrNull<int32_t>(WrittenOn::kBufferTooSmall),
                                      a.OutOrNull<int32_t>(WrittenOn::kBufferTooSmall));
     }},
    {"lumvik_host_get_histogram",
     [](CallArguments& a) { return lumvik_host_get_histogram(a.Photo(), a.Out<lumvik_host_histogram>()); }},
});

}  // namespace
}  // namespace lumvik::host::test
