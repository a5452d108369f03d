// Functions that take a path instead of a context: thumbnail and perceptual hash.
#include <cstdlib>

#include "analysis/perceptual_hash.h"
#include "api/engine_context.h"
#include "image/thumbnail.h"

int lumvik_extract_thumbnail(const char* path, uint8_t** data, int* size) {
  if (path == nullptr || data == nullptr || size == nullptr) return lumvik::kFailure;
  *data = nullptr;
  *size = 0;
  lumvik::Thumbnail thumbnail;
  const lumvik::ThumbnailStatus status = lumvik::MakeThumbnail(path, thumbnail);
  *size = static_cast<int>(thumbnail.size);
  *data = thumbnail.data.release();
  return static_cast<int>(status);
}

void lumvik_free_thumb(void* data) {
  // NOLINTNEXTLINE(cppcoreguidelines-no-malloc): allocated with malloc
  std::free(data);
}

int lumvik_phash(const char* path, uint64_t* hash) {
  if (path == nullptr || hash == nullptr) return lumvik::kFailure;
  *hash = 0;
  return static_cast<int>(lumvik::PerceptualHashOfFile(path, *hash));
}
