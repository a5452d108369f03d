#include "batch/listed_files.h"

#include <fstream>
#include <iostream>
#include <sstream>

#include "files/file_paths.h"
#include "terminal/standard_streams.h"

namespace lumvik {
namespace {

std::string ContentsOf(std::istream& stream) {
  std::ostringstream text;
  text << stream.rdbuf();
  return text.str();
}

}  // namespace

std::vector<std::string> NamesInList(const std::string& text) {
  const char separator = text.find('\0') == std::string::npos ? '\n' : '\0';
  std::vector<std::string> names;
  std::istringstream parts(text);
  for (std::string name; std::getline(parts, name, separator);) {
    if (separator == '\n' && !name.empty() && name.back() == '\r') name.pop_back();
    if (!name.empty()) names.push_back(name);
  }
  return names;
}

std::vector<std::string> ListedFiles(const std::string& list) {
  if (IsStandardStream(list)) return NamesInList(ContentsOf(std::cin));
  RequireReadable(list);
  std::ifstream file(list, std::ios::binary);
  return NamesInList(ContentsOf(file));
}

}  // namespace lumvik
