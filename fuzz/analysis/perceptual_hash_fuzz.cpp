// The perceptual hash of ordinary images and of RAW files' previews.
#include "fuzz_input.h"
#include "lumvik.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using lumvik::fuzz::Require;
  for (const char* name : {"input.jpg", "input.arw"}) {
    const std::string path = lumvik::fuzz::WriteFile(name, lumvik::fuzz::ToBytes(data, size));
    uint64_t hash = 1;
    const int status = lumvik_phash(path.c_str(), &hash);
    Require(status <= 0 && status >= -4 && (status == LUMVIK_OK || hash == 0));
    uint64_t again = 1;
    Require(lumvik_phash(path.c_str(), &again) == status && again == hash);
  }
  return 0;
}
