#include <windows.h>

#include "terminal/terminal.h"

namespace lumvik {

std::optional<int> TerminalColumns() {
  CONSOLE_SCREEN_BUFFER_INFO info{};
  if (GetConsoleScreenBufferInfo(GetStdHandle(STD_ERROR_HANDLE), &info) == 0) return std::nullopt;
  return info.srWindow.Right - info.srWindow.Left + 1;
}

}  // namespace lumvik
