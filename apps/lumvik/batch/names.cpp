#include "batch/names.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>

namespace lumvik {
namespace {

namespace fs = std::filesystem;

// The value of a field by name; none for an unknown field.
using Values = std::function<std::optional<std::string>(const std::string& field)>;

// The pattern with its fields replaced; none for an unknown field or an unmatched brace.
std::optional<std::string> Replaced(const std::string& pattern, const Values& value_of) {
  std::string name;
  std::size_t position = 0;
  while (position < pattern.size()) {
    const std::size_t open = std::min(pattern.find_first_of("{}", position), pattern.size());
    name += pattern.substr(position, open - position);
    if (open == pattern.size()) break;
    const std::size_t close = pattern.find('}', open);
    if (pattern[open] == '}' || close == std::string::npos) return std::nullopt;
    const std::optional<std::string> value = value_of(pattern.substr(open + 1, close - open - 1));
    if (!value) return std::nullopt;
    name += *value;
    position = close + 1;
  }
  return name;
}

std::string Padded(std::size_t number, std::size_t width) {
  const std::string digits = std::to_string(number);
  return std::string(width - std::min(width, digits.size()), '0') + digits;
}

Values ValuesFor(const BatchInput& photograph, const std::string& number, lumvik_host_format format) {
  return [=](const std::string& field) -> std::optional<std::string> {
    if (field == "stem") return fs::path(photograph.path).stem().string();
    if (field == "n") return number;
    if (field == "ext") return api::ExtensionOf(format).substr(1);  // without the dot
    if (field == "folder") return photograph.folder;
    return std::nullopt;
  };
}

bool LeavesFolder(const fs::path& name) {
  return name.is_absolute() || std::find(name.begin(), name.end(), "..") != name.end();
}

}  // namespace

std::string NamePatternFault(const std::string& pattern, lumvik_host_format format) {
  const std::string shown = "'" + pattern + "'";
  const std::optional<std::string> example = Replaced(pattern, ValuesFor({"stem", "folder"}, "1", format));
  if (!example) return shown + " has a brace that is not part of {stem}, {n}, {ext} or {folder}";
  if (LeavesFolder(*example)) return shown + " leads out of the output folder";
  if (api::FormatOf(*example) != format)
    return shown + " does not end in an extension of the format, such as .{ext}";
  return {};
}

std::vector<std::string> NamesByPattern(const std::string& pattern,
                                        const std::vector<BatchInput>& photographs,
                                        lumvik_host_format format) {
  const std::size_t width = std::to_string(photographs.size()).size();
  std::vector<std::string> names;
  names.reserve(photographs.size());
  for (const BatchInput& photograph : photographs) {
    const std::string number = Padded(names.size() + 1, width);
    const fs::path name = *Replaced(pattern, ValuesFor(photograph, number, format));
    // {folder} is empty for the root folder, which leaves a leading slash.
    names.push_back(name.relative_path().lexically_normal().string());
  }
  return names;
}

}  // namespace lumvik
