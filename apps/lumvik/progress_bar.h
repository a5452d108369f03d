// How far a long piece of work has come, for someone who watches.
#ifndef LUMVIK_APPS_PROGRESS_BAR_H_
#define LUMVIK_APPS_PROGRESS_BAR_H_

#include <chrono>
#include <cstddef>
#include <mutex>

namespace lumvik {

// A line on standard error that is drawn over itself, and wiped out in the end. Nothing is drawn when
// standard error is not a terminal.
class ProgressBar {
 public:
  explicit ProgressBar(std::size_t total);
  ~ProgressBar();
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  // One more is done. Any thread may say so.
  void Advance();

 private:
  void Draw() const;

  const std::size_t total_;
  const bool shown_;
  std::mutex mutex_;
  std::size_t done_ = 0;
  std::chrono::steady_clock::time_point drawn_;
};

}  // namespace lumvik

#endif  // LUMVIK_APPS_PROGRESS_BAR_H_
