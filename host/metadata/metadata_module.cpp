#include "metadata/metadata_module.h"

#include "base/failure.h"

namespace lumvik::host {

void RequireMetadataModule() {
  throw Failure(LUMVIK_HOST_UNSUPPORTED, "the metadata module is not installed");
}

CameraRawSettings ReadCameraRawSettings(const std::string& /*path*/) {
  RequireMetadataModule();
  return {};
}

void CopyMetadata(const std::string& /*photograph*/, const std::string& /*image*/,
                  const MetadataOptions& /*options*/) {
  RequireMetadataModule();
}

ModuleExif ReadModuleExif(const std::string& /*path*/) {
  return {};
}

}  // namespace lumvik::host
