// JSON as it stands in a settings file, with the lines of its keys.
#ifndef LUMVIK_APPS_SETTINGS_JSON_H_
#define LUMVIK_APPS_SETTINGS_JSON_H_

#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

namespace lumvik {

// Keys keep their order. Numbers are floats, as they are in the engine, and so are written with just the
// digits that bring back the same float.
using Json = nlohmann::basic_json<nlohmann::ordered_map, std::vector, std::string, bool, std::int64_t,
                                  std::uint64_t, float>;

// "hsl" and "red" make "hsl.red"; `parent` may be empty.
std::string JoinKeys(const std::string& parent, const std::string& key);

// NOLINTNEXTLINE(bugprone-exception-escape): what Json could throw when it is moved is a check of itself
struct LocatedJson {
  Json root;
  std::map<std::string, int> lines;  // by joined key, counted from 1
};

// Throws std::runtime_error, which names line and key, for text that is not JSON and for a key that an object
// holds twice.
LocatedJson ParseJson(const std::string& text);

// What is wrong with the value of a key: "line 3: hsl.red.hue: why".
std::runtime_error JsonFault(int line, const std::string& key, const std::string& why);

}  // namespace lumvik

#endif  // LUMVIK_APPS_SETTINGS_JSON_H_
