#include "develop/engine.h"

#include <algorithm>
#include <exception>
#include <new>
#include <stdexcept>

namespace lumvik {
namespace {

// The image library's messages span several lines and end with an empty one.
std::string OneLine(std::string text) {
  text.erase(text.find_last_not_of(" \n") + 1);
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

std::runtime_error Failure(const std::string& failure, const std::string& reason) {
  return std::runtime_error(failure + ": " + OneLine(reason));
}

}  // namespace

int CallEngine(const std::string& failure, const std::function<int()>& call) {
  try {
    return call();
  } catch (const std::bad_alloc&) {
    throw Failure(failure, "not enough memory");
  } catch (const std::exception& error) {
    throw Failure(failure, error.what());
  }
}

Engine::Engine() : context_(lumvik_create_context(), lumvik_destroy_context) {
  if (!context_) throw std::runtime_error("cannot start the engine: not enough memory");
}

void Engine::Run(const std::string& failure, const std::function<int(EngineContext*)>& call) {
  const int status = CallEngine(failure, [&] { return call(context_.get()); });
  if (status != 0) throw Failure(failure, lumvik_last_error(context_.get()));
}

}  // namespace lumvik
