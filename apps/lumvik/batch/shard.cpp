#include "batch/shard.h"

#define XXH_INLINE_ALL
#include <xxhash.h>

#include <charconv>
#include <system_error>

namespace lumvik {
namespace {

constexpr unsigned kMaxShards = 10000;

// All of the text as a number; 0 if it is none.
unsigned NumberFrom(const char* first, const char* last) {
  unsigned number = 0;
  const auto [end, error] = std::from_chars(first, last, number);
  return error == std::errc() && end == last ? number : 0;
}

}  // namespace

std::optional<Shard> ShardFrom(const std::string& text) {
  const std::size_t slash = text.find('/');
  if (slash == std::string::npos) return std::nullopt;
  const char* const start = text.data();
  const Shard shard = {NumberFrom(start, start + slash), NumberFrom(start + slash + 1, start + text.size())};
  if (shard.index == 0 || shard.index > shard.count || shard.count > kMaxShards) return std::nullopt;
  return shard;
}

bool IsIn(const Shard& shard, const std::string& relative_path) {
  return XXH3_64bits(relative_path.data(), relative_path.size()) % shard.count + 1 == shard.index;
}

}  // namespace lumvik
