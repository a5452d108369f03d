// The functions of the module. Exceptions end here.
#include <algorithm>
#include <cstddef>
#include <cstring>
#include <exception>
#include <exiv2/exiv2.hpp>
#include <mutex>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>

#include "modules/camera_raw_properties.h"
#include "modules/damage_log.h"
#include "modules/exiv2_file.h"
#include "modules/fitting.h"
#include "modules/metadata_copy.h"
#include "modules/metadata_interface.h"
#include "modules/metadata_reading.h"

#if defined(_WIN32)
#define LUMVIK_METADATA_API __declspec(dllexport)
#else
#define LUMVIK_METADATA_API __attribute__((visibility("default")))
#endif

extern "C" LUMVIK_METADATA_API const lumvik_metadata_functions* lumvik_metadata_module();

namespace lumvik::metadata {
namespace {

// Cuts a longer text off.
template <std::size_t kSize>
void CopyText(std::string_view text, char (&field)[kSize]) {
  const std::size_t size = std::min(text.size(), kSize - 1);
  std::memcpy(field, text.data(), size);
  field[size] = '\0';
}

// A callback asked to stop.
class Stopped : public std::exception {};

// Runs the body of a function. `failure` is its status for whatever exiv2 reports.
template <typename Body>
std::int32_t Guarded(lumvik_metadata_status failure, lumvik_metadata_error* error,
                     const Body& body) noexcept {
  try {
    return body();
  } catch (const std::bad_alloc&) {
    return LUMVIK_METADATA_OUT_OF_MEMORY;
  } catch (const Stopped&) {
    return LUMVIK_METADATA_STOPPED;
  } catch (const std::exception& exception) {
    CopyText(exception.what(), error->text);
  } catch (...) {
    CopyText("an unknown failure", error->text);
  }
  return failure;
}

class LeftOut {
 public:
  LeftOut(lumvik_metadata_left_out receive, void* user) : receive_(receive), user_(user) {}

  void operator()(const std::string& what, const std::string& why) const {
    if (receive_(user_, what.c_str(), why.c_str()) == 0) throw Stopped();
  }

 private:
  lumvik_metadata_left_out receive_;
  void* user_;
};

KeptMetadata Keep(const char* photograph, const lumvik_metadata_copy_options& options, ImageKind output,
                  const LeftOut& left_out) {
  const SourceMetadata source = ReadSoundMetadata(photograph);
  for (const auto& [kind, cause] : source.damage) left_out("damaged " + kind, cause);
  KeepOptions keep;
  keep.position = options.keep_position != 0;
  keep.is_srgb = options.is_srgb != 0;
  if (options.copyright != nullptr) keep.copyright = options.copyright;
  KeptMetadata kept = KeptOf(source, keep);
  for (const std::string& kind : RemoveUnwritable(kept)) left_out(kind, "it cannot be written");
  for (const std::string& key : RemoveTooLong(kept, output, keep.copyright.has_value())) {
    left_out(key, output == ImageKind::kJpeg ? "it is too long for a JPEG" : "it is too long for a PNG");
  }
  return kept;
}

ImageKind KindOf(const void* image, std::size_t size) {
  const std::string_view bytes(static_cast<const char*>(image), size);
  if (bytes.substr(0, 2) == "\xFF\xD8") return ImageKind::kJpeg;
  return bytes.substr(0, 4) == "\x89PNG" ? ImageKind::kPng : ImageKind::kTiff;
}

std::int32_t Copy(const char* photograph, void* image, std::size_t size,
                  const lumvik_metadata_copy_options* options, lumvik_metadata_file receive,
                  lumvik_metadata_left_out left_out, void* user, lumvik_metadata_error* error) {
  KeptMetadata kept;
  const std::int32_t status = Guarded(LUMVIK_METADATA_DAMAGED, error, [&] {
    kept = Keep(photograph, *options, KindOf(image, size), LeftOut(left_out, user));
    return LUMVIK_METADATA_OK;
  });
  if (status != LUMVIK_METADATA_OK || kept.Empty()) return status;
  return Guarded(LUMVIK_METADATA_UNWRITABLE, error, [&] {
    const ImageWithMetadata written(image, size, kept);
    return receive(user, written.Data(), written.Size()) != 0 ? LUMVIK_METADATA_OK : LUMVIK_METADATA_STOPPED;
  });
}

lumvik_metadata_status Report(const Exiv2::XmpData& xmp, lumvik_metadata_property receive, void* user) {
  for (const Property& property : DevelopProperties(xmp)) {
    std::vector<const char*> parts;
    for (const std::string& part : property.parts) parts.push_back(part.c_str());
    if (receive(user, property.prefix.c_str(), property.name.c_str(), parts.data(), parts.size()) == 0) {
      return LUMVIK_METADATA_STOPPED;
    }
  }
  return LUMVIK_METADATA_OK;
}

std::int32_t ReadPhotograph(const char* path, lumvik_metadata_frame* frame, lumvik_metadata_property receive,
                            void* user, lumvik_metadata_error* error) {
  return Guarded(LUMVIK_METADATA_DAMAGED, error, [&] {
    std::string xmp_fault;
    const Exiv2File file = OpenExiv2File(path, xmp_fault);
    if (file.get() == nullptr) return LUMVIK_METADATA_NONE;
    if (!xmp_fault.empty()) throw std::runtime_error("its XMP cannot be used: " + xmp_fault);
    *frame = FrameOf(*file);
    return Report(file->xmpData(), receive, user);
  });
}

std::int32_t ReadPacket(const char* packet, std::size_t size, lumvik_metadata_frame* frame,
                        lumvik_metadata_property receive, void* user, lumvik_metadata_error* error) {
  return Guarded(LUMVIK_METADATA_DAMAGED, error, [&] {
    const Exiv2::XmpData xmp = DecodePacket(std::string(packet, size));
    *frame = FrameOf(xmp);
    return Report(xmp, receive, user);
  });
}

std::string DatetimeOf(const Exiv2::ExifData& exif) {
  const auto entry = exif.findKey(Exiv2::ExifKey("Exif.Photo.DateTimeOriginal"));
  return entry == exif.end() ? std::string() : entry->toString();
}

std::int32_t ReadExif(const char* path, lumvik_metadata_exif* exif, lumvik_metadata_error* error) {
  return Guarded(LUMVIK_METADATA_DAMAGED, error, [&] {
    std::string ignored_xmp_fault;
    const Exiv2File file = OpenExiv2File(path, ignored_xmp_fault);
    if (file.get() == nullptr) return LUMVIK_METADATA_NONE;
    CopyText(LensOf(file->exifData()), exif->lens);
    CopyText(DatetimeOf(file->exifData()), exif->datetime);
    return LUMVIK_METADATA_OK;
  });
}

// The host library may share exiv2 with a program that uses it at the same time.
void LockToolkit(void* mutex, bool lock) {
  auto& toolkit = *static_cast<std::recursive_mutex*>(mutex);
  if (lock) {
    toolkit.lock();
  } else {
    toolkit.unlock();
  }
}

// Exiv2 does not release the namespaces that are registered when the process ends.
class OwnNamespace {
 public:
  OwnNamespace() { Exiv2::XmpProperties::registerNs(kOwnNamespace, kOwnPrefix); }
  ~OwnNamespace() {
    try {
      Exiv2::XmpProperties::unregisterNs(kOwnNamespace);
    } catch (...) {  // the process ends anyway
      return;
    }
  }
  OwnNamespace(const OwnNamespace&) = delete;
  OwnNamespace& operator=(const OwnNamespace&) = delete;
};

void InitializeExiv2() {
  static std::recursive_mutex toolkit;
  Exiv2::LogMsg::setHandler(DamageLog::Receive);  // the library writes nothing to standard error
#ifdef EXV_ENABLE_BMFF
  Exiv2::enableBMFF(true);  // CR3, off by default in older versions
#endif
  Exiv2::XmpParser::initialize(LockToolkit, &toolkit);
  static const OwnNamespace kRegistered;
}

}  // namespace
}  // namespace lumvik::metadata

const lumvik_metadata_functions* lumvik_metadata_module() {
  using namespace lumvik::metadata;
  static const lumvik_metadata_functions kFunctions = {LUMVIK_METADATA_VERSION, Copy, ReadPhotograph,
                                                       ReadPacket, ReadExif};
  try {
    InitializeExiv2();
  } catch (...) {
    return nullptr;
  }
  return &kFunctions;
}
