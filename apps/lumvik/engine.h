// The owner of one engine context.
#ifndef LUMVIK_APPS_ENGINE_H_
#define LUMVIK_APPS_ENGINE_H_

#include <functional>
#include <memory>
#include <string>

#include "lumvik.h"

namespace lumvik {

class Engine {
 public:
  Engine();

  // Runs one call of the engine. When it returns another status than 0, or throws, throws
  // std::runtime_error with `failure` ("cannot read 'a.jpg'") and the engine's reason behind it.
  void Run(const std::string& failure, const std::function<int(EngineContext*)>& call);

  EngineContext* Context() { return context_.get(); }

 private:
  std::unique_ptr<EngineContext, decltype(&lumvik_destroy_context)> context_;
};

}  // namespace lumvik

#endif  // LUMVIK_APPS_ENGINE_H_
