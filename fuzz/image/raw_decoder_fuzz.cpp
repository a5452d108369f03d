// A RAW file: decoded and rendered, or rejected with the text of the step that failed. Reads its metadata
// too, which for most RAW files is the decoder's.
#include <algorithm>

#include "fuzz_input.h"
#include "large_raw.h"
#include "lumvik.h"

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t max_size);

// Most mutations go to the beginning of the file, where the tags are, rather than to the pixels.
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t max_size, unsigned seed) {
  constexpr size_t kTags = 1024;
  if (seed % 8 == 0 || size <= kTags) return LLVMFuzzerMutate(data, size, max_size);
  LLVMFuzzerMutate(data, kTags, kTags);  // a shorter result leaves the tail of the old bytes in place
  return size;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using lumvik::fuzz::Require;
  const std::string path = lumvik::fuzz::WriteFile("input.arw", lumvik::fuzz::ToBytes(data, size));
  if (lumvik::fuzz::IsLargeRaw(path)) return 0;
  EngineContext* context = lumvik_create_context();
  const int quality = static_cast<int>(size % 4) + 1;
  if (lumvik_load_arw(context, path.c_str(), quality) == LUMVIK_OK) {
    Require(std::max(lumvik_get_width(context), lumvik_get_height(context)) <= 2000);
    lumvik_set_exposure(context, 0.5F);
    Require(lumvik_process(context) == LUMVIK_OK);
    ExifInfo info;
    Require(lumvik_get_exif(context, &info) == LUMVIK_OK);
  } else {
    Require(std::string(lumvik_last_error(context)).rfind("LibRaw ", 0) == 0);
  }
  lumvik_destroy_context(context);
  return 0;
}
