#include "metadata/loaded_module.h"

#include <array>
#include <cstddef>
#include <new>
#include <system_error>
#include <vector>

#include "base/failure.h"

#if !defined(_WIN32)
#include <pthread.h>
#endif

namespace lumvik::host {
namespace {

namespace fs = std::filesystem;

Failure NoModule(const std::string& reason) {
  return {LUMVIK_HOST_UNSUPPORTED, "the metadata module " + reason};
}

std::vector<fs::path> ModuleFolders() {
  std::vector<fs::path> folders;
  if (const auto folder = UserModuleFolder()) folders.push_back(*folder);
  const fs::path library_folder = LibraryFolder();
  if (!library_folder.empty()) {
    folders.push_back(library_folder / "lumvik");
    folders.push_back(library_folder);
  }
  return folders;
}

fs::path FindModule() {
  std::string searched;
  for (const fs::path& folder : ModuleFolders()) {
    std::error_code ignored;  // a file that cannot be accessed cannot be loaded
    if (fs::exists(folder / kModuleFile, ignored)) return folder / kModuleFile;
    searched += (searched.empty() ? " '" : ", '") + folder.u8string() + "'";
  }
  throw NoModule("is not installed: there is no " + std::string(kModuleFile) + " in" + searched);
}

const lumvik_metadata_functions* LoadModule() {
  const fs::path file = FindModule();
  const std::string shown = "'" + file.u8string() + "'";
  std::string reason;
  void* const entry = LoadFunction(file, LUMVIK_METADATA_ENTRY, reason);
  if (entry == nullptr) throw NoModule("cannot be loaded: " + OneLine(reason));
  const lumvik_metadata_functions* const functions = reinterpret_cast<lumvik_metadata_entry>(entry)();
  if (functions == nullptr) throw NoModule(shown + " cannot be used: it failed to start");
  if (functions->version != LUMVIK_METADATA_VERSION) {
    throw NoModule(shown + " cannot be used: its version is " + std::to_string(functions->version) +
                   ", not " + std::to_string(LUMVIK_METADATA_VERSION));
  }
  return functions;
}

class ModuleState {
 public:
  static ModuleState& Instance() {
    // Never destroyed: other threads may run until the process ends. Not on the heap, so that it always
    // exists.
    alignas(ModuleState) static std::array<std::byte, sizeof(ModuleState)> memory;
    // NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): the module is loaded once for all
    static auto* const kInstance = new (memory.data()) ModuleState();
    return *kInstance;
  }

  std::mutex& Mutex() { return mutex_; }

  const lumvik_metadata_functions* Functions() {
    // Without the handlers a forked child might wait forever for a thread that it lacks.
    if (!watches_forks_) throw std::bad_alloc();
    if (functions_ == nullptr) functions_ = LoadModule();
    return functions_;
  }

 private:
  ModuleState() {
#if !defined(_WIN32)
    watches_forks_ = pthread_atfork([] { Instance().mutex_.lock(); }, [] { Instance().mutex_.unlock(); },
                                    [] { Instance().mutex_.unlock(); }) == 0;
#endif
  }

  std::mutex mutex_;
  bool watches_forks_ = true;
  const lumvik_metadata_functions* functions_ = nullptr;
};

// Made when the library is loaded: a thread may fork while another makes its first call.
[[maybe_unused]] const ModuleState& module_state_at_load = ModuleState::Instance();

}  // namespace

ModuleCalls::ModuleCalls()
    : guard_(ModuleState::Instance().Mutex()), functions_(ModuleState::Instance().Functions()) {}

}  // namespace lumvik::host
