// Settings files are refused with a one-line message, or read and written back unchanged.
#include "fuzz_input.h"
#include "lumvik_host.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using lumvik::api::Settings;
  using lumvik::fuzz::Require;
  const std::string json(reinterpret_cast<const char*>(data), size);
  Settings settings;
  try {
    settings = Settings::FromJson(json);
  } catch (const lumvik::api::Error& error) {
    const std::string sentence = error.what();
    Require(error.status() == LUMVIK_HOST_INVALID_ARGUMENT);
    Require(!sentence.empty() && sentence.find('\n') == std::string::npos);
    return 0;
  }
  const std::string text = settings.ToJson();
  const Settings again = Settings::FromJson(text);
  Require(again.Equals(settings) && again.ToJson() == text);
  return 0;
}
