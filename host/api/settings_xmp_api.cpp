// Settings as XMP.
#include <memory>
#include <string>

#include "api/arguments.h"
#include "api/guard.h"
#include "api/registry.h"
#include "api/settings_handle.h"
#include "lumvik_host.h"
#include "metadata/metadata_module.h"
#include "settings/settings_export.h"
#include "settings/settings_import.h"

using namespace lumvik::host;

lumvik_host_status lumvik_host_settings_import_xmp(const char* path, lumvik_host_settings** settings,
                                                   char** report) {
  return Guarded([&] {
    RequireArgument(path, "path");
    RequireArgument(settings, "settings");
    const CameraRawSettings found = ReadCameraRawSettings(path);
    SettingsImport import = ImportSettings(found);
    std::unique_ptr<char, decltype(&TakeBack)> text(nullptr, TakeBack);
    if (report != nullptr) text.reset(LendText(ImportReport(found.file, import.properties)));
    *settings = OpenSettings(std::move(import.settings));
    if (report != nullptr) *report = text.release();
  });
}

lumvik_host_status lumvik_host_settings_to_xmp(lumvik_host_settings* settings, char** xmp) {
  return Guarded([&] {
    RequireArgument(xmp, "xmp");
    *xmp = LendText(XmpPacket(ExportSettings(ValuesOf(settings))));
  });
}
