// The fields of output names.
#ifndef LUMVIK_APPS_BATCH_NAME_FIELDS_H_
#define LUMVIK_APPS_BATCH_NAME_FIELDS_H_

#include <string>

namespace lumvik {

// What {date}, {time}, {camera} and {lens} are replaced by.
struct ShotFields {
  std::string date;  // "2024-05-31"
  std::string time;  // "182000"
  std::string camera;
  std::string lens;
};

inline constexpr char kUnknownField[] = "unknown";

// From texts as stored in EXIF; whatever is missing or invalid is kUnknownField. The results are safe in file
// names.
ShotFields ShotFieldsOf(const std::string& datetime, const std::string& make, const std::string& model,
                        const std::string& lens);

// The text without what a file name must not have on some system: control characters, those reserved by
// Windows, slashes, a dot or space at either end. kUnknownField if nothing is left.
std::string SafeInFileName(const std::string& text);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_NAME_FIELDS_H_
