// Marks in saved images.
#include "save/mark.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <opencv2/imgcodecs.hpp>
#include <optional>
#include <string>
#include <vector>

#include "base/failure.h"
#include "color/color_profile.h"
#include "color/embedded_profile.h"
#include "files/file_reading.h"
#include "files/format.h"
#include "files/image_parts.h"
#include "files/intact_mark.h"
#include "files/jpeg_segments.h"
#include "files/png_chunks.h"
#include "files/tiff_reading.h"
#include "files/xmp_part.h"
#include "lumvik_host.h"
#include "metadata/metadata_fixture.h"
#include "photo/test_photos.h"
#include "support/file_bytes.h"
#include "support/temp_dir.h"

namespace lumvik::host::test {
namespace {

using lumvik::test::ReadBytes;
using lumvik::test::TempDir;
using ::testing::HasSubstr;

struct MarkedKind {
  const char* name;
  lumvik_host_format format;
  int bits;
};
constexpr MarkedKind kMarkedKinds[] = {{"a.jpg", LUMVIK_HOST_FORMAT_JPEG, 8},
                                       {"a.png", LUMVIK_HOST_FORMAT_PNG, 8},
                                       {"b.png", LUMVIK_HOST_FORMAT_PNG, 16},
                                       {"a.tif", LUMVIK_HOST_FORMAT_TIFF, 16}};

const std::string kDifficultMark = "a \"quote\", it's <b>&amp;</b> & größer > 日本 \xF0\x9F\x93\xB7";

// Small, so that every byte can be tried.
std::string EncodedForMark(lumvik_host_format format) {
  cv::Mat image(6, 7, format == LUMVIK_HOST_FORMAT_TIFF ? CV_16UC3 : CV_8UC3);
  cv::RNG(5).fill(image, cv::RNG::UNIFORM, 0, 255);
  std::vector<uint8_t> bytes;
  const char* const extension = format == LUMVIK_HOST_FORMAT_JPEG  ? ".jpg"
                                : format == LUMVIK_HOST_FORMAT_PNG ? ".png"
                                                                   : ".tif";
  cv::imencode(extension, image, bytes);
  return {bytes.begin(), bytes.end()};
}

// "(none)" without an intact mark.
std::string MarkReadFrom(const std::string& path) {
  char* mark = nullptr;
  const lumvik_host_status status = lumvik_host_read_mark(path.c_str(), &mark);
  if (status != LUMVIK_HOST_OK) {
    EXPECT_EQ(status, LUMVIK_HOST_NOT_FOUND) << lumvik_host_last_error();
    EXPECT_EQ(mark, nullptr);
    return "(none)";
  }
  std::string text = mark;
  lumvik_host_free(mark);
  return text;
}

std::size_t CountOf(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

// The number of places for XMP packets in a file that have one.
std::size_t CountPackets(const std::string& image, lumvik_host_format format) {
  std::size_t count = 0;
  switch (format) {
    case LUMVIK_HOST_FORMAT_JPEG:
      for (const JpegSegment& segment : JpegSegments(image)) {
        if (segment.marker == kJpegApp1 && segment.payload.substr(0, 28) == "http://ns.adobe.com/xap/1.0/")
          ++count;
      }
      return count;
    case LUMVIK_HOST_FORMAT_PNG:
      for (const PngChunk& chunk : PngChunks(image)) {
        EXPECT_TRUE(chunk.is_sound) << chunk.type;
        if (chunk.type.substr(1) == "TXt" && chunk.data.substr(0, 17) == "XML:com.adobe.xmp") ++count;
      }
      return count;
    default: {
      const TiffReader reader(image);
      for (const TiffEntry& entry : reader.Directories().front().entries) {
        if (entry.tag == 700) ++count;
      }
      return count;
    }
  }
}

class MarkTest : public MetadataFixture, public ::testing::WithParamInterface<MarkedKind> {
 protected:
  lumvik_host_save_options Options(lumvik_host_metadata_policy metadata, const char* mark) const {
    lumvik_host_save_options options{};
    options.struct_size = sizeof(options);
    options.metadata = metadata;
    options.bits = GetParam().bits;
    options.max_width = 40;
    options.mark = mark;
    return options;
  }

  // Returns the path.
  std::string Save(const std::string& name, const lumvik_host_save_options& options) {
    const std::string path = Path(name + std::filesystem::path(GetParam().name).extension().string());
    EXPECT_EQ(lumvik_host_save(photo_.get(), path.c_str(), &options), LUMVIK_HOST_OK)
        << lumvik_host_last_error();
    return path;
  }

  std::string SaveMarked(const std::string& name, lumvik_host_metadata_policy metadata,
                         const std::string& mark = kDifficultMark) {
    return Save(name, Options(metadata, mark.c_str()));
  }

  std::string SmallMarked() const {
    return WithMark(EncodedForMark(GetParam().format), GetParam().format, "source 1, settings 2");
  }

  PhotoHandle photo_ = OpenForTest(LUMVIK_SAMPLES "/sample_small.ARW");
};
INSTANTIATE_TEST_SUITE_P(Kinds, MarkTest, ::testing::ValuesIn(kMarkedKinds), [](const auto& kind) {
  return std::string(NameOfFormat(kind.param.format)) + std::to_string(kind.param.bits);
});

TEST_P(MarkTest, IsReadBackWithEveryMetadataPolicy) {
  for (const auto policy :
       {LUMVIK_HOST_METADATA_KEEP, LUMVIK_HOST_METADATA_NO_POSITION, LUMVIK_HOST_METADATA_NONE}) {
    const std::string path = SaveMarked(std::to_string(policy), policy);
    EXPECT_EQ(MarkReadFrom(path), kDifficultMark) << policy;
    std::filesystem::copy(path, path + ".copy");
    EXPECT_EQ(MarkReadFrom(path + ".copy"), kDifficultMark);
  }
}

TEST_P(MarkTest, IsInTheOnlyPacketWithTheOtherProperties) {
  lumvik_host_save_options options = Options(LUMVIK_HOST_METADATA_KEEP, kDifficultMark.c_str());
  options.copyright = "(c) A & B";
  const std::string path = Save("a", options);
  EXPECT_EQ(CountPackets(ReadFile(path, UINT32_MAX), GetParam().format), 1U);
  const auto image = OpenedByExiv2(path);
  EXPECT_EQ(XmpValue(*image, "Xmp.lumvik.Mark"), kDifficultMark);
  EXPECT_EQ(XmpValue(*image, "Xmp.lumvik.Digest").size(), 32U);
  EXPECT_THAT(XmpValue(*image, "Xmp.dc.rights"), HasSubstr("(c) A & B"));
  EXPECT_EQ(ExifValue(*image, "Exif.Image.Model"), "ILCE-7M3");
}

TEST_P(MarkTest, IsInItsOwnPacketWithoutMetadata) {
  const std::string path = SaveMarked("a", LUMVIK_HOST_METADATA_NONE);
  EXPECT_EQ(CountPackets(ReadFile(path, UINT32_MAX), GetParam().format), 1U);
  const auto image = OpenedByExiv2(path);
  EXPECT_EQ(XmpValue(*image, "Xmp.lumvik.Mark"), kDifficultMark);
  EXPECT_EQ(image->xmpData().count(), 2);
}

TEST_P(MarkTest, LeavesPixelsAndProfileAlone) {
  const std::string plain = Save("plain", Options(LUMVIK_HOST_METADATA_KEEP, nullptr));
  const std::string marked = SaveMarked("marked", LUMVIK_HOST_METADATA_KEEP);
  const cv::Mat expected = cv::imread(plain, cv::IMREAD_UNCHANGED);
  const cv::Mat pixels = cv::imread(marked, cv::IMREAD_UNCHANGED);
  ASSERT_EQ(pixels.type(), expected.type());
  ASSERT_EQ(pixels.size(), expected.size());
  EXPECT_EQ(cv::norm(pixels, expected, cv::NORM_INF), 0);
  const auto profile_of = [](const std::string& path) {
    return FindIccProfile(ReadFile(path, UINT32_MAX), GetParam().format);
  };
  EXPECT_EQ(profile_of(marked), profile_of(plain));
  EXPECT_TRUE(ColorProfile(profile_of(marked)).IsLikeSrgb());
  lumvik_host_integrity integrity{};
  integrity.struct_size = sizeof(integrity);
  EXPECT_EQ(lumvik_host_check_file(marked.c_str(), &integrity), LUMVIK_HOST_OK) << integrity.reason;
}

TEST_P(MarkTest, FilesWithoutAMarkHaveNone) {
  EXPECT_EQ(MarkReadFrom(Save("a", Options(LUMVIK_HOST_METADATA_KEEP, nullptr))), "(none)");
  EXPECT_THAT(lumvik_host_last_error(), HasSubstr("has no intact mark"));
}

TEST_P(MarkTest, BytesAreThoseOfTheFile) {
  lumvik_host_save_options options = Options(LUMVIK_HOST_METADATA_NONE, "m");
  options.format = GetParam().format;
  const std::string path = Save("a", options);
  uint8_t* data = nullptr;
  size_t size = 0;
  ASSERT_EQ(lumvik_host_save_bytes(photo_.get(), &options, &data, &size), LUMVIK_HOST_OK)
      << lumvik_host_last_error();
  EXPECT_EQ(Bytes(data, data + size), ReadBytes(path));
  lumvik_host_free(data);
}

TEST_P(MarkTest, AnyChangedByteVoidsIt) {
  const std::string marked = SmallMarked();
  ASSERT_EQ(IntactMarkIn(marked), "source 1, settings 2");
  for (std::size_t i = 0; i < marked.size(); ++i) {
    for (const int change : {0x01, 0x20, 0x80, 0xFF}) {
      std::string changed = marked;
      changed[i] = static_cast<char>(changed[i] ^ change);
      EXPECT_EQ(IntactMarkIn(changed), std::nullopt) << i << ' ' << change;
    }
  }
}

TEST_P(MarkTest, AnyOtherLengthVoidsIt) {
  const std::string marked = SmallMarked();
  for (std::size_t size = 0; size < marked.size(); ++size) {
    EXPECT_EQ(IntactMarkIn(marked.substr(0, size)), std::nullopt) << size;
    EXPECT_EQ(IntactMarkIn(std::string(marked).insert(size, 1, '\0')), std::nullopt) << size;
    EXPECT_EQ(IntactMarkIn(std::string(marked).erase(size, 1)), std::nullopt) << size;
  }
  EXPECT_EQ(IntactMarkIn(marked + '\0'), std::nullopt);
  EXPECT_EQ(IntactMarkIn(marked + marked), std::nullopt);
}

TEST_P(MarkTest, MetadataAddedByAnotherProgramVoidsIt) {
  const std::string path = SaveMarked("a", LUMVIK_HOST_METADATA_KEEP, "m");
  ASSERT_EQ(MarkReadFrom(path), "m");
  const auto image = OpenedByExiv2(path);
  image->xmpData()["Xmp.xmp.Rating"] = "5";
  image->writeMetadata();
  EXPECT_EQ(MarkReadFrom(path), "(none)");
  EXPECT_EQ(XmpValue(*OpenedByExiv2(path), "Xmp.lumvik.Mark"), "m");
}

TEST_P(MarkTest, SecondMarkReplacesTheFirst) {
  const std::string marked = WithMark(SmallMarked(), GetParam().format, "second");
  EXPECT_EQ(IntactMarkIn(marked), "second");
  EXPECT_EQ(CountOf(marked, "source 1"), GetParam().format == LUMVIK_HOST_FORMAT_TIFF ? 1U : 0U);
  EXPECT_EQ(CountPackets(marked, GetParam().format), 1U);
}

TEST_P(MarkTest, MayBeEmptyAndAsLongAsDocumented) {
  for (const std::string& mark : {std::string(), std::string(1000, '&')}) {
    EXPECT_EQ(MarkReadFrom(SaveMarked(std::to_string(mark.size()), LUMVIK_HOST_METADATA_KEEP, mark)), mark);
  }
}

TEST_P(MarkTest, InvalidMarksAreReportedAndNothingIsWritten) {
  for (const std::string& mark : {std::string(1001, 'a'), std::string("a\xFF"), std::string("\xED\xA0\x80"),
                                  std::string("a\nb"), std::string("\x01"), std::string("\x7F")}) {
    const lumvik_host_save_options options = Options(LUMVIK_HOST_METADATA_NONE, mark.c_str());
    const std::string path = Path(GetParam().name);
    EXPECT_EQ(lumvik_host_save(photo_.get(), path.c_str(), &options), LUMVIK_HOST_INVALID_ARGUMENT);
    EXPECT_THAT(lumvik_host_last_error(), HasSubstr("the mark "));
    EXPECT_FALSE(std::filesystem::exists(path));
  }
}

TEST_P(MarkTest, TextWithAWrongDigestIsNone) {
  const std::string marked = SmallMarked();
  const std::string path = Path("a.txt");
  std::ofstream(path, std::ios::binary) << "x" << marked;
  EXPECT_EQ(MarkReadFrom(path), "(none)");
  std::ofstream(path, std::ios::binary) << "<lumvik:Mark>a</lumvik:Mark><lumvik:Digest>";
  EXPECT_EQ(MarkReadFrom(path), "(none)");
}

TEST(ReadMarkTest, FailuresHaveTheirOwnTexts) {
  const TempDir dir;
  char* mark = nullptr;
  EXPECT_EQ(lumvik_host_read_mark(dir.File("none.jpg").c_str(), &mark), LUMVIK_HOST_NOT_FOUND);
  EXPECT_THAT(lumvik_host_last_error(), HasSubstr("there is no such file"));
  EXPECT_EQ(lumvik_host_read_mark(dir.path().string().c_str(), &mark), LUMVIK_HOST_INVALID_ARGUMENT);
  EXPECT_THAT(lumvik_host_last_error(), HasSubstr("it is a folder"));
  EXPECT_EQ(lumvik_host_read_mark(nullptr, &mark), LUMVIK_HOST_INVALID_ARGUMENT);
  EXPECT_EQ(lumvik_host_read_mark("a.jpg", nullptr), LUMVIK_HOST_INVALID_ARGUMENT);
  EXPECT_EQ(mark, nullptr);
}

TEST(ReadMarkTest, EmptyFileHasNone) {
  const TempDir dir;
  std::ofstream(dir.File("a.jpg")).close();
  EXPECT_EQ(MarkReadFrom(dir.File("a.jpg")), "(none)");
}

TEST(MarkedPacketTest, ThatDoesNotFitInAJpegIsUnsupported) {
  const std::string jpeg = EncodedForMark(LUMVIK_HOST_FORMAT_JPEG);
  std::string packet = "<rdf:RDF></rdf:RDF>";
  packet.append(65400, ' ');
  const std::string payload = std::string("http://ns.adobe.com/xap/1.0/") + '\0' + packet;
  const std::string full = InsertIntoJpeg(jpeg, MakeJpegSegment(kJpegApp1, payload));
  try {
    WithMark(full, LUMVIK_HOST_FORMAT_JPEG, "a mark that is longer than what is left of the segment");
    FAIL() << "marked";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.GetStatus(), LUMVIK_HOST_UNSUPPORTED);
  }
}

TEST(MarkedPacketTest, ThatWouldHideTheMarkIsUnsupported) {
  const std::string zeros(32, '0');
  for (const auto format : {LUMVIK_HOST_FORMAT_JPEG, LUMVIK_HOST_FORMAT_PNG, LUMVIK_HOST_FORMAT_TIFF}) {
    for (const std::string& end : {std::string(), zeros}) {
      const std::string packet = "<rdf:RDF></rdf:RDF></lumvik:Mark><lumvik:Digest>" + end;
      const std::string image = ReplaceXmp(EncodedForMark(format), format, packet);
      try {
        ADD_FAILURE() << "marked as " << IntactMarkIn(WithMark(image, format, "mark")).value_or("(none)");
      } catch (const Failure& failure) {
        EXPECT_EQ(failure.GetStatus(), LUMVIK_HOST_UNSUPPORTED);
      }
    }
  }
}

}  // namespace
}  // namespace lumvik::host::test
