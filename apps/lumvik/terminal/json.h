// JSON for standard output.
#ifndef LUMVIK_APPS_TERMINAL_JSON_H_
#define LUMVIK_APPS_TERMINAL_JSON_H_

#include <cstdint>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace lumvik {

// Keys keep their order. Numbers are floats, as the settings are, and are written with the fewest digits that
// round-trip.
using Json = nlohmann::basic_json<nlohmann::ordered_map, std::vector, std::string, bool, std::int64_t,
                                  std::uint64_t, float>;

// Prints `json`, which may have other numbers, on indented lines. File names need not be valid UTF-8, but
// JSON must.
template <typename AnyJson>
void PrintIndented(const AnyJson& json) {
  std::cout << json.dump(2, ' ', false, AnyJson::error_handler_t::replace) << '\n';
}

}  // namespace lumvik

#endif  // LUMVIK_APPS_TERMINAL_JSON_H_
