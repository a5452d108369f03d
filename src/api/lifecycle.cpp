// The library and the lifetime of a context; the last error.
#include "api/engine_context.h"
#include "base/after_fork.h"

namespace lumvik {
namespace {

// When the library is loaded: the functions without a context use threads too.
[[maybe_unused]] const bool kWorksInForkedChildren = WorkInForkedChildren();

}  // namespace
}  // namespace lumvik

int lumvik_init() {
  return lumvik::kSuccess;
}

void lumvik_shutdown() {}

const char* lumvik_version() {
  return LUMVIK_VERSION_TEXT;
}

EngineContext* lumvik_create_context() {
  try {
    return new EngineContext();
  } catch (...) {
    return nullptr;
  }
}

void lumvik_destroy_context(EngineContext* ctx) {
  delete ctx;
}

const char* lumvik_last_error(EngineContext* ctx) {
  return ctx == nullptr ? "null context" : ctx->last_error.c_str();
}
