#include "develop/path_tools.h"

#include <functional>
#include <iomanip>
#include <sstream>
#include <stdexcept>

#include "develop/engine.h"
#include "files/file_paths.h"

namespace lumvik {
namespace {

const char* ReasonOf(int status, const char* reason_of_minus_4) {
  switch (status) {
    case -1:
      return "it is not a photograph, or it is damaged";
    case -2:
      return "the RAW file has no preview";
    case -3:
      return "the preview in the RAW file is damaged or in an unknown format";
    default:
      return reason_of_minus_4;
  }
}

void RunTool(const std::string& path, const char* reason_of_minus_4, const std::function<int()>& call) {
  RequireReadable(path);
  const std::string failure = "cannot read '" + path + "'";
  const int status = CallEngine(failure, call);
  if (status != 0) throw std::runtime_error(failure + ": " + ReasonOf(status, reason_of_minus_4));
}

}  // namespace

ThumbnailFile ExtractThumbnail(const std::string& path) {
  std::uint8_t* data = nullptr;
  int size = 0;
  RunTool(path, "not enough memory", [&] { return lumvik_extract_thumbnail(path.c_str(), &data, &size); });
  ThumbnailFile file;
  file.data.reset(data);
  file.size = static_cast<std::size_t>(size);
  return file;
}

std::uint64_t HashOf(const std::string& path) {
  std::uint64_t hash = 0;
  RunTool(path, "the preview in the RAW file cannot be decoded",
          [&] { return lumvik_phash(path.c_str(), &hash); });
  return hash;
}

std::string HexOf(std::uint64_t hash) {
  std::ostringstream text;
  text << std::hex << std::setw(16) << std::setfill('0') << hash;
  return text.str();
}

}  // namespace lumvik
