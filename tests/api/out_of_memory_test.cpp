// Out of memory: the call fails or throws, and the context is unchanged.
#include <cstdlib>
#include <new>

#include "api_test.h"
#include "support/allow_leaks.h"

namespace {

// Allocations of this thread that succeed before one fails; negative: none fails.
thread_local int allocations_left = -1;

}  // namespace

// Replaced for the whole program, libraries included. If inlined, the compiler would report mismatched calls.
[[gnu::noinline]] void* operator new(std::size_t size) {
  if (allocations_left >= 0 && allocations_left-- == 0) throw std::bad_alloc();
  if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
  std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace lumvik::test {
namespace {

class OutOfMemoryTest : public ApiTest {
 protected:
  // Runs `call` with one allocation failing after `successes` successful ones. Returns whether one failed.
  template <typename Call>
  static bool Starve(int successes, Call call) {
    // OpenCV leaks the pixels of a matrix when the allocation of its header fails.
    const lumvik::test::AllowLeaks allow_leaks;
    allocations_left = successes;
    try {
      call();
    } catch (const std::bad_alloc&) {
    } catch (const cv::Exception&) {
    }
    const bool failed = allocations_left < 0;
    allocations_left = -1;
    return failed;
  }
};

TEST_F(OutOfMemoryTest, CreatingAContextReturnsNull) {
  EngineContext* created = ctx();
  EXPECT_TRUE(Starve(0, [&] { created = lumvik_create_context(); }));
  EXPECT_EQ(created, nullptr);
}

TEST_F(OutOfMemoryTest, SettingAToneCurveKeepsThePreviousOne) {
  lumvik_reset_tone_curve(ctx(), 0);
  const std::string before = Describe(*ctx());
  const std::vector<float> points(100, 0.5F);
  EXPECT_TRUE(Starve(0, [&] { lumvik_set_tone_curve(ctx(), 0, points.data(), 50); }));
  EXPECT_EQ(Describe(*ctx()), before);
}

// Each allocation of a load fails once. A library may report that as a damaged file.
TEST_F(OutOfMemoryTest, LoadingKeepsTheEarlierPhotograph) {
  const std::string next = Path("next");
  std::filesystem::rename(WritePicture("a.png"), next + ".png");
  std::filesystem::rename(WriteRaw("a.arw"), next + ".arw");
  for (const std::string& loaded : {WritePicture("before.png"), WriteRaw("before.arw")}) {
    for (const std::string& path : {next + ".png", next + ".arw"}) {
      ASSERT_EQ(lumvik_load_arw(ctx(), loaded.c_str(), 1), LUMVIK_OK);
      lumvik_set_exposure(ctx(), 0.5F);
      const ContextPtr expected = CreateContext();
      ASSERT_EQ(lumvik_load_arw(expected.get(), loaded.c_str(), 1), LUMVIK_OK);
      lumvik_set_exposure(expected.get(), 0.5F);
      int status = kFailed;
      int failures = 0;
      while (Starve(failures, [&] { status = lumvik_load_arw(ctx(), path.c_str(), 1); }) &&
             status != LUMVIK_OK) {
        ctx()->last_error.clear();
        ctx()->decoded.path = expected->decoded.path;
        ctx()->decoded.error = expected->decoded.error;
        EXPECT_EQ(Describe(*ctx()), Describe(*expected)) << failures;
        ++failures;
      }
      EXPECT_GT(failures, 3);
      EXPECT_EQ(status, LUMVIK_OK);
      EXPECT_EQ(ctx()->source_path, path);
    }
  }
}

TEST_F(OutOfMemoryTest, RenderingKeepsTheEarlierRender) {
  LoadNeutral();
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  lumvik_set_clarity(ctx(), 30);
  int attempts = 0;
  int failures = 0;
  std::string before;
  int status = kFailed;
  const auto render_differently = [&] {
    lumvik_set_exposure(ctx(), attempts % 2 == 0 ? 1 : 2);
    before = Describe(*ctx());
    status = kFailed;
    return Starve(attempts++, [&] { status = lumvik_process(ctx()); });
  };
  while (render_differently()) {
    if (status == LUMVIK_OK) continue;  // large images are tried again
    EXPECT_EQ(Describe(*ctx()), before);
    ++failures;
  }
  EXPECT_GT(failures, 5);
  EXPECT_EQ(status, LUMVIK_OK);
}

}  // namespace
}  // namespace lumvik::test
