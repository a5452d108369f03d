// Photographs from standard input and images to standard output.
#ifndef LUMVIK_APPS_TERMINAL_STANDARD_STREAMS_H_
#define LUMVIK_APPS_TERMINAL_STANDARD_STREAMS_H_

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace lumvik {

// The path that stands for standard input or standard output; a file of that name is "./-".
inline constexpr char kStandardStream[] = "-";

inline bool IsStandardStream(const std::string& path) {
  return path == kStandardStream;
}

// A file larger than this is not read from standard input.
inline constexpr std::size_t kMaxInputBytes = std::size_t{1} << 30;

// Throws std::runtime_error if it is a terminal.
void RequireRedirectedInput();
void RequireRedirectedOutput();

// The rest of a stream, at most `limit` bytes. Throws std::runtime_error for more and when reading fails.
std::string ReadToEnd(std::FILE* stream, std::size_t limit = kMaxInputBytes);

// Throws api::Error for a full disk, std::runtime_error for other failures, such as a closed pipe.
void WriteStandardOutput(const std::vector<std::uint8_t>& bytes);

// Platform functions.
bool IsTerminal(std::FILE* stream);
// Bytes pass unmodified, and a closed pipe is an error, not a signal that ends the process.
void PrepareForBytes(std::FILE* stream);

}  // namespace lumvik

#endif  // LUMVIK_APPS_TERMINAL_STANDARD_STREAMS_H_
