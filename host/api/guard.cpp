#include "api/guard.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <exception>
#include <filesystem>
#include <new>
#include <string_view>

namespace lumvik::host {
namespace {

constexpr char kNoMemory[] = "not enough memory";
constexpr std::size_t kMaxText = 2048;  // bytes, more than a path and a reason take

// Fixed, so that running out of memory can be reported.
thread_local std::array<char, kMaxText> thread_text{};

bool IsContinuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80;
}

void SetThreadText(std::string_view text) noexcept {
  std::size_t size = std::min(text.size(), kMaxText - 1);
  // Cut between characters.
  while (size > 0 && size < text.size() && IsContinuation(text[size])) --size;
  std::memcpy(thread_text.data(), text.data(), size);
  thread_text[size] = '\0';
}

}  // namespace

Described DescribeException() {
  try {
    throw;
  } catch (const Failure& failure) {
    return {failure.GetStatus(), failure.what()};
  } catch (const std::bad_alloc&) {
    return {LUMVIK_HOST_OUT_OF_MEMORY, kNoMemory};
  } catch (const std::system_error& error) {
    return {StatusOf(error.code()), OneLine(error.what())};
  } catch (const std::exception& error) {
    return {LUMVIK_HOST_INTERNAL, OneLine(error.what())};
  } catch (...) {
    return {LUMVIK_HOST_INTERNAL, "an unknown failure"};
  }
}

Status ReportException() noexcept {
  try {
    const Described described = DescribeException();
    SetThreadText(described.text);
    return described.status;
  } catch (...) {
    SetThreadText(kNoMemory);
    return LUMVIK_HOST_OUT_OF_MEMORY;
  }
}

const char* ThreadText() noexcept {
  return thread_text.data();
}

}  // namespace lumvik::host
