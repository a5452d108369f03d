// Calls of the engine, whose failures and exceptions become Failure.
#ifndef LUMVIK_HOST_PHOTO_ENGINE_CALL_H_
#define LUMVIK_HOST_PHOTO_ENGINE_CALL_H_

#include <functional>
#include <string>

#include "base/failure.h"
#include "lumvik.h"

namespace lumvik::host {

// Calls the engine or the image library and returns the status of the call. Other exceptions than
// Failure become one with `what`, such as "cannot render 'a.jpg'", and the reason.
int CallLibrary(const std::string& what, const std::function<int()>& call);

// The same for a call on a context, whose failure becomes LUMVIK_HOST_INTERNAL with the engine's text.
void CallEngine(EngineContext* context, const std::string& what,
                const std::function<int(EngineContext*)>& call);

// The failure of a load, for the engine's text about it.
Failure LoadFailure(const std::string& what, const std::string& reason);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_PHOTO_ENGINE_CALL_H_
