#include "api/arguments.h"

#include "api/registry.h"

namespace lumvik::host {

void RequireArgument(const void* pointer, const char* name) {
  if (pointer == nullptr) throw Failure(LUMVIK_HOST_INVALID_ARGUMENT, std::string(name) + " is null");
}

void RequireStructSize(std::uint32_t given, std::size_t first_version) {
  if (given >= first_version) return;
  throw Failure(LUMVIK_HOST_INVALID_ARGUMENT,
                "struct_size is " + std::to_string(given) + "; set it to the size of the struct");
}

char* LendText(const std::string& text) {
  return static_cast<char*>(Lend(text.c_str(), text.size() + 1));
}

}  // namespace lumvik::host
