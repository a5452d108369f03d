#include <fcntl.h>
#include <io.h>

#include "terminal/standard_streams.h"

namespace lumvik {

bool IsTerminal(std::FILE* stream) {
  return _isatty(_fileno(stream)) != 0;
}

void PrepareForBytes(std::FILE* stream) {
  _setmode(_fileno(stream), _O_BINARY);
}

}  // namespace lumvik
