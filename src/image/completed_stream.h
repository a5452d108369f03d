// A LibRaw stream that leaves no memory unset.
#ifndef LUMVIK_IMAGE_COMPLETED_STREAM_H_
#define LUMVIK_IMAGE_COMPLETED_STREAM_H_

#include <libraw/libraw.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <utility>

#include "image/raw_file.h"

namespace lumvik {

// LibRaw often ignores how much a read delivered, and would go on with whatever its buffer held before.
template <typename Stream>
class CompletedStream final : public Stream {
 public:
  template <typename Character>
  CompletedStream(const Character* path, RawFileHooks hooks) : Stream(path), hooks_(std::move(hooks)) {}

  // Bytes beyond the end of the file are zero. The return value still counts the complete items of the file.
  int read(void* items, size_t size, size_t count) override {
    auto* const bytes = static_cast<uint8_t*>(items);
    const size_t wanted = size * count;
    const int delivered = Stream::read(bytes, 1, std::min(wanted, kMaxRead));
    const auto present = static_cast<size_t>(std::max(delivered, 0));
    std::memset(bytes + present, wanted <= kMaxInteger ? kMissingInteger : 0, wanted - present);
    hooks_.after_read(bytes, wanted);
    return static_cast<int>(present / std::max(size, size_t{1}));
  }

  int scanf_one(const char* format, void* number) override {
    const int converted = Stream::scanf_one(format, number);
    if (converted != 1) std::memset(number, 0, sizeof(int));  // or of a float
    return converted;
  }

  int seek(INT64 offset, int whence) override {
    hooks_.before_seek();
    return Stream::seek(offset, whence);
  }

 private:
  static constexpr size_t kMaxRead = std::numeric_limits<int>::max();
  // LibRaw presets its integers to all ones and relies on finding them so at the end of a file.
  static constexpr size_t kMaxInteger = 4;
  static constexpr int kMissingInteger = 0xFF;

  RawFileHooks hooks_;
};

// The kind of stream that LibRaw would choose for a file of `bytes` bytes; null if the file cannot be opened.
template <typename Character>
std::unique_ptr<LibRaw_abstract_datastream> OpenCompletedStream(const Character* path, uintmax_t bytes,
                                                                RawFileHooks hooks) {
  std::unique_ptr<LibRaw_abstract_datastream> stream;
  if (bytes > LIBRAW_USE_STREAMS_DATASTREAM_MAXSIZE) {
    stream = std::make_unique<CompletedStream<LibRaw_bigfile_datastream>>(path, std::move(hooks));
  } else {
    stream = std::make_unique<CompletedStream<LibRaw_file_datastream>>(path, std::move(hooks));
  }
  if (stream->valid() == 0) return nullptr;
  return stream;
}

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_COMPLETED_STREAM_H_
