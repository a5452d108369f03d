#include "terminal/console_win32.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cstdio>

namespace lumvik {

Utf8Console::Utf8Console() : previous_code_page_(GetConsoleOutputCP()) {
  SetConsoleOutputCP(CP_UTF8);
  const HANDLE console = GetStdHandle(STD_ERROR_HANDLE);
  DWORD mode = 0;
  if (GetConsoleMode(console, &mode) != 0) SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
}

Utf8Console::~Utf8Console() {
  if (previous_code_page_ != 0) SetConsoleOutputCP(previous_code_page_);
}

}  // namespace lumvik
