#include "photo/engine_call.h"

#include <libraw/libraw.h>

#include <exception>
#include <new>
#include <opencv2/core.hpp>

namespace lumvik::host {
namespace {

Failure OutOfMemory(const std::string& what) {
  return {LUMVIK_HOST_OUT_OF_MEMORY, what + ": not enough memory"};
}

}  // namespace

int CallLibrary(const std::string& what, const std::function<int()>& call) {
  try {
    return call();
  } catch (const Failure&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw OutOfMemory(what);
  } catch (const cv::Exception& error) {
    if (error.code == cv::Error::StsNoMem) throw OutOfMemory(what);
    throw Failure(LUMVIK_HOST_INTERNAL, what + ": " + OneLine(error.what()));
  } catch (const std::exception& error) {
    throw Failure(LUMVIK_HOST_INTERNAL, what + ": " + OneLine(error.what()));
  }
}

void CallEngine(EngineContext* context, const std::string& what,
                const std::function<int(EngineContext*)>& call) {
  const int status = CallLibrary(what, [&] { return call(context); });
  if (status != LUMVIK_OK) {
    throw Failure(LUMVIK_HOST_INTERNAL, what + ": " + OneLine(lumvik_last_error(context)));
  }
}

Failure LoadFailure(const std::string& what, const std::string& reason) {
  const auto is_about = [&](LibRaw_errors code) {
    return reason.find(libraw_strerror(code)) != std::string::npos;
  };
  if (is_about(LIBRAW_UNSUFFICIENT_MEMORY)) return OutOfMemory(what);
  if (is_about(LIBRAW_FILE_UNSUPPORTED) || is_about(LIBRAW_TOO_BIG)) {
    return {LUMVIK_HOST_UNSUPPORTED, what + ": " + reason};
  }
  // The system's text for a failing disk, which LibRaw also uses where a file ends early.
  if (is_about(LIBRAW_IO_ERROR)) return {LUMVIK_HOST_DAMAGED, what + ": its data is truncated or corrupt"};
  return {LUMVIK_HOST_DAMAGED, what + ": " + reason};
}

}  // namespace lumvik::host
