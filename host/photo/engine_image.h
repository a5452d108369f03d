// A photograph loaded by the engine.
#ifndef LUMVIK_HOST_PHOTO_ENGINE_IMAGE_H_
#define LUMVIK_HOST_PHOTO_ENGINE_IMAGE_H_

#include <memory>
#include <string>

#include "lumvik.h"

namespace lumvik::host {

class EngineImage {
 public:
  // Loads the file at `path` with the decoder that the engine chooses for it. `shown` names the file in
  // messages. Throws Failure.
  EngineImage(const std::string& path, int quality, const std::string& shown);

  EngineContext* Context() const { return context_.get(); }
  int Quality() const { return quality_; }

  // Pixels, before cropping.
  int Width() const { return width_; }
  int Height() const { return height_; }

 private:
  std::unique_ptr<EngineContext, decltype(&lumvik_destroy_context)> context_;
  int quality_;
  int width_ = 0;
  int height_ = 0;
};

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_PHOTO_ENGINE_IMAGE_H_
