// How the tests of misuse call the functions that post renders, change the quality and analyze photos.
#include <cstdint>
#include <limits>
#include <string>

#include "host/api/misuse_table.h"
#include "lumvik_host.h"

namespace lumvik::host::test {
namespace {

constexpr int32_t kFarBelow = std::numeric_limits<int32_t>::min();
constexpr int32_t kFarAbove = std::numeric_limits<int32_t>::max();
constexpr std::size_t kMaskBytes = std::size_t{48} * 32;

// Any negative number selects the center.
float Coordinate(CallArguments& a) {
  using Float = std::numeric_limits<float>;
  for (const float number : {Float::quiet_NaN(), Float::infinity(), 1.01F, 1e30F}) {
    if (a.Takes("the coordinate " + std::to_string(number), LUMVIK_HOST_INVALID_ARGUMENT)) return number;
  }
  return 0.5F;
}

[[maybe_unused]] const bool posting_functions = AddTestedFunctions({
    {"lumvik_host_set_quality",
     [](CallArguments& a) {
       return lumvik_host_set_quality(a.Photo(), a.Integer(2, {-1, 0, 5, kFarBelow, kFarAbove}));
     }},
    {"lumvik_host_wait_for_quality",
     [](CallArguments& a) { return lumvik_host_wait_for_quality(a.Photo(), -1); }},
    {"lumvik_host_post",
     [](CallArguments& a) {
       lumvik_host_preview_options options{};
       options.channels = a.Integer(3, {-1, 1, 2, 5, kFarAbove});
       options.max_width = a.Integer(10, {-1, kFarBelow});
       return lumvik_host_post(a.Photo(), a.SettingsOrNull(), a.InOrNull(options), nullptr, nullptr,
                               a.OutOrNull<uint64_t>());
     }},
    {"lumvik_host_wait",
     [](CallArguments& a) {
       const bool unknown = a.Takes("a ticket that was never given", LUMVIK_HOST_INVALID_ARGUMENT);
       lumvik_host_photo* const photo = a.Photo();
       if (a.ValidPhoto() != nullptr) {
         lumvik_host_post(photo, nullptr, nullptr, nullptr, nullptr, nullptr);
       }
       return lumvik_host_wait(photo, unknown ? UINT64_MAX : 0, -1);
     }},
    {"lumvik_host_cancel", [](CallArguments& a) { return lumvik_host_cancel(a.Photo()); }},
    {"lumvik_host_suggest",
     [](CallArguments& a) {
       const auto what =
           static_cast<uint32_t>(a.Integer(LUMVIK_HOST_SUGGEST_EXPOSURE, {0, 32, -1, kFarBelow}));
       return lumvik_host_suggest(a.Photo(), what, a.OutSettings());
     }},
    {"lumvik_host_find_subject",
     [](CallArguments& a) {
       lumvik_host_photo* const photo = a.PhotoWithMask();
       const float x = Coordinate(a);
       return lumvik_host_find_subject(photo, x, Coordinate(a));
     }},
    {"lumvik_host_get_mask",
     [](CallArguments& a) {
       return lumvik_host_get_mask(a.PhotoWithMask(), a.Out<uint8_t>(WrittenOn::kSuccess, kMaskBytes),
                                   a.Capacity(kMaskBytes), a.Out<int32_t>(WrittenOn::kBufferTooSmall),
                                   a.Out<int32_t>(WrittenOn::kBufferTooSmall));
     }},
});

}  // namespace
}  // namespace lumvik::host::test
