// Renders in memory.
#ifndef LUMVIK_HOST_PHOTO_FRAME_H_
#define LUMVIK_HOST_PHOTO_FRAME_H_

#include <cstddef>
#include <cstdint>
#include <memory>

namespace lumvik::host {

// Width x height pixels of RGBA, rows from top to bottom without padding.
struct Frame {
  int width = 0;
  int height = 0;
  std::size_t capacity = 0;                // bytes
  std::unique_ptr<std::uint8_t[]> pixels;  // uninitialized: zeroing takes as long as copying
};

inline constexpr int kFrameChannels = 4;

// Uses the memory of a released frame again: the first access to new memory is slow.
class FrameMemory {
 public:
  // A frame with room for `bytes`. Several may exist at a time and be released by any thread.
  std::shared_ptr<Frame> Take(std::size_t bytes);

 private:
  struct Spare;
  std::shared_ptr<Spare> spare_;
};

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_PHOTO_FRAME_H_
