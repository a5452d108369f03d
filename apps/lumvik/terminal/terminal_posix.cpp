#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

#include "terminal/terminal.h"

namespace lumvik {

std::optional<int> TerminalColumns() {
  constexpr int kUsualColumns = 80;
  if (isatty(STDERR_FILENO) == 0) return std::nullopt;
  const char* type =
      std::getenv("TERM");  // NOLINT(concurrency-mt-unsafe): the command does not set variables
  if (type == nullptr || *type == '\0' || type == std::string_view("dumb")) return std::nullopt;
  winsize size{};
  if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return kUsualColumns;
  return size.ws_col;
}

}  // namespace lumvik
