// Settings files are refused with a one-line message, or read and written back unchanged.
#include <stdexcept>

#include "develop/settings_file.h"
#include "fuzz_input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using lumvik::fuzz::Require;
  const std::string path = lumvik::fuzz::WriteFile("input.json", lumvik::fuzz::ToBytes(data, size));
  lumvik::Settings settings;
  try {
    settings = lumvik::ReadSettings(path);
  } catch (const std::runtime_error& error) {
    const std::string sentence = error.what();
    Require(!sentence.empty() && sentence.find('\n') == std::string::npos);
    return 0;
  }
  settings.merge(lumvik::DefaultSettings());
  const std::string text = lumvik::SettingsText(settings);
  const std::string written = lumvik::fuzz::WriteFile("written.json", {text.begin(), text.end()});
  Require(lumvik::ReadSettings(written) == settings);
  return 0;
}
