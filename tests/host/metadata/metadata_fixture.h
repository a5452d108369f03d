// Photographs and images with metadata, read and written with exiv2.
#ifndef LUMVIK_TESTS_HOST_METADATA_METADATA_FIXTURE_H_
#define LUMVIK_TESTS_HOST_METADATA_METADATA_FIXTURE_H_

#include <gtest/gtest.h>

#include <exiv2/exiv2.hpp>
#include <memory>
#include <string>
#include <vector>

#include "metadata/metadata_module.h"
#include "support/temp_dir.h"

namespace lumvik::host::test {

// The file with its metadata.
std::unique_ptr<Exiv2::Image> OpenedByExiv2(const std::string& path);

// "(none)" without such an entry.
std::string ExifValue(const Exiv2::Image& image, const std::string& tag);
std::string XmpValue(const Exiv2::Image& image, const std::string& key);
std::string IptcValue(const Exiv2::Image& image, const std::string& key);

// The number of EXIF tags in groups whose names begin with `group`.
int TagsInGroup(const Exiv2::Image& image, const std::string& group);

// Adds the metadata of a photograph to an image file. Returns the warnings, which name the photograph 'in'.
std::vector<std::string> CopyMetadataForTest(const std::string& photograph, const std::string& image,
                                             const MetadataOptions& options = {});

class MetadataFixture : public ::testing::Test {
 protected:
  std::string Path(const std::string& name) const { return folder_.File(name); }

  // A small image without metadata, in the format of its extension. Returns its path.
  std::string PlainImage(const std::string& name) const;

 private:
  lumvik::test::TempDir folder_;
};

}  // namespace lumvik::host::test

#endif  // LUMVIK_TESTS_HOST_METADATA_METADATA_FIXTURE_H_
