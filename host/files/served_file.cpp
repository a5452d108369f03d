#include "files/served_file.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <string_view>

#include "base/lower_case.h"
#include "files/file_reading.h"

namespace lumvik::host {
namespace {

constexpr std::string_view kImageExtensions[] = {".jpg", ".jpeg", ".png", ".tif", ".tiff", ".bmp", ".webp"};

}  // namespace

std::string AbsolutePath(const std::string& path) {
  std::error_code error;
  const std::filesystem::path absolute = std::filesystem::absolute(PathOf(path), error);
  return error ? path : absolute.u8string();
}

Decoder DecoderFor(const std::string& path) {
  const std::string lowered = LowerCase(path);
  const auto is_extension = [&](std::string_view extension) {
    return lowered.size() >= extension.size() &&
           lowered.compare(lowered.size() - extension.size(), extension.size(), extension) == 0;
  };
  return std::any_of(std::begin(kImageExtensions), std::end(kImageExtensions), is_extension) ? Decoder::kImage
                                                                                             : Decoder::kRaw;
}

ServedFile::ServedFile(const std::string& path, Decoder decoder)
    : decoder_(decoder), path_(AbsolutePath(path)) {
  if (DecoderFor(path_) != decoder) Substitute(path_);
}

void ServedFile::Substitute(const std::string& path) {
  if (!folder_) folder_.emplace();
  const std::filesystem::path name = folder_->Path() / (decoder_ == Decoder::kImage ? "photo.jpg" : "photo");
  PointTo(name, PathOf(AbsolutePath(path)));
  path_ = name.u8string();
}

}  // namespace lumvik::host
