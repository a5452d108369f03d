// What is known of a photograph without developing it.
#ifndef LUMVIK_APPS_INFO_PHOTOGRAPH_FACTS_H_
#define LUMVIK_APPS_INFO_PHOTOGRAPH_FACTS_H_

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "lumvik_host.hpp"

namespace lumvik {

struct PhotographFacts {
  std::string path;
  lumvik_host_format format = LUMVIK_HOST_FORMAT_UNKNOWN;
  api::Size size;  // as stored
  api::ExifInfo exif;
  std::optional<std::string> settings;  // the settings file next to it
  bool is_ours = false;                 // written by this command and not changed since
  std::optional<std::string> damage;    // what is missing or corrupt
};

// Throws std::runtime_error for a file that is no photograph.
PhotographFacts FactsOf(const std::string& path);

// The name of the file, and an indented line for each fact that is known.
std::string TextOf(const PhotographFacts& facts);

// The same with numbers instead of texts; what is unknown is null.
nlohmann::ordered_json JsonOf(const PhotographFacts& facts);

}  // namespace lumvik

#endif  // LUMVIK_APPS_INFO_PHOTOGRAPH_FACTS_H_
