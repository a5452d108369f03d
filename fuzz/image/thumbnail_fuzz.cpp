// A thumbnail of an ordinary image and of a RAW file's preview.
#include "fuzz_input.h"
#include "lumvik.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using lumvik::fuzz::Require;
  for (const char* name : {"input.jpg", "input.arw"}) {
    const std::string path = lumvik::fuzz::WriteFile(name, lumvik::fuzz::ToBytes(data, size));
    uint8_t* thumbnail = nullptr;
    int bytes = -1;
    const int status = lumvik_extract_thumbnail(path.c_str(), &thumbnail, &bytes);
    Require(status <= 0 && status >= -4 && (status == LUMVIK_OK) == (thumbnail != nullptr));
    uint8_t sum = 0;
    for (int i = 0; status == LUMVIK_OK && i < bytes; ++i) sum = static_cast<uint8_t>(sum + thumbnail[i]);
    volatile uint8_t read = sum;  // every delivered byte can be read
    static_cast<void>(read);
    lumvik_free_thumb(thumbnail);
  }
  return 0;
}
