// Renders in the background.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "api/settings_handle.h"
#include "photo/test_photos.h"

namespace lumvik::host::test {
namespace {

constexpr int kPosts = 10000;
constexpr int kForever = -1;

struct Received {
  std::uint64_t ticket;
  int status;
  TestPreview preview;
  std::string error;
};

// Collects what the callbacks of its posts receive.
class Receiver {
 public:
  static void Callback(const lumvik_host_frame* frame, void* user) {
    auto* const receiver = static_cast<Receiver*>(user);
    receiver->Receive(*frame);
    if (receiver->in_callback) receiver->in_callback(*frame);
  }

  std::vector<Received> All() {
    const std::lock_guard<std::mutex> guard(mutex_);
    return received_;
  }

  std::function<void(const lumvik_host_frame&)> in_callback;

 private:
  void Receive(const lumvik_host_frame& frame) {
    Received received{frame.ticket, frame.status, {frame.width, frame.height, {}}, frame.error};
    if (frame.pixels != nullptr) {
      const auto size = frame.stride * static_cast<std::size_t>(frame.height - 1) +
                        static_cast<std::size_t>(frame.width * frame.channels);
      received.preview.pixels.assign(frame.pixels, frame.pixels + size);
    }
    const std::lock_guard<std::mutex> guard(mutex_);
    received_.push_back(std::move(received));
  }

  std::mutex mutex_;
  std::vector<Received> received_;
};

// Holds callbacks until it is opened.
class Gate {
 public:
  void Open() {
    const std::lock_guard<std::mutex> guard(mutex_);
    is_open_ = true;
    changed_.notify_all();
  }
  void Pass() {
    std::unique_lock<std::mutex> lock(mutex_);
    has_arrival_ = true;
    changed_.notify_all();
    changed_.wait(lock, [&] { return is_open_; });
  }
  void AwaitArrival() {
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait(lock, [&] { return has_arrival_; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  bool is_open_ = false;
  bool has_arrival_ = false;
};

class PostTest : public testing::Test {
 protected:
  std::uint64_t Post(const Settings& settings, const lumvik_host_preview_options& options = {}) {
    lumvik_host_preview_options used = options;
    used.struct_size = sizeof(used);
    lumvik_host_settings* const handle = OpenSettings(settings);
    std::uint64_t ticket = 0;
    EXPECT_EQ(lumvik_host_post(photo_.get(), handle, &used, Receiver::Callback, &receiver_, &ticket),
              LUMVIK_HOST_OK)
        << lumvik_host_last_error();
    CloseSettings(handle);
    return ticket;
  }

  lumvik_host_status Wait(std::uint64_t ticket, int milliseconds = kForever) {
    return lumvik_host_wait(photo_.get(), ticket, milliseconds);
  }

  // Posts a render whose callback waits for the gate, and returns when it does.
  std::uint64_t PostHeld(Gate& gate) {
    receiver_.in_callback = [this, &gate](const lumvik_host_frame& frame) {
      if (frame.ticket == held_ && frame.status == LUMVIK_HOST_OK) gate.Pass();
    };
    held_ = 1;
    const std::uint64_t ticket = Post({{"exposure", 0.25F}});
    EXPECT_EQ(ticket, held_);
    gate.AwaitArrival();
    return ticket;
  }

  Receiver receiver_;
  std::uint64_t held_ = 0;
  PhotoHandle photo_ = OpenBytesForTest(PhotoBytes(LUMVIK_HOST_FORMAT_PNG));
};

TEST_F(PostTest, ThePreviewIsThatOfThePostedSettings) {
  const Settings settings = {{"exposure", 1.0F}};
  EXPECT_EQ(Wait(Post(settings)), LUMVIK_HOST_OK);
  const std::vector<Received> all = receiver_.All();
  ASSERT_EQ(all.size(), 1U);
  EXPECT_EQ(all[0].status, LUMVIK_HOST_OK);
  EXPECT_EQ(all[0].ticket, 1U);
  EXPECT_EQ(all[0].error, "");
  EXPECT_EQ(all[0].preview, PreviewForTest(photo_));  // the settings of the photo
  SetForTest(photo_, settings);
  EXPECT_EQ(all[0].preview, PreviewForTest(photo_));
}

TEST_F(PostTest, ThePreviewHasTheOptions) {
  lumvik_host_preview_options options{};
  options.max_width = 40;
  options.channels = 3;
  options.stride = 200;
  Post({{"exposure", 1.0F}}, options);
  EXPECT_EQ(Wait(0), LUMVIK_HOST_OK);
  lumvik_host_preview_options unpadded = options;
  unpadded.stride = 0;
  const TestPreview expected = PreviewForTest(photo_, unpadded);
  const TestPreview got = receiver_.All().at(0).preview;
  ASSERT_EQ(got.pixels.size(), 200U * 26 + 40 * 3);
  ASSERT_EQ(expected.pixels.size(), 40U * 3 * 27);
  for (std::size_t y = 0; y < 27; ++y) {
    EXPECT_TRUE(std::equal(expected.pixels.begin() + static_cast<std::ptrdiff_t>(y * 120),
                           expected.pixels.begin() + static_cast<std::ptrdiff_t>(y * 120 + 120),
                           got.pixels.begin() + static_cast<std::ptrdiff_t>(y * 200)));
  }
}

TEST_F(PostTest, TheFrameStatesTheOrderOfItsChannels) {
  for (const int blue_first : {0, 7}) {
    lumvik_host_preview_options options{};
    options.struct_size = sizeof(options);
    options.blue_first = blue_first;
    int stated = -1;
    const auto store = [](const lumvik_host_frame* frame, void* user) {
      *static_cast<int*>(user) = frame->blue_first;
    };
    ASSERT_EQ(lumvik_host_post(photo_.get(), nullptr, &options, store, &stated, nullptr), LUMVIK_HOST_OK);
    EXPECT_EQ(Wait(0), LUMVIK_HOST_OK);
    EXPECT_EQ(stated, blue_first == 0 ? 0 : 1);
  }
}

TEST_F(PostTest, ABlueFirstFrameIsThatPreview) {
  lumvik_host_preview_options options{};
  options.blue_first = 1;
  Post({{"temperature", 5000.0F}}, options);
  EXPECT_EQ(Wait(0), LUMVIK_HOST_OK);
  EXPECT_EQ(receiver_.All().at(0).preview, PreviewForTest(photo_, options));
}

TEST_F(PostTest, NullSettingsKeepThePresentOnes) {
  SetForTest(photo_, {{"exposure", 1.0F}});
  EXPECT_EQ(lumvik_host_post(photo_.get(), nullptr, nullptr, Receiver::Callback, &receiver_, nullptr),
            LUMVIK_HOST_OK);
  EXPECT_EQ(Wait(0), LUMVIK_HOST_OK);
  EXPECT_EQ(receiver_.All().at(0).preview, PreviewForTest(photo_));
}

TEST_F(PostTest, TheNewestWins) {
  Gate gate;
  const std::uint64_t first = PostHeld(gate);
  const std::uint64_t second = Post({{"exposure", 0.5F}});
  const std::uint64_t third = Post({{"exposure", 0.75F}});
  EXPECT_EQ(Wait(second), LUMVIK_HOST_STALE);
  EXPECT_STREQ(lumvik_host_last_error(), "a newer render replaced the posted one");
  EXPECT_EQ(Wait(third, 0), LUMVIK_HOST_TIMED_OUT);
  gate.Open();
  EXPECT_EQ(Wait(third), LUMVIK_HOST_OK);
  EXPECT_EQ(Wait(first), LUMVIK_HOST_OK);
  const std::vector<Received> all = receiver_.All();
  ASSERT_EQ(all.size(), 3U);
  EXPECT_EQ(all[0].ticket, first);
  EXPECT_EQ(all[1].ticket, second);
  EXPECT_EQ(all[1].status, LUMVIK_HOST_STALE);
  EXPECT_TRUE(all[1].preview.pixels.empty());
  EXPECT_EQ(all[2].ticket, third);
}

TEST_F(PostTest, AFrameStaysWhileOthersRender) {
  Bytes during;
  Gate gate;
  receiver_.in_callback = [&](const lumvik_host_frame& frame) {
    gate.Pass();
    during.assign(frame.pixels, frame.pixels + frame.stride * static_cast<std::size_t>(frame.height));
  };
  Post({{"exposure", 1.0F}});
  gate.AwaitArrival();
  for (int i = 0; i < 3; ++i) {
    SetForTest(photo_, {{"exposure", -1.0F - static_cast<float>(i) / 2}});
    PreviewForTest(photo_);
  }
  gate.Open();
  EXPECT_EQ(Wait(0), LUMVIK_HOST_OK);
  EXPECT_EQ(during, receiver_.All().at(0).preview.pixels);
}

TEST_F(PostTest, CancelDropsTheWaitingRender) {
  EXPECT_EQ(lumvik_host_cancel(photo_.get()), LUMVIK_HOST_OK);
  Gate gate;
  PostHeld(gate);
  const std::uint64_t waiting = Post({});
  EXPECT_EQ(lumvik_host_cancel(photo_.get()), LUMVIK_HOST_OK);
  EXPECT_EQ(Wait(waiting), LUMVIK_HOST_CANCELED);
  gate.Open();
  EXPECT_EQ(Wait(held_), LUMVIK_HOST_OK);
  EXPECT_EQ(receiver_.All().size(), 2U);
}

TEST_F(PostTest, AFailureIsReportedToTheCallbackAndTheWaitingThread) {
  lumvik_host_preview_options options{};
  options.stride = 5;
  const std::uint64_t ticket = Post({}, options);
  EXPECT_EQ(Wait(ticket), LUMVIK_HOST_INVALID_ARGUMENT);
  const Received received = receiver_.All().at(0);
  EXPECT_EQ(received.status, LUMVIK_HOST_INVALID_ARGUMENT);
  EXPECT_EQ(received.preview.width, 0);
  EXPECT_THAT(received.error, testing::HasSubstr("stride is 5"));
  EXPECT_EQ(received.error, lumvik_host_last_error());
}

TEST_F(PostTest, TicketsThatWereNotPostedAreRefused) {
  EXPECT_EQ(Wait(0), LUMVIK_HOST_INVALID_ARGUMENT);
  EXPECT_EQ(Wait(1), LUMVIK_HOST_INVALID_ARGUMENT);
  Post({});
  EXPECT_EQ(Wait(2), LUMVIK_HOST_INVALID_ARGUMENT);
  EXPECT_EQ(Wait(1), LUMVIK_HOST_OK);
}

TEST_F(PostTest, ACallbackMayCallEveryFunction) {
  std::atomic<int> strange{0};
  receiver_.in_callback = [&](const lumvik_host_frame& frame) {
    if (Wait(frame.ticket) != LUMVIK_HOST_OK) ++strange;
    if (PreviewForTest(photo_).pixels.empty()) ++strange;
    if (frame.ticket >= 3) return;
    const std::uint64_t next = Post({{"exposure", static_cast<float>(frame.ticket)}});
    if (Wait(next) != LUMVIK_HOST_TIMED_OUT) ++strange;  // the worker is in this callback
  };
  Post({});
  EXPECT_EQ(Wait(1), LUMVIK_HOST_OK);
  EXPECT_EQ(Wait(2), LUMVIK_HOST_OK);
  EXPECT_EQ(Wait(3), LUMVIK_HOST_OK);
  EXPECT_EQ(strange, 0);
  EXPECT_EQ(receiver_.All().size(), 3U);
}

TEST_F(PostTest, ClosingInACallback) {
  lumvik_host_photo* const handle = photo_.release();
  std::atomic<int> closed{-1};
  receiver_.in_callback = [&](const lumvik_host_frame& frame) {
    if (frame.status != LUMVIK_HOST_OK) return;
    lumvik_host_post(handle, nullptr, nullptr, Receiver::Callback, &receiver_, nullptr);
    closed = lumvik_host_close(handle);
  };
  ASSERT_EQ(lumvik_host_post(handle, nullptr, nullptr, Receiver::Callback, &receiver_, nullptr),
            LUMVIK_HOST_OK);
  while (closed < 0) std::this_thread::yield();
  EXPECT_EQ(closed, LUMVIK_HOST_OK);
  const std::vector<Received> all = receiver_.All();
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(all[1].status, LUMVIK_HOST_CANCELED);
  EXPECT_EQ(lumvik_host_close(handle), LUMVIK_HOST_INVALID_HANDLE);
}

TEST_F(PostTest, ClosingDropsTheWaitingRenderAndLetsTheRunningOneEnd) {
  lumvik_host_photo* const handle = photo_.get();
  Gate gate;
  PostHeld(gate);
  const std::uint64_t waiting = Post({});
  std::atomic<int> waited{-1};
  std::thread waiter([&] { waited = lumvik_host_wait(handle, waiting, kForever); });
  std::thread closer([&] { photo_.reset(); });
  while (receiver_.All().size() < 2) std::this_thread::yield();
  EXPECT_EQ(receiver_.All()[1].status, LUMVIK_HOST_CANCELED);
  gate.Open();
  closer.join();
  waiter.join();
  // The waiting thread may have come too late.
  EXPECT_THAT(waited.load(), testing::AnyOf(LUMVIK_HOST_CANCELED, LUMVIK_HOST_INVALID_HANDLE));
  EXPECT_EQ(receiver_.All().size(), 2U);
}

TEST_F(PostTest, ClosingAtAnyTimeCallsBackOnceForEachPost) {
  constexpr int kPhotos = 100;
  std::mt19937 random(1);  // NOLINT(cert-msc51-cpp): a fixed sequence
  for (int i = 0; i < kPhotos; ++i) {
    photo_ = OpenBytesForTest(PhotoBytes(LUMVIK_HOST_FORMAT_BMP));
    const auto posts = random() % 4;
    Receiver receiver;
    for (unsigned post = 0; post < posts; ++post) {
      EXPECT_EQ(lumvik_host_post(photo_.get(), nullptr, nullptr, Receiver::Callback, &receiver, nullptr),
                LUMVIK_HOST_OK);
      std::this_thread::sleep_for(std::chrono::microseconds(random() % 300));
    }
    photo_.reset();
    const std::vector<Received> all = receiver.All();
    ASSERT_EQ(all.size(), posts);
  }
}

TEST_F(PostTest, ManyPostsFromManyThreads) {
  constexpr int kPosters = 4;
  constexpr std::uint64_t kEnd = kPosts;
  std::vector<std::thread> threads;
  for (unsigned thread = 0; thread < kPosters; ++thread) {
    threads.emplace_back([&, thread] {
      std::mt19937 random(thread);  // NOLINT(cert-msc51-cpp): a fixed sequence
      for (int i = 0; i < kPosts / kPosters; ++i) {
        Post({{"exposure", static_cast<float>(i % 100) / 100}});
        if (random() % 50 == 0) std::this_thread::sleep_for(std::chrono::microseconds(random() % 2000));
        if (random() % 500 == 0) lumvik_host_cancel(photo_.get());
        if (random() % 500 == 0) PreviewForTest(photo_);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  const lumvik_host_status last = Wait(0);
  EXPECT_THAT(last, testing::AnyOf(LUMVIK_HOST_OK, LUMVIK_HOST_CANCELED));
  std::map<std::uint64_t, int> statuses;
  std::uint64_t newest = 0;
  for (const Received& received : receiver_.All()) {
    EXPECT_TRUE(statuses.emplace(received.ticket, received.status).second) << "twice " << received.ticket;
    if (received.status != LUMVIK_HOST_OK) continue;
    EXPECT_GT(received.ticket, newest);
    newest = received.ticket;
  }
  EXPECT_EQ(statuses.size(), kEnd);
  EXPECT_EQ(statuses.rbegin()->first, kEnd);
  EXPECT_EQ(statuses[kEnd], last);
}

}  // namespace
}  // namespace lumvik::host::test
