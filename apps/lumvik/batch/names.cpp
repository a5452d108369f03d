#include "batch/names.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>

namespace lumvik {
namespace {

namespace fs = std::filesystem;

constexpr char kFields[] = "{stem}, {n}, {ext}, {folder}, {source_ext}, {date}, {time}, {camera} or {lens}";

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

Values ValuesFor(const NameFields& fields, const std::string& number, lumvik_host_format format) {
  return [=](const std::string& field) -> std::optional<std::string> {
    if (field == "stem") return fields.stem;
    if (field == "n") return number;
    if (field == "ext") return api::ExtensionOf(format).substr(1);  // without the dot
    if (field == "folder") return fields.folder;
    if (field == "source_ext") return fields.source_ext;
    if (field == "date") return fields.shot.date;
    if (field == "time") return fields.shot.time;
    if (field == "camera") return fields.shot.camera;
    if (field == "lens") return fields.shot.lens;
    return std::nullopt;
  };
}

bool LeavesFolder(const fs::path& name) {
  return name.is_absolute() || std::find(name.begin(), name.end(), "..") != name.end();
}

}  // namespace

NameFields FieldsOf(const BatchInput& photograph, const ShotFields& shot) {
  const fs::path path = photograph.path;
  const std::string extension = path.extension().string();
  return {path.stem().string(), photograph.folder,
          extension.empty() ? kUnknownField : SafeInFileName(extension.substr(1)), shot};
}

std::string NamePatternFault(const NamePattern& pattern) {
  const std::string shown = "'" + pattern.text + "'";
  const std::optional<std::string> example =
      Replaced(pattern.text, ValuesFor({"stem", "folder", "raw", {}}, "1", pattern.format));
  if (!example) return shown + " has a brace that is not part of " + kFields;
  if (LeavesFolder(*example)) return shown + " leads out of the output folder";
  if (api::FormatOf(*example) != pattern.format)
    return shown + " does not end in an extension of the format, such as .{ext}";
  return {};
}

bool UsesAny(const NamePattern& pattern, const std::vector<std::string>& fields) {
  return std::any_of(fields.begin(), fields.end(), [&](const std::string& field) {
    return pattern.text.find('{' + field + '}') != std::string::npos;
  });
}

std::string NameOf(const NamePattern& pattern, const NameFields& fields, const std::string& number) {
  const fs::path name = *Replaced(pattern.text, ValuesFor(fields, number, pattern.format));
  // {folder} is empty for the root folder, which leaves a leading slash.
  return name.relative_path().lexically_normal().string();
}

}  // namespace lumvik
