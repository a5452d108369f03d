// Reading files. Each function throws Failure.
#ifndef LUMVIK_HOST_FILES_FILE_READING_H_
#define LUMVIK_HOST_FILES_FILE_READING_H_

#include <cstdint>
#include <filesystem>
#include <limits>
#include <string>

namespace lumvik::host {

// Paths of the interface are UTF-8. Others are accepted where the system accepts them.
std::filesystem::path PathOf(const std::string& utf8);

// Requires a regular file that can be read. A pipe or a device could block a decoder forever.
void RequireReadable(const std::string& path);

// Requires that and at least one byte. `shown` names the file in messages.
void RequireContent(const std::string& path, const std::string& shown);

// The first bytes of a file, at most `count`.
std::string ReadBeginning(const std::string& path, std::size_t count);

// At most `count` bytes from `offset` on; none beyond the end of the file.
std::string ReadPart(const std::string& path, std::uint64_t offset, std::size_t count);

// The first and the last bytes of a file, at most `count` of each; none twice.
std::string ReadEnds(const std::string& path, std::size_t count);

// What the image decoders accept.
inline constexpr std::uintmax_t kMaxImageBytes = std::numeric_limits<std::int32_t>::max();

// A whole file. One of more than `max_bytes` is not read but refused as LUMVIK_HOST_INVALID_ARGUMENT.
std::string ReadFile(const std::string& path, std::uintmax_t max_bytes);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_FILES_FILE_READING_H_
