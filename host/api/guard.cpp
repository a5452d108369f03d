#include "api/guard.h"

#include <algorithm>
#include <exception>
#include <new>
#include <string_view>
#include <system_error>

#if !defined(_WIN32)
#include <pthread.h>
#endif

#include "base/text_cut.h"

namespace lumvik::host {
namespace {

constexpr char kNoMemory[] = "not enough memory";

thread_local TextBuffer thread_text{};

void SetThreadText(std::string_view text) noexcept {
  CopyCut(text, thread_text.data(), thread_text.size());
}

// The number of bytes of the UTF-8 character at the start of a text that is not empty; 0 if there is none.
std::size_t CharacterSize(std::string_view text) {
  const auto byte = [&](std::size_t index) { return static_cast<unsigned char>(text[index]); };
  const unsigned lead = byte(0);
  if (lead < 0x80) return 1;
  const std::size_t size = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < size) return 0;
  // Neither overlong nor a surrogate nor beyond U+10FFFF.
  const unsigned lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  const unsigned highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  if (byte(1) < lowest || byte(1) > highest) return 0;
  for (std::size_t i = 2; i < size; ++i) {
    if ((byte(i) & 0xC0U) != 0x80) return 0;
  }
  return size;
}

// Paths and messages of libraries may hold any bytes. The result is one line of UTF-8, cut to what a
// TextBuffer holds.
std::string Presentable(std::string text) {
  std::size_t end = 0;
  while (end < text.size()) {
    const std::size_t size = CharacterSize(std::string_view(text).substr(end));
    if (end + std::max<std::size_t>(size, 1) >= kMaxText) break;
    if (size == 0) text[end] = '?';
    if (size == 1 && (text[end] < ' ' || text[end] == '\x7F')) text[end] = ' ';
    end += std::max<std::size_t>(size, 1);
  }
  text.resize(text.find_last_not_of(' ', end - 1) + 1);
  return text.empty() ? "an unknown failure" : text;
}

}  // namespace

Described DescribeException() {
  try {
    throw;
  } catch (const Failure& failure) {
    return {failure.GetStatus(), Presentable(failure.what())};
  } catch (const std::bad_alloc&) {
    return {LUMVIK_HOST_OUT_OF_MEMORY, kNoMemory};
  } catch (const std::system_error& error) {
    return {StatusOf(error.code()), Presentable(error.what())};
  } catch (const std::exception& error) {
    return {LUMVIK_HOST_INTERNAL, Presentable(error.what())};
  } catch (...) {
    return {LUMVIK_HOST_INTERNAL, Presentable("")};
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

#if defined(_WIN32)
CancellationDeferral::CancellationDeferral() noexcept = default;
CancellationDeferral::~CancellationDeferral() = default;
#else
CancellationDeferral::CancellationDeferral() noexcept {
  pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &previous_);
}

CancellationDeferral::~CancellationDeferral() {
  pthread_setcancelstate(previous_, nullptr);
}
#endif

const char* ThreadText() noexcept {
  return thread_text.data();
}

}  // namespace lumvik::host
