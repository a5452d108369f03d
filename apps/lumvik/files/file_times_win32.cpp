#include <filesystem>
#include <stdexcept>
#include <system_error>

#include "files/file_times.h"

namespace lumvik {
namespace {

std::runtime_error TimesFailure(const std::string& what, const std::string& path,
                                const std::error_code& error) {
  return std::runtime_error("cannot " + what + " the times of '" + path + "': " + error.message());
}

}  // namespace

struct FileTimes::Times {
  std::filesystem::file_time_type modified;
};

FileTimes::FileTimes(const std::string& path) : times_(std::make_unique<Times>()) {
  std::error_code error;
  times_->modified = std::filesystem::last_write_time(std::filesystem::u8path(path), error);
  if (error) throw TimesFailure("read", path, error);
}

FileTimes::~FileTimes() = default;

void FileTimes::ApplyTo(const std::string& path) const {
  std::error_code error;
  std::filesystem::last_write_time(std::filesystem::u8path(path), times_->modified, error);
  if (error) throw TimesFailure("set", path, error);
}

}  // namespace lumvik
