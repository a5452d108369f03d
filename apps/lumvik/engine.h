// The owner of one engine context.
#ifndef LUMVIK_APPS_ENGINE_H_
#define LUMVIK_APPS_ENGINE_H_

#include <functional>
#include <memory>
#include <string>

#include "lumvik.h"

namespace lumvik {

// Makes one call of the engine and returns its status. When it throws, throws std::runtime_error with
// `failure`
// ("cannot read 'a.jpg'") and the reason behind it.
int CallEngine(const std::string& failure, const std::function<int()>& call);

class Engine {
 public:
  Engine();

  // Calls the engine as above. When the status is another than 0, throws std::runtime_error with `failure`
  // and the engine's reason as well.
  void Run(const std::string& failure, const std::function<int(EngineContext*)>& call);

  EngineContext* Context() { return context_.get(); }

 private:
  std::unique_ptr<EngineContext, decltype(&lumvik_destroy_context)> context_;
};

}  // namespace lumvik

#endif  // LUMVIK_APPS_ENGINE_H_
