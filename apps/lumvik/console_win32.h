// What a console of Windows has to be told before it shows what the command writes.
#ifndef LUMVIK_APPS_CONSOLE_WIN32_H_
#define LUMVIK_APPS_CONSOLE_WIN32_H_

namespace lumvik {

// As long as it lives, the console takes UTF-8 and the control sequences of the progress bar. What is written
// stays as it is, in a file as well: lines end in "\n".
class Utf8Console {
 public:
  Utf8Console();
  ~Utf8Console();
  Utf8Console(const Utf8Console&) = delete;
  Utf8Console& operator=(const Utf8Console&) = delete;

 private:
  unsigned previous_code_page_;  // of the console, which outlives the command; 0 without a console
};

}  // namespace lumvik

#endif  // LUMVIK_APPS_CONSOLE_WIN32_H_
