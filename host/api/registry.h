// The open handles and the memory lent to hosts. Handles are numbers in the guise of pointers: they are
// looked up, never dereferenced, and never used twice, so that a closed or made-up handle is recognized.
#ifndef LUMVIK_HOST_API_REGISTRY_H_
#define LUMVIK_HOST_API_REGISTRY_H_

#include <cstddef>
#include <cstdint>
#include <memory>

namespace lumvik::host {

enum class HandleKind { kSettings, kPhoto };

// The value of a handle; 0 is null.
using HandleValue = std::uintptr_t;

// Registers an object and returns its handle.
HandleValue OpenHandle(HandleKind kind, std::shared_ptr<void> object);

// The object of an open handle. Throws Failure: LUMVIK_HOST_INVALID_HANDLE or, in a process forked after the
// handle was opened, LUMVIK_HOST_FORKED.
std::shared_ptr<void> FindHandle(HandleKind kind, HandleValue handle);

// Removes an open handle and returns its object. Throws as FindHandle does.
std::shared_ptr<void> CloseHandle(HandleKind kind, HandleValue handle);

// Memory that the host releases with lumvik_host_free(). Throws std::bad_alloc.
void* Lend(const void* data, std::size_t size);

// Does nothing for an address that is not lent.
void TakeBack(void* memory);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_API_REGISTRY_H_
