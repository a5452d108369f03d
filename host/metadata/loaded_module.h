// The metadata module as a shared object.
#ifndef LUMVIK_HOST_METADATA_LOADED_MODULE_H_
#define LUMVIK_HOST_METADATA_LOADED_MODULE_H_

#include <filesystem>
#include <mutex>
#include <optional>
#include <string>

#include "modules/metadata_interface.h"

namespace lumvik::host {

// The functions of the module, for calls that must not overlap with those of other threads.
class ModuleCalls {
 public:
  // Loads the module first if necessary. Throws Failure with LUMVIK_HOST_UNSUPPORTED if that is not possible;
  // the next attempt searches again.
  ModuleCalls();

  const lumvik_metadata_functions* operator->() const { return functions_; }

 private:
  std::unique_lock<std::mutex> guard_;
  const lumvik_metadata_functions* functions_;
};

// Platform functions.

// The file name of the module.
extern const char kModuleFile[];

// The folder of the library that contains this function; empty if unknown.
std::filesystem::path LibraryFolder();

// The folder that the user named.
std::optional<std::filesystem::path> UserModuleFolder();

// Loads a shared object and returns its function with this name. On failure returns null and sets `reason`.
void* LoadFunction(const std::filesystem::path& file, const char* name, std::string& reason);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_METADATA_LOADED_MODULE_H_
