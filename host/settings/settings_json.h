// JSON of a settings file, with the line of each key.
#ifndef LUMVIK_HOST_SETTINGS_SETTINGS_JSON_H_
#define LUMVIK_HOST_SETTINGS_SETTINGS_JSON_H_

#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "base/failure.h"

namespace lumvik::host {

// Numbers are floats, as in the engine.
using Json =
    nlohmann::basic_json<std::map, std::vector, std::string, bool, std::int64_t, std::uint64_t, float>;

// A value of a settings file. Destroying one allocates nothing, unlike one of the library.
struct JsonValue {
  enum class Kind { kOther, kFlag, kInteger, kFloat, kList, kObject };

  Kind kind = Kind::kOther;
  std::string text;                                        // as JSON, of what is neither list nor object
  float number = 0;                                        // of kFlag, kInteger and kFloat
  std::vector<std::pair<std::string, JsonValue>> members;  // of kObject, and of kList without keys

  // Moved, never copied.
  JsonValue() = default;
  JsonValue(Kind its_kind, std::string its_text, float its_number)
      : kind(its_kind), text(std::move(its_text)), number(its_number) {}
  JsonValue(JsonValue&&) = default;
  JsonValue& operator=(JsonValue&&) = default;
  JsonValue(const JsonValue&) = delete;
  JsonValue& operator=(const JsonValue&) = delete;
  ~JsonValue() = default;

  bool IsNumber() const { return kind == Kind::kInteger || kind == Kind::kFloat; }
};

// "hsl" and "red" make "hsl.red"; `parent` may be empty.
std::string JoinKeys(const std::string& parent, const std::string& key);

struct LocatedJson {
  JsonValue root;
  std::map<std::string, int> lines;  // by joined key, counted from 1
};

// Throws Failure, naming line and key, for invalid JSON, duplicate keys and very long ones. Values nested
// deeper than any setting are checked but left out.
LocatedJson ParseJson(const std::string& text);

// An error at a key: "line 3: hsl.red.hue: why".
Failure JsonFault(int line, const std::string& key, const std::string& why);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_SETTINGS_SETTINGS_JSON_H_
