#include <unistd.h>

#include <csignal>

#include "terminal/standard_streams.h"

namespace lumvik {

bool IsTerminal(std::FILE* stream) {
  return isatty(fileno(stream)) != 0;
}

void PrepareForBytes(std::FILE* /*stream*/) {
  std::signal(SIGPIPE, SIG_IGN);
}

}  // namespace lumvik
