// JSON of a settings file, with the line of each key.
#ifndef LUMVIK_APPS_DEVELOP_SETTINGS_JSON_H_
#define LUMVIK_APPS_DEVELOP_SETTINGS_JSON_H_

#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

namespace lumvik {

// Keys keep their order. Numbers are floats, as in the engine, and are written with the fewest digits that
// round-trip.
using Json = nlohmann::basic_json<nlohmann::ordered_map, std::vector, std::string, bool, std::int64_t,
                                  std::uint64_t, float>;

// "hsl" and "red" make "hsl.red"; `parent` may be empty.
std::string JoinKeys(const std::string& parent, const std::string& key);

// NOLINTNEXTLINE(bugprone-exception-escape): moving a Json throws only from its own assertions
struct LocatedJson {
  Json root;
  std::map<std::string, int> lines;  // by joined key, counted from 1
};

// Throws std::runtime_error, naming line and key, for invalid JSON and for duplicate keys.
LocatedJson ParseJson(const std::string& text);

// An error at a key: "line 3: hsl.red.hue: why".
std::runtime_error JsonFault(int line, const std::string& key, const std::string& why);

}  // namespace lumvik

#endif  // LUMVIK_APPS_DEVELOP_SETTINGS_JSON_H_
