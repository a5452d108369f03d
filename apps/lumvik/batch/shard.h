// The share of a batch that one of several machines develops.
#ifndef LUMVIK_APPS_BATCH_SHARD_H_
#define LUMVIK_APPS_BATCH_SHARD_H_

#include <optional>
#include <string>

namespace lumvik {

struct Shard {
  unsigned index = 1;  // of `count`, from 1
  unsigned count = 1;
};

// From "2/5"; nothing for anything else.
std::optional<Shard> ShardFrom(const std::string& text);

// Whether a photograph with this path, relative to the folder given, belongs to the shard. The same on every
// machine.
bool IsIn(const Shard& shard, const std::string& relative_path);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_SHARD_H_
