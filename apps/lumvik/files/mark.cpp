#include "files/mark.h"

#include <cinttypes>
#include <cstdio>
#include <iomanip>
#include <sstream>

#include "lumvik_host.hpp"

namespace lumvik {

std::string TextOf(const Mark& mark) {
  std::ostringstream text;
  text << "lumvik source=" << std::hex << std::setfill('0') << std::setw(16) << mark.source
       << " settings=" << std::setw(16) << mark.settings;
  return text.str();
}

std::optional<Mark> ReadMark(const std::string& path) {
  const std::optional<std::string> text = api::ReadMark(path);
  if (!text) return std::nullopt;
  Mark mark;
  // NOLINTNEXTLINE(cert-err34-c): comparing with the text that the numbers give finds every error
  std::sscanf(text->c_str(), "lumvik source=%" SCNx64 " settings=%" SCNx64, &mark.source, &mark.settings);
  if (TextOf(mark) != *text) return std::nullopt;
  return mark;
}

}  // namespace lumvik
