// JSON of a settings file, with the line of each key.
#ifndef LUMVIK_HOST_SETTINGS_SETTINGS_JSON_H_
#define LUMVIK_HOST_SETTINGS_SETTINGS_JSON_H_

#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "base/failure.h"

namespace lumvik::host {

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

// Throws Failure, naming line and key, for invalid JSON, duplicate keys and very long ones.
LocatedJson ParseJson(const std::string& text);

// An error at a key: "line 3: hsl.red.hue: why".
Failure JsonFault(int line, const std::string& key, const std::string& why);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_SETTINGS_SETTINGS_JSON_H_
