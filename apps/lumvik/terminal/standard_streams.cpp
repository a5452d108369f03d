#include "terminal/standard_streams.h"

#include <array>
#include <cerrno>
#include <stdexcept>
#include <system_error>

#include "lumvik_host.hpp"

namespace lumvik {
namespace {

[[noreturn]] void FailToWrite(const std::error_condition& error) {
  const std::string failure = "cannot write to standard output: " + error.message();
  const bool is_full = error == std::errc::no_space_on_device || error == std::errc::file_too_large;
  if (is_full) throw api::Error(LUMVIK_HOST_DISK_FULL, failure);
  throw std::runtime_error(failure);
}

}  // namespace

void RequireRedirectedInput() {
  if (IsTerminal(stdin)) throw std::runtime_error("cannot read a photograph: standard input is a terminal");
}

void RequireRedirectedOutput() {
  if (IsTerminal(stdout)) throw std::runtime_error("cannot write an image: standard output is a terminal");
}

std::string ReadToEnd(std::FILE* stream, std::size_t limit) {
  constexpr std::size_t kPartBytes = 1 << 16;
  PrepareForBytes(stream);
  std::string bytes;
  std::array<char, kPartBytes> part{};
  for (std::size_t count = part.size(); count == part.size();) {
    count = std::fread(part.data(), 1, part.size(), stream);
    if (std::ferror(stream) != 0) {
      throw std::runtime_error("cannot read standard input: " + std::generic_category().message(errno));
    }
    if (count > limit - bytes.size()) {
      throw std::runtime_error("cannot read standard input: it has more than " + std::to_string(limit) +
                               " bytes");
    }
    bytes.append(part.data(), count);
  }
  return bytes;
}

void WriteStandardOutput(const std::vector<std::uint8_t>& bytes) {
  PrepareForBytes(stdout);
  const bool is_written = std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size();
  if (!is_written || std::fflush(stdout) != 0)
    FailToWrite(std::generic_category().default_error_condition(errno));
}

}  // namespace lumvik
