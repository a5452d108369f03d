// Reading and writing whole files by UTF-8 path. One implementation per platform.
#ifndef LUMVIK_BASE_FILE_IO_H_
#define LUMVIK_BASE_FILE_IO_H_

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace lumvik {

// The path for the standard library, which on Windows takes a string to be in the process's code page.
std::filesystem::path SystemPath(const std::string& path);

// The bytes of a regular file. Empty when the file is empty, 4 GiB or larger, not a regular file, or cannot
// be opened. Bytes that a failed read did not deliver are zero; the decoder decides what they are worth.
std::vector<uint8_t> ReadWholeFile(const std::string& path);

// Creates or replaces the file. True only when every byte was written; a failed write leaves a partial file.
bool WriteWholeFile(const std::string& path, const std::vector<uint8_t>& bytes);

// True when reading the path could block on another process: a named pipe, a socket or a device.
bool ReadingMayBlock(const std::string& path);

}  // namespace lumvik

#endif  // LUMVIK_BASE_FILE_IO_H_
