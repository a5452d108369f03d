// Fixture for `lumvik batch`: a folder of photographs and the command on it.
#ifndef LUMVIK_TESTS_APPS_BATCH_FIXTURE_H_
#define LUMVIK_TESTS_APPS_BATCH_FIXTURE_H_

#include <sys/types.h>

#include <functional>
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

  // Writes kPhotographs RAW files and ordinary images with unusual names; kBroken of them are invalid.
  void WritePhotographs() const;

  // A photograph that takes a second or more to develop.
  std::string SlowPhotograph(const std::string& name) const;

  // Waits until the condition holds.
  static void Await(const std::function<bool()>& condition);

  // The paths of the files in Out(), relative to it, without hidden ones.
  std::set<std::string> Outputs() const;

  // Waits for the child of `parent` that develops `photograph`.
  static pid_t AwaitWorker(pid_t parent, const std::string& photograph);

  // Waits until no process with the photographs in its arguments is left.
  void ExpectNoProcessLeft() const;

  // Expects every output to be complete.
  void ExpectWholeOutputs() const;
};

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_APPS_BATCH_FIXTURE_H_
