// Owns an engine context and turns its failures into exceptions.
#ifndef LUMVIK_APPS_DEVELOP_ENGINE_H_
#define LUMVIK_APPS_DEVELOP_ENGINE_H_

#include <functional>
#include <memory>
#include <string>

#include "lumvik.h"

namespace lumvik {

// Makes one engine call and returns its status. If it throws, throws std::runtime_error with `failure`, such
// as "cannot read 'a.jpg'", and the reason.
int CallEngine(const std::string& failure, const std::function<int()>& call);

class Engine {
 public:
  Engine();

  // The same, and also throws when the status is not 0, with the engine's last error as the reason.
  void Run(const std::string& failure, const std::function<int(EngineContext*)>& call);

  EngineContext* Context() { return context_.get(); }

 private:
  std::unique_ptr<EngineContext, decltype(&lumvik_destroy_context)> context_;
};

}  // namespace lumvik

#endif  // LUMVIK_APPS_DEVELOP_ENGINE_H_
