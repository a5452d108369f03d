#include "engine.h"

#include <algorithm>
#include <exception>
#include <new>
#include <stdexcept>

namespace lumvik {
namespace {

// The image library's texts run over several lines and end in an empty one.
std::string OneLine(std::string text) {
  text.erase(text.find_last_not_of(" \n") + 1);
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

}  // namespace

Engine::Engine() : context_(lumvik_create_context(), lumvik_destroy_context) {
  if (!context_) throw std::runtime_error("cannot start the engine: not enough memory");
}

void Engine::Run(const std::string& failure, const std::function<int(EngineContext*)>& call) {
  std::string reason;
  try {
    if (call(context_.get()) == 0) return;
    reason = lumvik_last_error(context_.get());
  } catch (const std::bad_alloc&) {
    reason = "not enough memory";
  } catch (const std::exception& error) {
    reason = error.what();
  }
  throw std::runtime_error(failure + ": " + OneLine(reason));
}

}  // namespace lumvik
