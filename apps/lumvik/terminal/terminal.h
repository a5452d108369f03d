// The terminal of standard error.
#ifndef LUMVIK_APPS_TERMINAL_TERMINAL_H_
#define LUMVIK_APPS_TERMINAL_TERMINAL_H_

#include <optional>

namespace lumvik {

// The columns of the terminal that standard error is, 80 if it does not say; none if it is not a terminal, or
// one that cannot redraw a line.
std::optional<int> TerminalColumns();

}  // namespace lumvik

#endif  // LUMVIK_APPS_TERMINAL_TERMINAL_H_
