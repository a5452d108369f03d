// Checks of the arguments of exported functions. Each throws Failure with LUMVIK_HOST_INVALID_ARGUMENT.
#ifndef LUMVIK_HOST_API_ARGUMENTS_H_
#define LUMVIK_HOST_API_ARGUMENTS_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "base/failure.h"

namespace lumvik::host {

// `name` as in the header.
void RequireArgument(const void* pointer, const char* name);

void RequireStructSize(std::uint32_t given, std::size_t first_version);

// The options that a host passed, which may be a struct of an older or a newer version; zeros for null.
template <typename Options>
Options OptionsOf(const Options* given) {
  Options options{};
  if (given == nullptr) return options;
  RequireStructSize(given->struct_size, sizeof(Options));
  std::memcpy(&options, given, std::min<std::size_t>(given->struct_size, sizeof(Options)));
  options.struct_size = sizeof(Options);
  return options;
}

// Checks an output struct of the host.
template <typename Result>
void RequireResult(const Result* result, const char* name) {
  RequireArgument(result, name);
  RequireStructSize(result->struct_size, sizeof(Result));
}

// Copies a result to the host's struct, which may be of a newer version with more fields.
template <typename Result>
void StoreResult(const Result& result, Result* stored) {
  const std::uint32_t size = stored->struct_size;
  *stored = result;
  stored->struct_size = size;
}

// A text for the host, which releases it with lumvik_host_free(). Throws std::bad_alloc.
char* LendText(const std::string& text);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_API_ARGUMENTS_H_
