#include "batch_fixture.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "support/raw_writer.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;

// Enough for a loaded machine.
constexpr std::chrono::seconds kPatience(60);

bool IsSoon(const std::function<bool()>& condition) {
  const auto end = std::chrono::steady_clock::now() + kPatience;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return true;
}

// Empty for a process that has ended: reading its file in /proc fails, and a stream iterator would throw.
std::string Contents(const fs::path& path) {
  std::ostringstream contents;
  contents << std::ifstream(path).rdbuf();
  return contents.str();
}

// The running processes whose null-separated arguments contain `part`.
std::vector<pid_t> ProcessesWith(const std::string& part) {
  std::vector<pid_t> found;
  for (const fs::directory_entry& entry : fs::directory_iterator("/proc")) {
    const std::string name = entry.path().filename().string();
    if (name.find_first_not_of("0123456789") != std::string::npos) continue;
    if (Contents(entry.path() / "cmdline").find(part) != std::string::npos) found.push_back(std::stoi(name));
  }
  return found;
}

pid_t ParentOf(pid_t process) {
  std::ifstream status("/proc/" + std::to_string(process) + "/status");
  for (std::string line; std::getline(status, line);) {
    if (line.rfind("PPid:", 0) == 0) return std::stoi(line.substr(5));
  }
  return 0;
}

void WriteRaw(const std::string& path) {
  cv::Mat rgb;
  cv::resize(SmallPicture(), rgb, cv::Size(64, 48));
  const std::vector<std::uint8_t> bytes = MakeRawFile(rgb);
  WriteFile(path, {bytes.begin(), bytes.end()});
}

}  // namespace

BatchTest::BatchTest() {
  fs::create_directory(In());
}

std::vector<std::string> BatchTest::BatchCommand(const std::vector<std::string>& options,
                                                 std::vector<std::string> prefix) const {
  prefix.insert(prefix.end(), {"batch", In(), "-o", Out()});
  prefix.insert(prefix.end(), options.begin(), options.end());
  return prefix;
}

ProcessResult BatchTest::Batch(const std::vector<std::string>& options,
                               const std::vector<std::string>& prefix) const {
  return RunProcess(BatchCommand(options, prefix));
}

void BatchTest::WritePhotographs() const {
  const std::string names[] = {"plain", "with space", "\xC3\xA9t\xC3\xA9", "not utf-8 \xE9", "-o", "{stem}"};
  for (int i = 0; i < kPhotographs; ++i) {
    const std::string folder = i % 2 == 0 ? "" : "f\xC3\xBCnf \xE2\x9C\x93/";
    fs::create_directories(In(folder));
    const std::string stem = folder + names[i % 6] + std::to_string(i);
    if (i % 3 == 0) {
      WriteRaw(In(stem + ".ARW"));
    } else {
      ASSERT_TRUE(cv::imwrite(In(stem + (i % 3 == 1 ? ".jpg" : ".png")), SmallPicture()));
    }
  }
  // Replace the first, a middle and the last one.
  WriteFile(In("plain0.ARW"), "not a photograph at all");
  WriteFile(In("-o16.jpg"), "");
  WriteFile(In("f\xC3\xBCnf \xE2\x9C\x93/{stem}29.png"), "\x89PNG\r\n\x1A\n");
}

std::string BatchTest::SlowPhotograph(const std::string& name) const {
  cv::Mat noise(3000, 4000, CV_8UC3);
  cv::randu(noise, 0, 256);
  EXPECT_TRUE(cv::imwrite(In(name), noise));
  return In(name);
}

void BatchTest::Await(const std::function<bool()>& condition) {
  EXPECT_TRUE(IsSoon(condition));
}

std::set<std::string> BatchTest::Outputs() const {
  std::set<std::string> outputs;
  std::error_code none_yet;
  for (fs::recursive_directory_iterator entry(Out(), none_yet), end; entry != end;
       entry.increment(none_yet)) {
    if (entry->path().filename().string()[0] == '.') {
      entry.disable_recursion_pending();
    } else if (entry->is_regular_file()) {
      outputs.insert(entry->path().lexically_relative(Out()).string());
    }
  }
  return outputs;
}

pid_t BatchTest::AwaitWorker(pid_t parent, const std::string& photograph) {
  pid_t worker = 0;
  EXPECT_TRUE(IsSoon([&] {
    for (const pid_t process : ProcessesWith(std::string("--\0", 3) + photograph)) {
      const std::string arguments = Contents("/proc/" + std::to_string(process) + "/cmdline");
      const bool develops = arguments.find(std::string("\0develop\0", 9)) != std::string::npos;
      if (develops && ParentOf(process) == parent) worker = process;
    }
    return worker != 0;
  }));
  // A signal to process 0 would stop the tests themselves.
  if (worker == 0) throw std::runtime_error("no worker develops " + photograph);
  return worker;
}

void BatchTest::ExpectNoProcessLeft() const {
  EXPECT_TRUE(IsSoon([&] { return ProcessesWith(In()).empty(); }));
}

void BatchTest::ExpectWholeOutputs() const {
  for (const std::string& name : Outputs()) {
    const std::string bytes = ReadFile(Out(name));
    EXPECT_EQ(bytes.substr(bytes.size() - std::min<std::size_t>(bytes.size(), 2)), "\xFF\xD9") << name;
    EXPECT_FALSE(cv::imread(Out(name)).empty()) << name;
  }
}

}  // namespace lumvik::test
