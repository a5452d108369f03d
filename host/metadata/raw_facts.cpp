#include "metadata/raw_facts.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <cstdio>
#include <limits>
#include <memory>
#include <string_view>

#include "base/fixed_text.h"
#include "image/exif_info.h"
#include "image/guarded_libraw.h"

namespace lumvik::host {
namespace {

constexpr std::size_t kDatetimeLength = 19;
constexpr double kNoPosition = std::numeric_limits<double>::quiet_NaN();

// LibRaw keeps the capture time as seconds, by the time zone of this process. In an hour that daylight saving
// skips, the text cannot be recovered from it, so take it from the tags.
class DatedLibRaw : public GuardedLibRaw {
 public:
  DatedLibRaw() : guard_(callbacks.exif_cb), guard_data_(callbacks.exifparser_data) {
    set_exifparser_handler(ReadTag, this);
  }

  std::string Datetime() const { return original_[0] != '\0' ? original_.data() : changed_.data(); }

 private:
  using TextBuffer = std::array<char, kDatetimeLength + 1>;

  static void ReadTag(void* self, int tag, int type, int count, unsigned order, void* stream, INT64 base) {
    constexpr int kTagMask = 0xFFFF;  // the higher bits identify the directory
    constexpr int kDateTime = 0x0132;
    constexpr int kDateTimeOriginal = 0x9003;
    auto& raw = *static_cast<DatedLibRaw*>(self);
    auto& input = *static_cast<LibRaw_abstract_datastream*>(stream);
    if ((tag & kTagMask) == kDateTimeOriginal) ReadText(input, count, raw.original_);
    if ((tag & kTagMask) == kDateTime) ReadText(input, count, raw.changed_);
    raw.guard_(raw.guard_data_, tag, type, count, order, stream, base);
  }

  // Leaves the stream where it was. The first of several texts is that of the photograph.
  static void ReadText(LibRaw_abstract_datastream& stream, int count, TextBuffer& text) {
    if (text[0] != '\0' || count < static_cast<int>(kDatetimeLength)) return;
    const INT64 position = stream.tell();
    stream.read(text.data(), 1, kDatetimeLength);
    stream.seek(position, SEEK_SET);
    if (std::isdigit(static_cast<unsigned char>(text[0])) == 0) text = {};  // blanks: unknown
  }

  exif_parser_callback guard_;
  void* guard_data_;
  TextBuffer original_{};
  TextBuffer changed_{};
};

std::int32_t ExifOrientation(int flip) {
  // LibRaw's bits: mirrored horizontally, mirrored vertically, transposed.
  constexpr std::array<std::int32_t, 8> kOrientations = {1, 2, 4, 3, 5, 8, 6, 7};
  return kOrientations[static_cast<unsigned>(flip) % kOrientations.size()];
}

// Cameras without an electronic lens write zeros or dashes.
bool IsName(std::string_view lens) {
  return std::any_of(lens.begin(), lens.end(), [](unsigned char c) { return c >= '1' && c <= '9'; }) &&
         std::any_of(lens.begin(), lens.end(), [](unsigned char c) { return std::isalpha(c) != 0; });
}

std::string LensOfRaw(const libraw_lensinfo_t& lens) {
  for (const char* name : {lens.Lens, lens.makernotes.Lens}) {
    if (IsName(name)) return name;
  }
  return {};
}

double Degrees(const float (&parts)[3], char reference) {
  constexpr double kMinutes = 60;
  constexpr double kSeconds = 3600;
  const double degrees = parts[0] + parts[1] / kMinutes + parts[2] / kSeconds;
  return reference == 'S' || reference == 'W' ? -degrees : degrees;
}

ExifInfo BasicInfo(const libraw_data_t& data) {
  DecodedImage decoded;
  decoded.iso_speed = data.other.iso_speed;
  decoded.shutter = data.other.shutter;
  decoded.aperture = data.other.aperture;
  decoded.focal_len = data.other.focal_len;
  CopyText(decoded.make, data.idata.make);
  CopyText(decoded.model, data.idata.model);
  return ExifInfoFromDecoded(decoded);
}

// From the multipliers of the camera and its matrix for daylight.
WhitePoint AsShotOf(const libraw_data_t& data) {
  constexpr std::size_t kColors = 3;
  if (data.idata.colors != static_cast<int>(kColors)) return {};
  ColorMatrix matrix{};
  std::array<double, kColors> multipliers{};
  for (std::size_t i = 0; i < kColors; ++i) {
    multipliers[i] = data.color.cam_mul[i];
    for (std::size_t j = 0; j < kColors; ++j) matrix[i][j] = data.color.cam_xyz[i][j];
  }
  return WhitePointOfCamera(matrix, multipliers);
}

RawFacts FactsOf(const libraw_data_t& data, const std::string& datetime) {
  RawFacts facts;
  facts.basic = BasicInfo(data);
  const libraw_image_sizes_t& sizes = data.sizes;
  constexpr int kTransposed = 4;
  const bool transposed = (sizes.flip & kTransposed) != 0;
  facts.width = transposed ? sizes.iheight : sizes.iwidth;
  facts.height = transposed ? sizes.iwidth : sizes.iheight;
  facts.orientation = ExifOrientation(sizes.flip);
  facts.lens = LensOfRaw(data.lens);
  facts.datetime = datetime;
  const libraw_gps_info_t& gps = data.other.parsed_gps;
  facts.latitude = gps.gpsparsed != 0 ? Degrees(gps.latitude, gps.latref) : kNoPosition;
  facts.longitude = gps.gpsparsed != 0 ? Degrees(gps.longitude, gps.longref) : kNoPosition;
  facts.as_shot = AsShotOf(data);
  return facts;
}

}  // namespace

std::optional<RawFacts> ReadRawFacts(const std::string& path) {
  const auto raw = std::make_unique<DatedLibRaw>();  // too large for the stack
  if (raw->OpenFile(path) != LIBRAW_SUCCESS) return std::nullopt;
  if (raw->adjust_sizes_info_only() != LIBRAW_SUCCESS) return std::nullopt;
  return FactsOf(raw->imgdata, raw->Datetime());
}

}  // namespace lumvik::host
