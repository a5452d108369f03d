#include "metadata/raw_facts.h"

#include <libraw/libraw.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <limits>
#include <memory>

#include "files/file_reading.h"

namespace lumvik::host {
namespace {

constexpr std::size_t kDatetimeLength = 19;
constexpr double kNoPosition = std::numeric_limits<double>::quiet_NaN();

// LibRaw keeps the capture time as seconds, by the time zone of this process. In an hour that daylight saving
// skips, the text cannot be recovered from it, so take it from the tags.
class DatetimeReader {
 public:
  static void InspectTag(void* reader, int tag, int /*type*/, int length, unsigned /*order*/, void* stream,
                         INT64 /*base*/) {
    constexpr int kTagMask = 0xFFFF;  // the higher bits identify the directory
    constexpr int kDateTime = 0x0132;
    constexpr int kDateTimeOriginal = 0x9003;
    auto& self = *static_cast<DatetimeReader*>(reader);
    auto& input = *static_cast<LibRaw_abstract_datastream*>(stream);
    if ((tag & kTagMask) == kDateTimeOriginal) ReadText(input, length, self.original_);
    if ((tag & kTagMask) == kDateTime) ReadText(input, length, self.changed_);
  }

  std::string Text() const { return original_[0] != '\0' ? original_.data() : changed_.data(); }

 private:
  using TextBuffer = std::array<char, kDatetimeLength + 1>;

  // The first of several, which is that of the photograph.
  static void ReadText(LibRaw_abstract_datastream& stream, int length, TextBuffer& text) {
    if (text[0] != '\0' || length < static_cast<int>(kDatetimeLength)) return;
    stream.read(text.data(), 1, kDatetimeLength);
    if (std::isdigit(static_cast<unsigned char>(text[0])) == 0) text = {};  // blanks: unknown
  }

  TextBuffer original_{};
  TextBuffer changed_{};
};

std::int32_t ExifOrientation(int flip) {
  // LibRaw's bits: mirrored horizontally, mirrored vertically, transposed.
  constexpr std::array<std::int32_t, 8> kOrientations = {1, 2, 4, 3, 5, 8, 6, 7};
  return kOrientations[static_cast<unsigned>(flip) % kOrientations.size()];
}

// Cameras without an electronic lens write zeros or dashes.
bool IsName(const std::string& lens) {
  return std::any_of(lens.begin(), lens.end(), [](unsigned char c) { return c >= '1' && c <= '9'; }) &&
         std::any_of(lens.begin(), lens.end(), [](unsigned char c) { return std::isalpha(c) != 0; });
}

std::string LensOfRaw(const libraw_lensinfo_t& lens) {
  for (const std::string name : {lens.Lens, lens.makernotes.Lens}) {
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

RawFacts FactsOf(const libraw_data_t& data, const std::string& datetime) {
  RawFacts facts;
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
  return facts;
}

}  // namespace

std::optional<RawFacts> ReadRawFacts(const std::string& path) {
  DatetimeReader datetime;
  const auto raw = std::make_unique<LibRaw>();   // too large for the stack
  raw->set_dataerror_handler(nullptr, nullptr);  // the default one writes to standard error
  raw->set_exifparser_handler(&DatetimeReader::InspectTag, &datetime);
  if (raw->open_file(PathOf(path).c_str()) != LIBRAW_SUCCESS) return std::nullopt;
  if (raw->adjust_sizes_info_only() != LIBRAW_SUCCESS) return std::nullopt;
  return FactsOf(raw->imgdata, datetime.Text());
}

}  // namespace lumvik::host
