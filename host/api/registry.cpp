#include "api/registry.h"

#include <array>
#include <cstddef>
#include <cstring>
#include <mutex>
#include <new>
#include <string>
#include <unordered_map>
#include <utility>

#include "base/failure.h"

#if !defined(_WIN32)
#include <pthread.h>
#endif

namespace lumvik::host {
namespace {

// Handles are multiples of this, as addresses would be: some hosts use the low bits of a pointer.
constexpr HandleValue kHandleStep = 16;

struct Entry {
  HandleKind kind;
  unsigned process;  // in which it was opened
  std::shared_ptr<void> object;
};

class Registry {
 public:
  // Never destroyed: workers may run until the process ends, and a forked child must not destroy the parent's
  // objects, whose threads it lacks. In static memory, so that no call needs an allocation to find it.
  static Registry& Instance() {
    alignas(Registry) static std::array<std::byte, sizeof(Registry)> memory;
    // NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): one for all threads
    static auto* const kInstance = new (memory.data()) Registry();
    return *kInstance;
  }

  HandleValue Open(HandleKind kind, std::shared_ptr<void> object) {
    // Without the handlers a forked child would take the handles of its parent for its own.
    if (!watches_forks_) throw std::bad_alloc();
    const std::lock_guard<std::mutex> guard(mutex_);
    const HandleValue handle = last_handle_ + kHandleStep;
    entries_.emplace(handle, Entry{kind, process_, std::move(object)});
    last_handle_ = handle;
    return handle;
  }

  std::shared_ptr<void> Find(HandleKind kind, HandleValue handle) {
    const std::lock_guard<std::mutex> guard(mutex_);
    return At(kind, handle)->second.object;
  }

  std::shared_ptr<void> Close(HandleKind kind, HandleValue handle) {
    const std::lock_guard<std::mutex> guard(mutex_);
    const auto entry = At(kind, handle);
    std::shared_ptr<void> object = std::move(entry->second.object);
    entries_.erase(entry);
    return object;
  }

  void* Lend(const void* data, std::size_t size) {
    std::unique_ptr<std::byte[]> memory(new std::byte[size + 1]);  // never 0 bytes, and not zeroed
    if (size > 0) std::memcpy(memory.get(), data, size);
    void* const address = memory.get();
    const std::lock_guard<std::mutex> guard(mutex_);
    lent_.emplace(address, std::move(memory));
    return address;
  }

  void TakeBack(void* memory) {
    const std::lock_guard<std::mutex> guard(mutex_);
    lent_.erase(memory);
  }

 private:
  using Entries = std::unordered_map<HandleValue, Entry>;

  Registry() {
#if !defined(_WIN32)
    // Another thread may hold the mutex during a fork: the child would never get it.
    watches_forks_ = pthread_atfork([] { Instance().mutex_.lock(); }, [] { Instance().mutex_.unlock(); },
                                    [] {
                                      ++Instance().process_;
                                      Instance().mutex_.unlock();
                                    }) == 0;
#endif
  }

  Entries::iterator At(HandleKind kind, HandleValue handle) {
    const auto entry = entries_.find(handle);
    if (entry == entries_.end() || entry->second.kind != kind) {
      const std::string what = kind == HandleKind::kPhoto ? "photo" : "settings object";
      throw Failure(LUMVIK_HOST_INVALID_HANDLE, handle == 0 ? "the " + what + " is null"
                                                            : "the " + what + " is closed or was never open");
    }
    if (entry->second.process != process_) {
      throw Failure(LUMVIK_HOST_FORKED, "the object belongs to the parent of this process; open it here");
    }
    return entry;
  }

  std::mutex mutex_;
  Entries entries_;
  std::unordered_map<void*, std::unique_ptr<std::byte[]>> lent_;
  HandleValue last_handle_ = 0;
  unsigned process_ = 0;  // counts forks
  bool watches_forks_ = true;
};

// Made when the library is loaded: a thread may fork while another makes its first call.
[[maybe_unused]] const Registry& made_at_load = Registry::Instance();

}  // namespace

HandleValue OpenHandle(HandleKind kind, std::shared_ptr<void> object) {
  return Registry::Instance().Open(kind, std::move(object));
}

std::shared_ptr<void> FindHandle(HandleKind kind, HandleValue handle) {
  return Registry::Instance().Find(kind, handle);
}

std::shared_ptr<void> CloseHandle(HandleKind kind, HandleValue handle) {
  return Registry::Instance().Close(kind, handle);
}

void* Lend(const void* data, std::size_t size) {
  return Registry::Instance().Lend(data, size);
}

void TakeBack(void* memory) {
  Registry::Instance().TakeBack(memory);
}

}  // namespace lumvik::host
