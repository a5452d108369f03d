#include "metadata/metadata_fixture.h"

#include <algorithm>
#include <cstdint>
#include <opencv2/imgcodecs.hpp>

#include "support/file_bytes.h"

namespace lumvik::host::test {

std::unique_ptr<Exiv2::Image> OpenedByExiv2(const std::string& path) {
  std::unique_ptr<Exiv2::Image> image(Exiv2::ImageFactory::open(path).release());
  image->readMetadata();
  return image;
}

std::string ExifValue(const Exiv2::Image& image, const std::string& tag) {
  const auto entry = image.exifData().findKey(Exiv2::ExifKey(tag));
  return entry == image.exifData().end() ? "(none)" : entry->toString();
}

std::string XmpValue(const Exiv2::Image& image, const std::string& key) {
  const auto entry = image.xmpData().findKey(Exiv2::XmpKey(key));
  return entry == image.xmpData().end() ? "(none)" : entry->toString();
}

std::string IptcValue(const Exiv2::Image& image, const std::string& key) {
  const auto entry = image.iptcData().findKey(Exiv2::IptcKey(key));
  return entry == image.iptcData().end() ? "(none)" : entry->toString();
}

int TagsInGroup(const Exiv2::Image& image, const std::string& group) {
  const Exiv2::ExifData& exif = image.exifData();
  return static_cast<int>(std::count_if(exif.begin(), exif.end(), [&](const Exiv2::Exifdatum& tag) {
    return tag.groupName().rfind(group, 0) == 0;
  }));
}

std::vector<std::string> CopyMetadataForTest(const std::string& photograph, const std::string& image,
                                             const MetadataOptions& options) {
  const std::vector<std::uint8_t> plain = lumvik::test::ReadBytes(image);
  std::vector<std::string> warnings;
  const std::string copy = WithMetadata({plain.begin(), plain.end()}, photograph, "'in'", options, warnings);
  lumvik::test::WriteBytes(image, {copy.begin(), copy.end()});
  return warnings;
}

std::string MetadataFixture::PlainImage(const std::string& name) const {
  constexpr int kWidth = 60;
  constexpr int kHeight = 40;
  cv::Mat image(kHeight, kWidth, CV_8UC3);
  cv::randu(image, 0, 256);
  cv::imwrite(Path(name), image);
  return Path(name);
}

}  // namespace lumvik::host::test
