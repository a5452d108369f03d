// How the tests of misuse call the functions that exchange settings by sidecars, XMP and presets.
#include <initializer_list>

#include "host/api/misuse_table.h"
#include "lumvik_host.h"

namespace lumvik::host::test {
namespace {

constexpr char kPreset[] = R"({"lumvik": 2, "contrast": 20})";
constexpr char kXmp[] = R"(<x:xmpmeta xmlns:x='adobe:ns:meta/'>
<rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'>
<rdf:Description rdf:about='' xmlns:crs='http://ns.adobe.com/camera-raw-settings/1.0/' crs:Exposure2012='+1.00'/>
</rdf:RDF></x:xmpmeta>)";
constexpr std::initializer_list<const char*> kNoPresetNames = {"",    ".",    "..",  ".hidden",
                                                               "a/b", "a\\b", "../a"};

[[maybe_unused]] const bool exchange_functions = AddTestedFunctions({
    {"lumvik_host_find_sidecar",
     [](CallArguments& a) {
       return lumvik_host_find_sidecar(a.Text("missing/a.arw"), a.Text(".lumvik.json"), a.OutText());
     }},
    {"lumvik_host_settings_import_xmp",
     [](CallArguments& a) {
       return lumvik_host_settings_import_xmp(a.InputFile(a.File("a.xmp", kXmp)), a.OutSettings(),
                                              a.OutTextOrNull());
     }},
    {"lumvik_host_settings_to_xmp",
     [](CallArguments& a) { return lumvik_host_settings_to_xmp(a.Settings(), a.OutText()); }},
    {"lumvik_host_list_presets",
     [](CallArguments& a) { return lumvik_host_list_presets(a.InputFolder(), a.OutText()); }},
    {"lumvik_host_read_preset",
     [](CallArguments& a) {
       a.File("preset.json", kPreset);
       const bool missing = a.Takes("a missing preset", LUMVIK_HOST_NOT_FOUND);
       return lumvik_host_read_preset(a.InputFolder(), missing ? "missing" : a.Text("preset", kNoPresetNames),
                                      a.OutSettings());
     }},
    {"lumvik_host_write_preset",
     [](CallArguments& a) {
       const bool exists = a.Takes("an existing preset", LUMVIK_HOST_EXISTS);
       if (exists) a.File("preset.json", kPreset);
       return lumvik_host_write_preset(a.Folder(), a.Text("preset", kNoPresetNames), a.Settings(), 0);
     }},
});

}  // namespace
}  // namespace lumvik::host::test
