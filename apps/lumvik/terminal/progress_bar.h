// Progress display for long operations.
#ifndef LUMVIK_APPS_TERMINAL_PROGRESS_BAR_H_
#define LUMVIK_APPS_TERMINAL_PROGRESS_BAR_H_

#include <chrono>
#include <cstddef>
#include <mutex>
#include <string>

namespace lumvik {

// A status line on standard error that is redrawn in place, as wide as the terminal allows, and erased in the
// end. When standard error is not a terminal, or a dumb one, prints nothing, or a plain line from time to
// time.
class ProgressBar {
 public:
  enum class Elsewhere { kNothing, kPlainLines };

  explicit ProgressBar(std::size_t total, Elsewhere elsewhere = Elsewhere::kNothing);
  ~ProgressBar() { Wipe(); }
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  // Counts one more item as done. Thread-safe.
  void Advance();

  // Erases the line, so that others can be printed; the next Advance redraws it.
  void Wipe();

 private:
  using Clock = std::chrono::steady_clock;

  std::string Status() const;  // "12/30, 1.5/s, 0:12 left"
  void Draw() const;

  const std::size_t total_;
  const bool on_terminal_;
  const bool shown_;
  const Clock::time_point begun_ = Clock::now();
  std::mutex mutex_;
  std::size_t done_ = 0;
  Clock::time_point drawn_ = begun_;
};

}  // namespace lumvik

#endif  // LUMVIK_APPS_TERMINAL_PROGRESS_BAR_H_
