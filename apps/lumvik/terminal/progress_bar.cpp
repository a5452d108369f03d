#include "terminal/progress_bar.h"

#include <algorithm>
#include <iomanip>
#include <iostream>
#include <sstream>

#include "terminal/terminal.h"

namespace lumvik {
namespace {

constexpr std::size_t kMaxBarColumns = 40;
constexpr std::size_t kMinBarColumns = 10;
constexpr std::chrono::milliseconds kBetweenDrawings(100);
constexpr std::chrono::milliseconds kBetweenLines(10000);
constexpr char kWipe[] = "\r\x1B[K";

// "[####....] " as wide as fits beside `text`; "" where a bar would show nothing.
std::string BarOf(std::size_t done, std::size_t total, std::size_t columns, const std::string& text) {
  const std::size_t taken = text.size() + 4;  // brackets, a space, and the last column, which would wrap
  const std::size_t width = std::min(columns - std::min(columns, taken), kMaxBarColumns);
  if (width < kMinBarColumns) return "";
  const std::size_t filled = width * done / total;
  return '[' + std::string(filled, '#') + std::string(width - filled, '.') + "] ";
}

}  // namespace

ProgressBar::ProgressBar(std::size_t total, Elsewhere elsewhere)
    : total_(total),
      on_terminal_(TerminalColumns().has_value()),
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

std::string ProgressBar::Status() const {
  std::ostringstream text;
  text << done_ << '/' << total_;
  if (done_ > 0) {
    const double rate =
        static_cast<double>(done_) / std::chrono::duration<double>(Clock::now() - begun_).count();
    const auto left = static_cast<long>(static_cast<double>(total_ - done_) / rate);
    text << std::fixed << std::setprecision(1) << ", " << rate << "/s, " << left / 60 << ':' << std::setw(2)
         << std::setfill('0') << left % 60 << " left";
  }
  return text.str();
}

void ProgressBar::Draw() const {
  const std::string status = Status();
  if (!on_terminal_) {
    std::cerr << status << std::endl;
    return;
  }
  // The terminal may have been resized.
  const auto columns = static_cast<std::size_t>(TerminalColumns().value_or(0));
  const std::size_t room = columns - std::min<std::size_t>(columns, 1);
  std::cerr << kWipe << (BarOf(done_, total_, columns, status) + status).substr(0, room) << std::flush;
}

}  // namespace lumvik
