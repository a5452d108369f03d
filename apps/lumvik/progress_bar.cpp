#include "progress_bar.h"

#include <unistd.h>

#include <iostream>
#include <string>

namespace lumvik {
namespace {

constexpr std::size_t kWidth = 40;
constexpr std::chrono::milliseconds kBetweenDrawings(100);
constexpr char kWipe[] = "\r\x1B[K";

}  // namespace

ProgressBar::ProgressBar(std::size_t total) : total_(total), shown_(total > 0 && isatty(STDERR_FILENO) != 0) {
  if (shown_) Draw();
}

ProgressBar::~ProgressBar() {
  if (shown_) std::cerr << kWipe << std::flush;
}

void ProgressBar::Advance() {
  if (!shown_) return;
  const std::lock_guard lock(mutex_);
  ++done_;
  const auto now = std::chrono::steady_clock::now();
  if (done_ < total_ && now - drawn_ < kBetweenDrawings) return;
  drawn_ = now;
  Draw();
}

void ProgressBar::Draw() const {
  const std::size_t filled = kWidth * done_ / total_;
  std::cerr << kWipe << '[' << std::string(filled, '#') << std::string(kWidth - filled, '.') << "] " << done_
            << '/' << total_ << std::flush;
}

}  // namespace lumvik
