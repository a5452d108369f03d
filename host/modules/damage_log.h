// What exiv2 reports about damaged metadata.
#ifndef LUMVIK_HOST_MODULES_DAMAGE_LOG_H_
#define LUMVIK_HOST_MODULES_DAMAGE_LOG_H_

#include <map>
#include <string>

namespace lumvik::metadata {

// The first cause for each kind of metadata, "EXIF", "IPTC" or "XMP".
using Damage = std::map<std::string, std::string>;

// Collects the messages of exiv2 in this thread as long as it exists.
class DamageLog {
 public:
  explicit DamageLog(Damage& damage);
  ~DamageLog();
  DamageLog(const DamageLog&) = delete;
  DamageLog& operator=(const DamageLog&) = delete;

  // For Exiv2::LogMsg, once per process.
  static void Receive(int level, const char* message);
};

}  // namespace lumvik::metadata

#endif  // LUMVIK_HOST_MODULES_DAMAGE_LOG_H_
