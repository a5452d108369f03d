// Texts that are safe to print.
#ifndef LUMVIK_APPS_TERMINAL_PRINTABLE_H_
#define LUMVIK_APPS_TERMINAL_PRINTABLE_H_

#include <string>

namespace lumvik {

// The text with its control characters escaped, as "\n" or "\x1B", and with those that reorder text. The name
// of a file may contain any of them: it must not end a line, nor steer the terminal.
std::string Printable(const std::string& text);

}  // namespace lumvik

#endif  // LUMVIK_APPS_TERMINAL_PRINTABLE_H_
