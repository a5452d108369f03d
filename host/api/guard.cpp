#include "api/guard.h"

#include <exception>
#include <new>
#include <opencv2/core.hpp>
#include <string_view>
#include <system_error>

#if !defined(_WIN32)
#include <pthread.h>
#endif

#include "base/text_cut.h"

namespace lumvik::host {
namespace {

constexpr char kNoMemory[] = "not enough memory";
constexpr char kUnknown[] = "an unknown failure";

// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): each thread has its own
thread_local TextBuffer thread_text{};

// Libraries end messages with a line break.
void SetThreadText(std::string_view text) noexcept {
  text = text.substr(0, text.find_last_not_of(" \r\n") + 1);
  CopyCut(text.empty() ? kUnknown : text, thread_text.data(), thread_text.size());
}

Status Report(Status status, const char* text) noexcept {
  SetThreadText(text);
  return status;
}

}  // namespace

// Allocates nothing.
Status ReportException() noexcept {
  try {
    throw;
  } catch (const Failure& failure) {
    return Report(failure.GetStatus(), failure.what());
  } catch (const std::bad_alloc&) {
    return Report(LUMVIK_HOST_OUT_OF_MEMORY, kNoMemory);
  } catch (const cv::Exception& error) {
    const bool no_memory = error.code == cv::Error::StsNoMem;
    return no_memory ? Report(LUMVIK_HOST_OUT_OF_MEMORY, kNoMemory)
                     : Report(LUMVIK_HOST_INTERNAL, error.what());
  } catch (const std::system_error& error) {
    return Report(StatusOf(error.code()), error.what());
  } catch (const std::exception& error) {
    return Report(LUMVIK_HOST_INTERNAL, error.what());
  } catch (...) {
    return Report(LUMVIK_HOST_INTERNAL, "");
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
