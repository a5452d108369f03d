// Forked child processes cannot use the handles of their parent but can open theirs.
#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "api/arguments.h"
#include "api/guard.h"
#include "api/registry.h"
#include "host/api/child_process.h"
#include "lumvik_host.h"

namespace lumvik::host::test {
namespace {

constexpr int kForks = 200;

HandleValue OpenNumber(int number) {
  return OpenHandle(HandleKind::kSettings, std::make_shared<int>(number));
}

Status FindStatus(HandleValue handle) {
  return Guarded([&] { FindHandle(HandleKind::kSettings, handle); });
}

Status CloseStatus(HandleValue handle) {
  return Guarded([&] { CloseHandle(HandleKind::kSettings, handle); });
}

// Uses all of the registry: handles of the parent and of this process, and lent memory.
bool ChildIsServed(HandleValue of_parent) {
  if (FindStatus(of_parent) != LUMVIK_HOST_FORKED || CloseStatus(of_parent) != LUMVIK_HOST_FORKED) {
    return false;
  }
  if (std::strstr(lumvik_host_last_error(), "parent") == nullptr) return false;
  const HandleValue opened = OpenNumber(2);
  char* const text = LendText("text");
  const bool served = opened != of_parent && std::strcmp(text, "text") == 0 &&
                      FindStatus(opened) == LUMVIK_HOST_OK && CloseStatus(opened) == LUMVIK_HOST_OK &&
                      FindStatus(opened) == LUMVIK_HOST_INVALID_HANDLE;
  lumvik_host_free(text);
  return served;
}

TEST(ForkTest, HandlesOfTheParentAreForked) {
  const HandleValue handle = OpenNumber(1);
  EXPECT_EQ(ExitCodeOfChild([&] { return ChildIsServed(handle) ? 0 : 1; }), 0);
  EXPECT_EQ(FindStatus(handle), LUMVIK_HOST_OK);
  EXPECT_EQ(CloseStatus(handle), LUMVIK_HOST_OK);
}

TEST(ForkTest, AHandleClosedBeforeTheForkIsInvalid) {
  const HandleValue handle = OpenNumber(1);
  CloseStatus(handle);
  EXPECT_EQ(ExitCodeOfChild([&] { return FindStatus(handle) == LUMVIK_HOST_INVALID_HANDLE ? 0 : 1; }), 0);
}

TEST(ForkTest, AGrandchildHasNoHandlesOfEither) {
  const HandleValue of_parent = OpenNumber(1);
  EXPECT_EQ(
      ExitCodeOfChild([&] {
        const HandleValue of_child = OpenNumber(2);
        return ExitCodeOfChild([&] { return ChildIsServed(of_parent) && ChildIsServed(of_child) ? 0 : 1; });
      }),
      0);
  CloseStatus(of_parent);
}

TEST(ForkTest, AChildReleasesTextsOfItsParent) {
  char* const text = LendText("text");
  EXPECT_EQ(ExitCodeOfChild([&] {
              lumvik_host_free(text);
              return 0;
            }),
            0);
  EXPECT_STREQ(text, "text");
  lumvik_host_free(text);
}

TEST(ForkTest, ForksWhileOtherThreadsUseTheRegistry) {
  std::atomic<bool> stop{false};
  std::vector<std::thread> threads;
  for (int i = 0; i < 3; ++i) {
    threads.emplace_back([&stop] {
      while (!stop) {
        CloseStatus(OpenNumber(1));
        lumvik_host_free(LendText("text"));
        FindStatus(1);
      }
    });
  }
  const HandleValue handle = OpenNumber(1);
  int served = 0;
  while (served < kForks && ExitCodeOfChild([&] { return ChildIsServed(handle) ? 0 : 1; }) == 0) ++served;
  EXPECT_EQ(served, kForks);
  stop = true;
  for (std::thread& thread : threads) thread.join();
  CloseStatus(handle);
}

}  // namespace
}  // namespace lumvik::host::test
