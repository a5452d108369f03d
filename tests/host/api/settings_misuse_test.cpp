// How the tests of misuse call the functions on settings.
#include <array>
#include <cstdint>
#include <string>

#include "host/api/misuse_table.h"
#include "lumvik_host.h"

namespace lumvik::host::test {
namespace {

constexpr char kSettingsFile[] = R"({"lumvik": 2, "contrast": 20})";
constexpr std::array<float, 4> kPoints = {0, 0.1F, 1, 0.9F};
constexpr std::size_t kTooManyPoints = 1025;

[[maybe_unused]] const bool settings_functions = AddTestedFunctions({
    {"lumvik_host_setting_count", [](CallArguments&) { return OkIf(lumvik_host_setting_count() > 0); }},
    {"lumvik_host_describe_setting",
     [](CallArguments& a) {
       return lumvik_host_describe_setting(a.Size(0, {lumvik_host_setting_count(), SIZE_MAX}),
                                           a.OutStruct<lumvik_host_setting_info>());
     }},
    {"lumvik_host_find_setting",
     [](CallArguments& a) {
       return lumvik_host_find_setting(a.Key("exposure", ".exposure"), a.Out<size_t>());
     }},
    {"lumvik_host_describe_settings_json",
     [](CallArguments& a) { return lumvik_host_describe_settings_json(a.OutText()); }},
    {"lumvik_host_settings_create",
     [](CallArguments& a) { return lumvik_host_settings_create(a.OutSettings()); }},
    {"lumvik_host_settings_copy",
     [](CallArguments& a) { return lumvik_host_settings_copy(a.Settings(), a.OutSettings()); }},
    {"lumvik_host_settings_close",
     [](CallArguments& a) { return lumvik_host_settings_close(a.SettingsOrNull()); }},
    {"lumvik_host_settings_clear", [](CallArguments& a) { return lumvik_host_settings_clear(a.Settings()); }},
    {"lumvik_host_settings_set_engine_values",
     [](CallArguments& a) { return lumvik_host_settings_set_engine_values(a.Settings()); }},
    {"lumvik_host_settings_has",
     [](CallArguments& a) {
       return lumvik_host_settings_has(a.Settings(), a.Key("exposure", ".exposure"), a.Out<int32_t>());
     }},
    {"lumvik_host_settings_remove",
     [](CallArguments& a) {
       return lumvik_host_settings_remove(a.Settings(), a.Key("contrast", "contrast "));
     }},
    {"lumvik_host_settings_set_number",
     [](CallArguments& a) {
       return lumvik_host_settings_set_number(a.Settings(), a.Key("exposure", "flip_h"),
                                              a.Number(1, {-10.01F, 10.01F, 1e30F}));
     }},
    {"lumvik_host_settings_get_number",
     [](CallArguments& a) {
       return lumvik_host_settings_get_number(a.Settings(), a.Key("exposure", "tone_curves.red"),
                                              a.Out<float>());
     }},
    {"lumvik_host_settings_set_flag",
     [](CallArguments& a) {
       return lumvik_host_settings_set_flag(a.Settings(), a.Key("flip_h", "exposure"), 2);
     }},
    {"lumvik_host_settings_get_flag",
     [](CallArguments& a) {
       return lumvik_host_settings_get_flag(a.Settings(), a.Key("flip_h", "exposure"), a.Out<int32_t>());
     }},
    {"lumvik_host_settings_set_curve",
     [](CallArguments& a) {
       const bool null = a.Takes("null points", LUMVIK_HOST_INVALID_ARGUMENT);
       return lumvik_host_settings_set_curve(a.Settings(), a.Key("tone_curves.red", "exposure"),
                                             null ? nullptr : kPoints.data(),
                                             a.Size(kPoints.size() / 2, {1, kTooManyPoints, SIZE_MAX}));
     }},
    {"lumvik_host_settings_get_curve",
     [](CallArguments& a) {
       return lumvik_host_settings_get_curve(a.Settings(), a.Key("tone_curves.red", "exposure"),
                                             a.Out<float>(WrittenOn::kSuccess, kPoints.size()),
                                             a.Capacity(kPoints.size() / 2),
                                             a.Out<size_t>(WrittenOn::kBufferTooSmall));
     }},
    {"lumvik_host_settings_merge",
     [](CallArguments& a) { return lumvik_host_settings_merge(a.Settings(), a.Settings()); }},
    {"lumvik_host_settings_remove_neutral",
     [](CallArguments& a) { return lumvik_host_settings_remove_neutral(a.Settings()); }},
    {"lumvik_host_settings_equal",
     [](CallArguments& a) {
       return lumvik_host_settings_equal(a.Settings(), a.Settings(), a.Out<int32_t>());
     }},
    {"lumvik_host_settings_to_json",
     [](CallArguments& a) { return lumvik_host_settings_to_json(a.Settings(), a.OutText()); }},
    {"lumvik_host_settings_from_json",
     [](CallArguments& a) {
       const auto* const json = static_cast<const char*>(a.Data(kSettingsFile));
       const size_t size = a.Size(sizeof(kSettingsFile) - 1, {0, 5, sizeof(kSettingsFile) - 2, SIZE_MAX});
       return lumvik_host_settings_from_json(json, size, a.OutSettings());
     }},
    {"lumvik_host_settings_read",
     [](CallArguments& a) {
       return lumvik_host_settings_read(a.InputFile(a.File("a.json", kSettingsFile)), a.OutSettings());
     }},
    {"lumvik_host_settings_write",
     [](CallArguments& a) { return lumvik_host_settings_write(a.Settings(), a.OutputFile("a.json"), 0); }},
});

}  // namespace
}  // namespace lumvik::host::test
