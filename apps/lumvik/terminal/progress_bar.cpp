#include "terminal/progress_bar.h"

#include <unistd.h>

#include <iomanip>
#include <iostream>
#include <sstream>

namespace lumvik {
namespace {

constexpr std::size_t kColumns = 40;
constexpr std::chrono::milliseconds kBetweenDrawings(100);
constexpr std::chrono::milliseconds kBetweenLines(10000);
constexpr char kWipe[] = "\r\x1B[K";

}  // namespace

ProgressBar::ProgressBar(std::size_t total, Elsewhere elsewhere)
    : total_(total),
      on_terminal_(isatty(STDERR_FILENO) != 0),
      shown_(total > 0 && (on_terminal_ || elsewhere == Elsewhere::kPlainLines)) {
  if (on_terminal_ && shown_) Draw();
}

void ProgressBar::Advance() {
  if (!shown_) return;
  const std::lock_guard lock(mutex_);
  ++done_;
  const auto now = Clock::now();
  if (done_ < total_ && now - drawn_ < (on_terminal_ ? kBetweenDrawings : kBetweenLines)) return;
  drawn_ = now;
  Draw();
}

void ProgressBar::Wipe() {
  if (!on_terminal_ || !shown_) return;
  std::cerr << kWipe << std::flush;
  drawn_ = {};
}

void ProgressBar::Draw() const {
  std::ostringstream line;
  const std::size_t filled = kColumns * done_ / total_;
  if (on_terminal_)
    line << kWipe << '[' << std::string(filled, '#') << std::string(kColumns - filled, '.') << "] ";
  line << done_ << '/' << total_;
  if (done_ > 0) {
    const double rate =
        static_cast<double>(done_) / std::chrono::duration<double>(Clock::now() - begun_).count();
    const auto left = static_cast<long>(static_cast<double>(total_ - done_) / rate);
    line << std::fixed << std::setprecision(1) << ", " << rate << "/s, " << left / 60 << ':' << std::setw(2)
         << std::setfill('0') << left % 60 << " left";
  }
  std::cerr << line.str() << (on_terminal_ ? "" : "\n") << std::flush;
}

}  // namespace lumvik
