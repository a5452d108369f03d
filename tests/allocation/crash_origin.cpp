#include "allocation/crash_origin.h"

#include <execinfo.h>
#include <unistd.h>

#include <csignal>
#include <iostream>
#include <string>

#include "allocation/failing_malloc.h"

namespace lumvik::test {
namespace {

int library_code = 0;
int our_code = 0;

void HandleCrash(int /*signal*/) {
  void* frames[64];
  const int count = backtrace(frames, 64);
  const std::string program = ModuleOf(reinterpret_cast<const void*>(&HandleCrash));
  for (int i = 2; i < count; ++i) {  // skip this function and its caller
    const std::string module = ModuleOf(frames[i]);
    const auto is = [&module](const char* name) { return module.find(name) != std::string::npos; };
    if (is("/libc.so") || is("/libstdc++") || is("/libgcc_s")) continue;
    if (module == program) break;
    std::cerr << module.substr(module.rfind('/') + 1) << " crashes\n";
    _exit(library_code);
  }
  std::cerr << "our code crashes\n";
  _exit(our_code);
}

}  // namespace

void ExitOnCrash(int of_a_library, int of_our_code) {
  library_code = of_a_library;
  our_code = of_our_code;
  void* frame = nullptr;
  backtrace(&frame, 1);  // allocates the first time
  for (const int crash : {SIGSEGV, SIGABRT}) std::signal(crash, HandleCrash);
}

}  // namespace lumvik::test
