// Handles and lent memory.
#include "api/registry.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "base/failure.h"
#include "lumvik_host.h"

namespace lumvik::host::test {
namespace {

template <typename Call>
Status RegistryStatus(const Call& call) {
  try {
    call();
    return LUMVIK_HOST_OK;
  } catch (const Failure& failure) {
    return failure.GetStatus();
  }
}

Status StatusOfFind(HandleKind kind, HandleValue handle) {
  return RegistryStatus([&] { FindHandle(kind, handle); });
}

TEST(RegistryTest, FindsTheObjectOfAHandle) {
  const auto object = std::make_shared<int>(7);
  const HandleValue handle = OpenHandle(HandleKind::kPhoto, object);
  EXPECT_EQ(FindHandle(HandleKind::kPhoto, handle), object);
  EXPECT_EQ(CloseHandle(HandleKind::kPhoto, handle), object);
  EXPECT_EQ(object.use_count(), 1);
}

TEST(RegistryTest, ClosedHandlesAreInvalid) {
  const HandleValue handle = OpenHandle(HandleKind::kSettings, std::make_shared<int>());
  CloseHandle(HandleKind::kSettings, handle);
  EXPECT_EQ(StatusOfFind(HandleKind::kSettings, handle), LUMVIK_HOST_INVALID_HANDLE);
  EXPECT_EQ(RegistryStatus([&] { CloseHandle(HandleKind::kSettings, handle); }), LUMVIK_HOST_INVALID_HANDLE);
}

TEST(RegistryTest, HandlesOfAnotherKindAreInvalid) {
  const HandleValue handle = OpenHandle(HandleKind::kSettings, std::make_shared<int>());
  EXPECT_EQ(StatusOfFind(HandleKind::kPhoto, handle), LUMVIK_HOST_INVALID_HANDLE);
  EXPECT_EQ(RegistryStatus([&] { CloseHandle(HandleKind::kPhoto, handle); }), LUMVIK_HOST_INVALID_HANDLE);
  EXPECT_EQ(StatusOfFind(HandleKind::kSettings, handle), LUMVIK_HOST_OK);
  CloseHandle(HandleKind::kSettings, handle);
}

TEST(RegistryTest, ForgedHandlesAreInvalid) {
  const HandleValue handle = OpenHandle(HandleKind::kPhoto, std::make_shared<int>());
  int local = 0;
  for (const HandleValue forged :
       {HandleValue{0}, HandleValue{1}, handle + 1, handle - 1, handle + 16, ~handle,
        reinterpret_cast<HandleValue>(&local), std::numeric_limits<HandleValue>::max()}) {
    EXPECT_EQ(StatusOfFind(HandleKind::kPhoto, forged), LUMVIK_HOST_INVALID_HANDLE) << forged;
  }
  CloseHandle(HandleKind::kPhoto, handle);
}

TEST(RegistryTest, NeverGivesAHandleTwice) {
  std::set<HandleValue> handles;
  constexpr std::size_t kOpened = 1000;
  for (std::size_t i = 0; i < kOpened; ++i) {
    const HandleValue handle = OpenHandle(HandleKind::kPhoto, std::make_shared<int>());
    handles.insert(handle);
    CloseHandle(HandleKind::kPhoto, handle);
  }
  EXPECT_EQ(handles.size(), kOpened);
}

TEST(RegistryTest, AFoundObjectOutlivesItsHandle) {
  const HandleValue handle = OpenHandle(HandleKind::kPhoto, std::make_shared<std::string>("photo"));
  const auto found = std::static_pointer_cast<std::string>(FindHandle(HandleKind::kPhoto, handle));
  CloseHandle(HandleKind::kPhoto, handle);
  EXPECT_EQ(*found, "photo");
}

TEST(RegistryTest, ThreadsOpenFindAndCloseAtOnce) {
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([thread] {
      for (int i = 0; i < 500; ++i) {
        const HandleValue handle = OpenHandle(HandleKind::kPhoto, std::make_shared<int>(thread));
        EXPECT_EQ(*std::static_pointer_cast<int>(FindHandle(HandleKind::kPhoto, handle)), thread);
        CloseHandle(HandleKind::kPhoto, handle);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

TEST(RegistryTest, LendsACopyUntilItIsTakenBack) {
  std::string text = "lent";
  auto* const lent = static_cast<char*>(Lend(text.data(), text.size() + 1));
  text.assign("else");
  EXPECT_STREQ(lent, "lent");
  lumvik_host_free(lent);
  lumvik_host_free(lent);  // the second time it is ignored
}

TEST(RegistryTest, LendsNothing) {
  void* const lent = Lend(nullptr, 0);
  EXPECT_NE(lent, nullptr);
  lumvik_host_free(lent);
}

TEST(RegistryTest, FreeIgnoresAddressesInsideLentMemory) {
  auto* const lent = static_cast<char*>(Lend("lent", 5));
  lumvik_host_free(lent + 1);
  EXPECT_STREQ(lent, "lent");
  lumvik_host_free(lent);
}

}  // namespace
}  // namespace lumvik::host::test
