// Lets the tests find the module: they contain the library, and their folder is not that of the library.
#include <gtest/gtest.h>

#include <cstdlib>

namespace lumvik::host::test {
namespace {

class ModuleFolder : public ::testing::Environment {
 public:
  // A folder that was named explicitly is used instead.
  void SetUp() override {
    if (std::getenv("LUMVIK_MODULES") != nullptr) return;
#if defined(_WIN32)
    _putenv_s("LUMVIK_MODULES", LUMVIK_MODULE_FOLDER);
#else
    setenv("LUMVIK_MODULES", LUMVIK_MODULE_FOLDER, 1);
#endif
  }
};
[[maybe_unused]] const ::testing::Environment* const kModuleFolder =
    ::testing::AddGlobalTestEnvironment(new ModuleFolder());

}  // namespace
}  // namespace lumvik::host::test
