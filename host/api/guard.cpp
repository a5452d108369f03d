#include "api/guard.h"

#include <exception>
#include <filesystem>
#include <new>
#include <string_view>

#include "base/text_cut.h"

namespace lumvik::host {
namespace {

constexpr char kNoMemory[] = "not enough memory";

thread_local TextBuffer thread_text{};

void SetThreadText(std::string_view text) noexcept {
  CopyCut(text, thread_text.data(), thread_text.size());
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
