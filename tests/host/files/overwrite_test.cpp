// Which existing files are replaced.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "base/failure.h"
#include "files/file_reading.h"
#include "files/intact_mark.h"
#include "files/safe_file.h"
#include "lumvik_host.h"
#include "photo/test_photos.h"
#include "save/mark.h"
#include "support/temp_dir.h"

namespace lumvik::host::test {
namespace {

namespace fs = std::filesystem;
using lumvik::test::TempDir;

constexpr std::uintmax_t kAnySize = 1 << 20;
constexpr char kNotOurs[] = "': the file exists and was not written by this program, or was changed since";

std::string MarkedJpeg(const std::string& mark) {
  const Bytes jpeg = PhotoBytes(LUMVIK_HOST_FORMAT_JPEG);
  return WithMark({jpeg.begin(), jpeg.end()}, LUMVIK_HOST_FORMAT_JPEG, mark);
}

class OverwriteTest : public ::testing::Test {
 protected:
  void ExpectExists(const std::function<void()>& write, const std::string& text) {
    try {
      write();
      FAIL() << "written";
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.GetStatus(), LUMVIK_HOST_EXISTS);
      EXPECT_EQ(failure.what(), "cannot write '" + path_ + text);
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(dir_.path()), fs::directory_iterator()), 1);
  }

  std::string Content() const { return ReadFile(path_, kAnySize); }

  TempDir dir_;
  const std::string path_ = dir_.File("a.jpg");
  const std::string marked_ = MarkedJpeg("first");
};

TEST_F(OverwriteTest, MarkedFileIsReplaced) {
  WriteSafely(path_, marked_, Overwrite::kMarked);
  WriteSafely(path_, MarkedJpeg("second"), Overwrite::kMarked);
  EXPECT_EQ(IntactMarkOf(path_), "second");
}

TEST_F(OverwriteTest, MarkedFileIsReplacedOnRequestOnly) {
  WriteSafely(path_, marked_, Overwrite::kNo);
  ExpectExists([&] { WriteSafely(path_, "new", Overwrite::kNo); }, "': the file exists");
  EXPECT_EQ(Content(), marked_);
}

TEST_F(OverwriteTest, ForeignFileIsReplacedByAnyOnly) {
  for (const std::string& foreign : {std::string(), std::string("text"), marked_ + "more"}) {
    WriteSafely(path_, foreign, Overwrite::kYes);
    ExpectExists([&] { WriteSafely(path_, marked_, Overwrite::kMarked); }, kNotOurs);
    EXPECT_EQ(Content(), foreign);
  }
}

TEST_F(OverwriteTest, ForeignFileIsNoticedBeforeAnythingIsWritten) {
  WriteSafely(path_, "foreign", Overwrite::kNo);
  ExpectExists([&] { const SafeFile file(path_, Overwrite::kMarked); }, kNotOurs);
}

TEST_F(OverwriteTest, FileThatAppearsMeanwhileIsNeverReplaced) {
  for (const std::string& theirs : {std::string("foreign"), marked_}) {
    fs::remove(path_);
    ExpectExists(
        [&] {
          SafeFile file(path_, Overwrite::kMarked);
          file.Write("mine");
          std::thread([&] { WriteSafely(path_, theirs, Overwrite::kNo); }).join();
          file.Commit();
        },
        kNotOurs);
    EXPECT_EQ(Content(), theirs);
  }
}

TEST_F(OverwriteTest, FileThatChangesMeanwhileIsNotReplaced) {
  WriteSafely(path_, marked_, Overwrite::kNo);
  ExpectExists(
      [&] {
        SafeFile file(path_, Overwrite::kMarked);
        file.Write("mine");
        WriteSafely(path_, "foreign", Overwrite::kYes);
        file.Commit();
      },
      kNotOurs);
  EXPECT_EQ(Content(), "foreign");
}

TEST_F(OverwriteTest, FileThatDisappearsMeanwhileIsWritten) {
  WriteSafely(path_, marked_, Overwrite::kNo);
  SafeFile file(path_, Overwrite::kMarked);
  file.Write("mine");
  fs::remove(path_);
  file.Commit();
  EXPECT_EQ(Content(), "mine");
}

// Two writers of one name: one of them wins, the other learns of it.
TEST_F(OverwriteTest, OneOfManyWritersOfANewFileSucceeds) {
  constexpr int kWriters = 8;
  for (int round = 0; round < 20; ++round) {
    fs::remove(path_);
    std::atomic<int> written = 0;
    std::atomic<int> refused = 0;
    std::vector<std::thread> writers;
    for (int i = 0; i < kWriters; ++i) {
      writers.emplace_back([&, i] {
        try {
          SafeFile file(path_, Overwrite::kMarked);
          file.Write(std::to_string(i));
          file.Commit();
          ++written;
        } catch (const Failure& failure) {
          if (failure.GetStatus() == LUMVIK_HOST_EXISTS) ++refused;
        }
      });
    }
    for (std::thread& writer : writers) writer.join();
    EXPECT_EQ(written, 1);
    EXPECT_EQ(refused, kWriters - 1);
  }
}

lumvik_host_save_options RuleOptions(lumvik_host_overwrite overwrite, const char* mark) {
  lumvik_host_save_options options{};
  options.struct_size = sizeof(options);
  options.metadata = LUMVIK_HOST_METADATA_NONE;
  options.overwrite = overwrite;
  options.mark = mark;
  return options;
}

TEST(OverwriteRuleTest, AppliesToSavingAndWriting) {
  const TempDir dir;
  const PhotoHandle photo = OpenBytesForTest(PhotoBytes(LUMVIK_HOST_FORMAT_RAW));
  ASSERT_EQ(lumvik_host_find_subject(photo.get(), 0.5F, 0.5F), LUMVIK_HOST_OK) << lumvik_host_last_error();
  using Write = lumvik_host_status (*)(lumvik_host_photo*, const char*, const lumvik_host_save_options*);
  const Write writes[] = {lumvik_host_save, lumvik_host_save_cutout,
                          [](lumvik_host_photo*, const char* path, const lumvik_host_save_options* options) {
                            constexpr uint8_t kPixels[4] = {1, 2, 3, 4};
                            return lumvik_host_write_png(path, kPixels, 2, 2, 1, options);
                          }};
  for (const Write write : writes) {
    const std::string path = dir.File("a.png");
    fs::remove(path);
    const auto status = [&](lumvik_host_overwrite overwrite, const char* mark) {
      const lumvik_host_save_options options = RuleOptions(overwrite, mark);
      return write(photo.get(), path.c_str(), &options);
    };
    EXPECT_EQ(status(LUMVIK_HOST_OVERWRITE_NONE, "first"), LUMVIK_HOST_OK) << lumvik_host_last_error();
    EXPECT_EQ(IntactMarkOf(path), "first");
    EXPECT_EQ(status(LUMVIK_HOST_OVERWRITE_NONE, "second"), LUMVIK_HOST_EXISTS);
    EXPECT_EQ(status(LUMVIK_HOST_OVERWRITE_MARKED, "second"), LUMVIK_HOST_OK) << lumvik_host_last_error();
    EXPECT_EQ(IntactMarkOf(path), "second");
    EXPECT_EQ(status(LUMVIK_HOST_OVERWRITE_MARKED, nullptr), LUMVIK_HOST_OK) << lumvik_host_last_error();
    EXPECT_EQ(IntactMarkOf(path), std::nullopt);
    EXPECT_EQ(status(LUMVIK_HOST_OVERWRITE_MARKED, "third"), LUMVIK_HOST_EXISTS);
    EXPECT_EQ(lumvik_host_last_error(), "cannot write '" + path + kNotOurs);
    EXPECT_EQ(status(LUMVIK_HOST_OVERWRITE_ANY, "third"), LUMVIK_HOST_OK);
    EXPECT_EQ(status(static_cast<lumvik_host_overwrite>(3), "third"), LUMVIK_HOST_INVALID_ARGUMENT);
    EXPECT_EQ(status(LUMVIK_HOST_OVERWRITE_ANY, "\xFF"), LUMVIK_HOST_INVALID_ARGUMENT);
    EXPECT_EQ(IntactMarkOf(path), "third");
  }
}

TEST(OverwriteRuleTest, AppliesToWritingBytes) {
  const TempDir dir;
  const std::string path = dir.File("a.jpg");
  const std::string marked = MarkedJpeg("m");
  const auto status = [&](const std::string& bytes, int overwrite) {
    return lumvik_host_write_file(path.c_str(), bytes.data(), bytes.size(), overwrite);
  };
  EXPECT_EQ(status(marked, LUMVIK_HOST_OVERWRITE_MARKED), LUMVIK_HOST_OK);
  EXPECT_EQ(status("foreign", LUMVIK_HOST_OVERWRITE_MARKED), LUMVIK_HOST_OK);
  EXPECT_EQ(status(marked, LUMVIK_HOST_OVERWRITE_MARKED), LUMVIK_HOST_EXISTS);
}

}  // namespace
}  // namespace lumvik::host::test
