// XMP files are imported within the ranges of our settings, or refused with a one-line text. What was
// imported is the same after writing it as XMP and importing that.
#include <nlohmann/json.hpp>

#include "fuzz_input.h"
#include "lumvik_host.hpp"

// Exiv2 keeps the namespaces of a file registered, and leaks the earlier one of a name.
extern "C" const char* __lsan_default_suppressions() {
  return "leak:Exiv2::XmpProperties::registerNs\n";
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using lumvik::api::Settings;
  using lumvik::fuzz::Require;
  const std::string path = lumvik::fuzz::WriteFile("input.xmp", lumvik::fuzz::ToBytes(data, size));
  Settings settings;
  std::string report;
  try {
    settings = Settings::ImportXmp(path, &report);
  } catch (const lumvik::api::Error& error) {
    const std::string sentence = error.what();
    Require(size == 0 ? error.status() == LUMVIK_HOST_NOT_A_PHOTOGRAPH
                      : error.status() == LUMVIK_HOST_NOT_FOUND || error.status() == LUMVIK_HOST_DAMAGED ||
                            error.status() == LUMVIK_HOST_INVALID_ARGUMENT);
    Require(!sentence.empty() && sentence.find('\n') == std::string::npos);
    return 0;
  }
  Require(nlohmann::json::accept(report));
  Require(Settings::FromJson(settings.ToJson()).Equals(settings));  // which checks every value
  const std::string packet = settings.ToXmp();
  const Settings again =
      Settings::ImportXmp(lumvik::fuzz::WriteFile("again.xmp", {packet.begin(), packet.end()}));
  Require(again.Equals(settings));
  return 0;
}
