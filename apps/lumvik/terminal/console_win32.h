// Console setup on Windows.
#ifndef LUMVIK_APPS_TERMINAL_CONSOLE_WIN32_H_
#define LUMVIK_APPS_TERMINAL_CONSOLE_WIN32_H_

namespace lumvik {

// For its lifetime, the console accepts UTF-8 and the escape sequences of the progress bar, and output is
// written unmodified: lines end in "\n", in files as well.
class Utf8Console {
 public:
  Utf8Console();
  ~Utf8Console();
  Utf8Console(const Utf8Console&) = delete;
  Utf8Console& operator=(const Utf8Console&) = delete;

 private:
  unsigned previous_code_page_;  // 0 without a console
};

}  // namespace lumvik

#endif  // LUMVIK_APPS_TERMINAL_CONSOLE_WIN32_H_
