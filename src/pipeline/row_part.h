// Parts of rows, and what reads, changes and stores them.
#ifndef LUMVIK_PIPELINE_ROW_PART_H_
#define LUMVIK_PIPELINE_ROW_PART_H_

#include <functional>
#include <opencv2/core.hpp>

namespace lumvik {

inline constexpr int kChannels = 4;  // red, green, blue, alpha
inline constexpr int kColorChannels = 3;

// Columns per part: the floats of one part stay in L1.
inline constexpr int kMaxPart = 1024;

// The number of columns of a part, 1..kMaxPart. Kernels keep arrays of kMaxPart values on the stack.
class PartColumns {
 public:
  explicit PartColumns(int count) : count_(count) { CV_Assert(count > 0 && count <= kMaxPart); }
  operator int() const { return count_; }  // NOLINT(google-explicit-constructor): it is a count

 private:
  int count_;
};

// A part of one row of the working image: `columns` values per channel, 0..1 for black to full scale. Alpha
// is carried along; no stage changes it.
struct RowPart {
  float* __restrict red;
  float* __restrict green;
  float* __restrict blue;
  float* __restrict alpha;
  PartColumns columns;
  int x;  // of the first column in the frame
  int y;
  int next_y = y + 1;  // where this strip of columns is read next
};

// The sources, transforms and sinks below are called from several threads at once.

// An image that may be computed while it is read: `read` fills in the pixels of a part, parts in any order.
struct RowSource {
  cv::Size size;
  std::function<void(const RowPart&)> read;
  bool is_sampled = false;  // a row is made from several rows of another image
};

// Changes the pixels of a part in place; each depends on itself and its position alone.
struct RowTransform {
  std::function<void(const RowPart&)> apply;  // empty for the identity

  bool IsIdentity() const { return !apply; }
};

// Another frame on the same pixels: those of `area`, then mirrored.
struct FrameView {
  cv::Rect area;
  bool flip_h = false;
  bool flip_v = false;
};

// Stores the pixels of a part, or something made of them.
struct RowSink {
  std::function<void(const RowPart&)> store;
};

// Columns first..last - 1 of a frame.
struct Columns {
  int first;
  int last;

  int Count() const { return last - first; }
};

// Calls `use(x, part_columns)` for the parts that make up `columns`.
template <typename Use>
void ForEachPart(Columns columns, const Use& use) {
  for (int x = columns.first; x < columns.last; x += kMaxPart) {
    use(x, PartColumns(columns.last - x < kMaxPart ? columns.last - x : kMaxPart));
  }
}

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_ROW_PART_H_
