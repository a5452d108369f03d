// How the tests of misuse call the functions that examine files.
#include <cstdint>

#include "host/api/misuse_photographs.h"
#include "host/api/misuse_table.h"
#include "lumvik_host.h"

namespace lumvik::host::test {
namespace {

[[maybe_unused]] const bool file_functions = AddTestedFunctions({
    {"lumvik_host_get_exif",
     [](CallArguments& a) { return lumvik_host_get_exif(a.Photo(), a.OutStruct<lumvik_host_exif>()); }},
    {"lumvik_host_read_exif",
     [](CallArguments& a) {
       return lumvik_host_read_exif(a.InputFile(PhotographPath()), a.OutStruct<lumvik_host_exif>());
     }},
    {"lumvik_host_get_warnings",
     [](CallArguments& a) { return lumvik_host_get_warnings(a.Photo(), a.OutText()); }},
    {"lumvik_host_check",
     [](CallArguments& a) {
       return lumvik_host_check(a.Photo(), a.OutStruct<lumvik_host_integrity>(WrittenOn::kDamaged));
     }},
    {"lumvik_host_check_file",
     [](CallArguments& a) {
       return lumvik_host_check_file(a.InputFile(PhotographPath()),
                                     a.OutStruct<lumvik_host_integrity>(WrittenOn::kDamaged));
     }},
    {"lumvik_host_identify",
     [](CallArguments& a) { return lumvik_host_identify(a.InputFile(PhotographPath()), a.Out<int32_t>()); }},
    {"lumvik_host_read_size",
     [](CallArguments& a) {
       return lumvik_host_read_size(a.InputFile(PhotographPath()), a.Out<int32_t>(), a.Out<int32_t>());
     }},
    {"lumvik_host_fingerprint",
     [](CallArguments& a) {
       return lumvik_host_fingerprint(a.InputFile(PhotographPath()), a.Out<uint64_t>());
     }},
    {"lumvik_host_extract_thumbnail",
     [](CallArguments& a) {
       const char* const path = a.InputFile(PhotographPath());
       lumvik_host_thumbnail_options options{};
       options.max_width = a.Integer(0, {-1, INT32_MIN});
       options.max_height = a.Integer(8, {-1, INT32_MIN});
       options.metadata = a.Integer(LUMVIK_HOST_METADATA_NONE, {-1, 3, INT32_MAX});
       options.mark = a.Takes("a mark that is not UTF-8", LUMVIK_HOST_INVALID_ARGUMENT) ? "\xFF" : "mark";
       return lumvik_host_extract_thumbnail(path, a.InOrNull(options), a.OutData(), a.Out<size_t>(),
                                            a.OutOrNull<int32_t>(), a.OutOrNull<int32_t>());
     }},
    {"lumvik_host_hash",
     [](CallArguments& a) { return lumvik_host_hash(a.InputFile(PhotographPath()), a.Out<uint64_t>()); }},
    {"lumvik_host_has_metadata_module",
     [](CallArguments&) {
       const lumvik_host_status status = lumvik_host_has_metadata_module();
       return OkIf(status == LUMVIK_HOST_OK || status == LUMVIK_HOST_UNSUPPORTED);
     }},
});

}  // namespace
}  // namespace lumvik::host::test
