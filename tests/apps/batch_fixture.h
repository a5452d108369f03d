// What the tests of `lumvik batch` share: a folder of photographs, and the command over it.
#ifndef LUMVIK_TESTS_APPS_BATCH_FIXTURE_H_
#define LUMVIK_TESTS_APPS_BATCH_FIXTURE_H_

#include <sys/types.h>

#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

#include "command_test.h"

namespace lumvik::test {

inline constexpr int kPhotographs = 30;
inline constexpr int kBroken = 3;

class BatchTest : public CommandTest {
 protected:
  BatchTest();

  std::string In() const { return Path("photos"); }
  std::string In(const std::string& name) const { return In() + "/" + name; }
  std::string Out() const { return Path("developed"); }
  std::string Out(const std::string& name) const { return Out() + "/" + name; }

  // The arguments that develop In() into Out() with these options; for RunProcess and RunningProcess.
  std::vector<std::string> BatchCommand(const std::vector<std::string>& options = {},
                                        std::vector<std::string> prefix = Command()) const;
  ProcessResult Batch(const std::vector<std::string>& options = {},
                      const std::vector<std::string>& prefix = Command()) const;

  // As many as kPhotographs say, RAW files and others with all kinds of names; kBroken of them are none.
  void WritePhotographs() const;

  // One that takes a second or more.
  std::string SlowPhotograph(const std::string& name) const;

  // The files in Out() by their paths there, without what is hidden.
  std::set<std::string> Outputs() const;

  // Waits for the process that `parent` has started to develop `photograph`.
  static pid_t AwaitWorker(pid_t parent, const std::string& photograph);

  // Waits until no process has to do with the photographs any more.
  void ExpectNoProcessLeft() const;

  // Expects that each of the outputs is complete.
  void ExpectWholeOutputs() const;
};

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_APPS_BATCH_FIXTURE_H_
