#include "image/exif_info.h"

#include <cmath>
#include <limits>
#include <optional>

#include "base/fixed_text.h"
#include "image/exif_data.h"

namespace lumvik {
namespace {

constexpr int kGpsLatitudeRef = 1;
constexpr int kGpsLatitude = 2;
constexpr int kGpsLongitudeRef = 3;
constexpr int kGpsLongitude = 4;
constexpr unsigned kGpsComponents = 3;
constexpr double kNoPosition = std::numeric_limits<double>::quiet_NaN();

// Whether the entry has this format and holds at least `components` values. A file may claim any format and
// size for any tag.
bool Holds(const ExifEntry* entry, ExifFormat format, unsigned components) {
  return entry != nullptr && entry->format == format && entry->components >= components &&
         entry->data != nullptr && entry->size >= components * exif_format_get_size(format);
}

class ExifReader {
 public:
  explicit ExifReader(ExifData& data) : data_(data), order_(exif_data_get_byte_order(&data)) {}

  ExifEntry* Find(ExifIfd ifd, int tag) const {
    return exif_content_get_entry(data_.ifd[ifd], static_cast<ExifTag>(tag));
  }

  ExifEntry* FindInAnyIfd(int tag) const {
    for (const ExifIfd ifd :
         {EXIF_IFD_0, EXIF_IFD_1, EXIF_IFD_EXIF, EXIF_IFD_GPS, EXIF_IFD_INTEROPERABILITY}) {
      if (ExifEntry* entry = Find(ifd, tag)) return entry;
    }
    return nullptr;
  }

  // False, with the field unchanged, when there is no such entry.
  template <size_t kSize>
  bool ReadText(ExifIfd ifd, int tag, char (&field)[kSize]) const {
    ExifEntry* entry = Find(ifd, tag);
    if (entry == nullptr) return false;
    char text[256] = {};
    exif_entry_get_value(entry, text, sizeof(text));
    CopyText(field, text);
    return true;
  }

  // The first value of a SHORT entry, or of a LONG one: cameras write the image's dimensions either way.
  void ReadInteger(ExifIfd ifd, int tag, int32_t& field) const {
    const ExifEntry* entry = Find(ifd, tag);
    if (Holds(entry, EXIF_FORMAT_SHORT, 1)) {
      field = exif_get_short(entry->data, order_);
    } else if (Holds(entry, EXIF_FORMAT_LONG, 1)) {
      field = static_cast<int32_t>(exif_get_long(entry->data, order_));
    }
  }

  // Reads signed rationals as unsigned too: a negative one, which is an APEX shutter speed longer than a
  // second, becomes a huge number and its exposure time 0.
  std::optional<float> ReadRational(ExifIfd ifd, int tag) const {
    const ExifEntry* entry = Find(ifd, tag);
    if (!Holds(entry, EXIF_FORMAT_RATIONAL, 1) && !Holds(entry, EXIF_FORMAT_SRATIONAL, 1)) return {};
    return Quotient<float>(entry->data);
  }

  template <typename Number>
  Number Quotient(const unsigned char* bytes) const {
    const ExifRational value = exif_get_rational(bytes, order_);
    if (value.denominator == 0) return 0;
    return static_cast<Number>(value.numerator) / static_cast<Number>(value.denominator);
  }

 private:
  ExifData& data_;
  ExifByteOrder order_;
};

// Aperture and shutter speed may instead be in APEX units, which are base-2 logarithms (EXIF 2.3, annex C).
float FNumber(const ExifReader& reader) {
  if (const auto f_number = reader.ReadRational(EXIF_IFD_EXIF, EXIF_TAG_FNUMBER)) return *f_number;
  const auto aperture = reader.ReadRational(EXIF_IFD_EXIF, EXIF_TAG_APERTURE_VALUE);
  return aperture ? std::exp2(*aperture / 2.0F) : 0.0F;
}

float ExposureTime(const ExifReader& reader) {
  if (const auto time = reader.ReadRational(EXIF_IFD_EXIF, EXIF_TAG_EXPOSURE_TIME)) return *time;
  const auto speed = reader.ReadRational(EXIF_IFD_EXIF, EXIF_TAG_SHUTTER_SPEED_VALUE);
  return speed ? 1.0F / std::exp2(*speed) : 0.0F;
}

ExifInfo EmptyExifInfo() {
  ExifInfo info{};
  info.gps_latitude = kNoPosition;
  info.gps_longitude = kNoPosition;
  return info;
}

}  // namespace

bool ReadExifFile(const std::string& path, ExifInfo& info) {
  info = EmptyExifInfo();
  const ExifDataPtr data = LoadExifData(path);
  if (!data) return false;
  const ExifReader reader(*data);
  reader.ReadText(EXIF_IFD_0, EXIF_TAG_MAKE, info.make);
  reader.ReadText(EXIF_IFD_0, EXIF_TAG_MODEL, info.model);
  reader.ReadText(EXIF_IFD_EXIF, EXIF_TAG_LENS_MODEL, info.lens);
  info.focal_length = reader.ReadRational(EXIF_IFD_EXIF, EXIF_TAG_FOCAL_LENGTH).value_or(0.0F);
  info.f_number = FNumber(reader);
  info.exposure_time = ExposureTime(reader);
  reader.ReadInteger(EXIF_IFD_EXIF, EXIF_TAG_ISO_SPEED_RATINGS, info.iso);
  if (!reader.ReadText(EXIF_IFD_EXIF, EXIF_TAG_DATE_TIME_ORIGINAL, info.datetime)) {
    reader.ReadText(EXIF_IFD_0, EXIF_TAG_DATE_TIME, info.datetime);
  }
  reader.ReadInteger(EXIF_IFD_EXIF, EXIF_TAG_PIXEL_X_DIMENSION, info.width);
  reader.ReadInteger(EXIF_IFD_EXIF, EXIF_TAG_PIXEL_Y_DIMENSION, info.height);
  reader.ReadInteger(EXIF_IFD_0, EXIF_TAG_ORIENTATION, info.orientation);
  info.gps_latitude = ReadGpsCoordinate(*data, kGpsLatitude, kGpsLatitudeRef);
  info.gps_longitude = ReadGpsCoordinate(*data, kGpsLongitude, kGpsLongitudeRef);
  return true;
}

double ReadGpsCoordinate(ExifData& data, int value_tag, int reference_tag) {
  const ExifReader reader(data);
  const ExifEntry* value = reader.FindInAnyIfd(value_tag);
  // In an interoperability IFD, tag 2 is four bytes of text, not a latitude.
  if (!Holds(value, EXIF_FORMAT_RATIONAL, kGpsComponents)) return kNoPosition;
  const unsigned step = exif_format_get_size(EXIF_FORMAT_RATIONAL);
  const double degrees = reader.Quotient<double>(value->data) +
                         reader.Quotient<double>(value->data + step) / 60.0 +
                         reader.Quotient<double>(value->data + 2 * step) / 3600.0;
  ExifEntry* reference = reader.FindInAnyIfd(reference_tag);
  if (reference == nullptr) return degrees;
  char hemisphere[8] = {};
  exif_entry_get_value(reference, hemisphere, sizeof(hemisphere));
  return hemisphere[0] == 'S' || hemisphere[0] == 'W' ? -degrees : degrees;
}

ExifInfo ExifInfoFromDecoded(const DecodedImage& decoded) {
  ExifInfo info = EmptyExifInfo();
  CopyText(info.make, decoded.make);
  CopyText(info.model, decoded.model);
  info.focal_length = decoded.focal_len;
  info.f_number = decoded.aperture;
  info.exposure_time = decoded.shutter;
  // A damaged file may state any number.
  constexpr float kTooLarge = 2147483648.0F;
  if (std::fabs(decoded.iso_speed) < kTooLarge) info.iso = static_cast<int32_t>(decoded.iso_speed);
  info.width = decoded.width;
  info.height = decoded.height;
  info.orientation = decoded.orientation;
  return info;
}

}  // namespace lumvik
