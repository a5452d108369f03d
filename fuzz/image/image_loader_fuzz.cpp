// An ordinary image, whatever its name: loaded, or rejected with the documented text.
#include <algorithm>

#include "fuzz_input.h"
#include "lumvik.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using lumvik::fuzz::Require;
  const std::string path = lumvik::fuzz::WriteFile("input.png", lumvik::fuzz::ToBytes(data, size));
  EngineContext* context = lumvik_create_context();
  const int status = lumvik_load_arw(context, path.c_str(), 1);
  const int width = lumvik_get_width(context);
  const int height = lumvik_get_height(context);
  if (status == LUMVIK_OK) {
    Require(width > 0 && height > 0 && std::max(width, height) <= 4096);
  } else {
    Require(status == -1 && width == 0 && height == 0);
    Require(lumvik_last_error(context) == "OpenCV could not read: " + path);
  }
  lumvik_destroy_context(context);
  return 0;
}
