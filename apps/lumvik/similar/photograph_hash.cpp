#include "similar/photograph_hash.h"

#include <iomanip>
#include <sstream>

#include "files/file_paths.h"
#include "lumvik_host.hpp"

namespace lumvik {

std::uint64_t HashOf(const std::string& path) {
  RequireReadable(path);
  return api::Hash(path);
}

std::string HexOf(std::uint64_t hash) {
  std::ostringstream text;
  text << std::hex << std::setw(16) << std::setfill('0') << hash;
  return text.str();
}

}  // namespace lumvik
