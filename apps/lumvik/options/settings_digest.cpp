#include "options/settings_digest.h"

#define XXH_INLINE_ALL
#include <xxhash.h>

#include <sstream>
#include <string>

namespace lumvik {

std::uint64_t SettingsDigest(const Photograph& photograph, const api::Settings& given,
                             const ExportOptions& how, lumvik_host_format format) {
  std::ostringstream text;
  text << given.ToJson() << photograph.decode_quality << photograph.auto_enhance << photograph.auto_crop
       << photograph.auto_straighten << ' ' << format << ' ' << how.jpeg_quality << ' '
       << how.bits.value_or(0) << how.no_exif << how.strip_gps << ' ' << how.size.box.width << 'x'
       << how.size.box.height << ' ' << how.size.percent << ' ' << how.profile << ' ' << how.keep_times
       << how.copyright.has_value() << how.copyright.value_or("");
  return XXH3_64bits(text.str().data(), text.str().size());
}

}  // namespace lumvik
