#include <dlfcn.h>
#include <link.h>

#include <array>
#include <climits>
#include <cstdlib>

#include "metadata/loaded_module.h"

namespace lumvik::host {

const char kModuleFile[] = "liblumvik_metadata.so";

std::filesystem::path LibraryFolder() {
  Dl_info info{};
  void* object = nullptr;
  std::array<char, PATH_MAX> folder{};
  // Absolute, unlike the path in `info`, which may be relative to an earlier working folder.
  if (dladdr1(reinterpret_cast<const void*>(&LibraryFolder), &info, &object, RTLD_DL_LINKMAP) == 0 ||
      dlinfo(object, RTLD_DI_ORIGIN, folder.data()) != 0) {
    return {};
  }
  return folder.data();
}

std::optional<std::filesystem::path> UserModuleFolder() {
  // A program with more rights than its user must not load what the user likes.
  const char* const folder = secure_getenv("LUMVIK_MODULES");
  if (folder == nullptr || *folder == '\0') return std::nullopt;
  return folder;
}

void* LoadFunction(const std::filesystem::path& file, const char* name, std::string& reason) {
  void* const library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  void* const function = library == nullptr ? nullptr : dlsym(library, name);
  if (function != nullptr) return function;
  reason = dlerror();  // NOLINT(concurrency-mt-unsafe): of this thread
  if (library != nullptr) dlclose(library);
  return nullptr;
}

}  // namespace lumvik::host
