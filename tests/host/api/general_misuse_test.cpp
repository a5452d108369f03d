// How the tests of misuse call the functions without an object.
#include <limits>

#include "host/api/misuse_table.h"
#include "lumvik_host.h"

namespace lumvik::host::test {
namespace {

constexpr int kNotAStatus = 1000;

[[maybe_unused]] const bool general_functions = AddTestedFunctions({
    {"lumvik_host_version", [](CallArguments&) { return OkIf(lumvik_host_version() != nullptr); }},
    {"lumvik_host_engine_version",
     [](CallArguments&) { return OkIf(lumvik_host_engine_version() != nullptr); }},
    {"lumvik_host_status_name",
     [](CallArguments&) {
       return OkIf(lumvik_host_status_name(kNotAStatus) != nullptr &&
                   lumvik_host_status_name(std::numeric_limits<int32_t>::min()) != nullptr);
     }},
    {"lumvik_host_last_error", [](CallArguments&) { return OkIf(lumvik_host_last_error() != nullptr); }},
    {"lumvik_host_free",
     [](CallArguments& a) {
       int local = 0;
       lumvik_host_free(a.Takes("null", LUMVIK_HOST_OK) ? nullptr : &local);
       return OkIf(local == 0);
     }},
});

}  // namespace
}  // namespace lumvik::host::test
