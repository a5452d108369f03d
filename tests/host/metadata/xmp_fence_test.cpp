// Limits of XMP packets, which keep exiv2 from parsing for minutes or running out of stack.
#include "modules/xmp_fence.h"

#include <gmock/gmock.h>
#include <zlib.h>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/failure.h"
#include "files/byte_reading.h"
#include "files/image_parts.h"
#include "files/png_chunks.h"
#include "files/xmp_part.h"
#include "metadata/metadata_fixture.h"
#include "metadata/metadata_module.h"
#include "modules/refused_xmp.h"
#include "support/file_bytes.h"

namespace lumvik::host::test {
namespace {

using lumvik::metadata::FindRefusedXmp;
using lumvik::metadata::RefusedXmp;
using lumvik::metadata::XmpFault;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

std::string Packet(const std::string& attributes, const std::string& elements = "") {
  return "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
         "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\"><rdf:Description rdf:about=\"\" "
         "xmlns:crs=\"http://ns.adobe.com/camera-raw-settings/1.0/\" "
         "xmlns:dc=\"http://purl.org/dc/elements/1.1/\" " +
         attributes + ">" + elements + "</rdf:Description></rdf:RDF></x:xmpmeta>";
}

std::string Repeated(std::size_t count, const std::function<std::string(std::size_t)>& text) {
  std::string all;
  for (std::size_t i = 0; i < count; ++i) all += text(i);
  return all;
}

std::string Attributes(std::size_t count) {
  return Repeated(count, [](std::size_t i) { return " crs:P" + std::to_string(i) + "='1'"; });
}

std::string Structures(std::size_t count, std::size_t size) {
  return Repeated(count, [size](std::size_t i) {
    const std::string name = "crs:S" + std::to_string(i);
    return "<" + name + "><rdf:Description" + Attributes(size) + "/></" + name + ">";
  });
}

std::string List(const std::string& items) {
  return "<crs:L><rdf:Seq>" + items + "</rdf:Seq></crs:L>";
}

std::string Nested(std::size_t depth) {
  const auto times = [depth](const char* text) {
    return Repeated(depth, [text](std::size_t) { return text; });
  };
  return times("<crs:S>") + times("</crs:S>");
}

constexpr char kTooManyProperties[] = "it has more than 2000 properties in one structure";

TEST(XmpFenceTest, PacketsWithinTheLimitsPass) {
  EXPECT_EQ(XmpFault(Packet("crs:Exposure2012=\"+0.5\"")), "");
  EXPECT_EQ(XmpFault(Packet(Attributes(1999))), "");  // and rdf:about
  EXPECT_EQ(XmpFault(Packet("", Structures(24, 2000))), "");
  EXPECT_EQ(XmpFault(Packet("", List(Repeated(200000, [](auto) { return "<rdf:li>0, 0</rdf:li>"; })))), "");
  EXPECT_EQ(XmpFault(Packet("", Nested(97))), "");  // in three
  EXPECT_EQ(XmpFault(Packet(Repeated(
                252, [](std::size_t i) { return " xmlns:n" + std::to_string(i) + "=\"http://n/\""; }))),
            "");
}

TEST(XmpFenceTest, EachLimitIsNamed) {
  EXPECT_EQ(XmpFault(Packet(Attributes(2000))), kTooManyProperties);
  EXPECT_EQ(XmpFault(Packet("", Structures(1, 2001))), kTooManyProperties);
  EXPECT_EQ(XmpFault(Packet("", Structures(25, 2000))), "it has more than 50000 properties");
  EXPECT_EQ(XmpFault(Packet("", List(Repeated(200001, [](auto) { return "<rdf:li/>"; })))),
            "it has more than 200000 list items");
  EXPECT_EQ(XmpFault(Packet("", Nested(98))), "it has more than 100 nested elements");
  EXPECT_EQ(XmpFault(Packet("", Nested(1000000))), "it has more than 100 nested elements");
  EXPECT_EQ(XmpFault(Packet(Repeated(
                256, [](std::size_t i) { return " xmlns:n" + std::to_string(i) + "=\"http://n/\""; }))),
            "it has more than 256 namespaces");
  EXPECT_EQ(XmpFault(Packet("crs:A=\"" + std::string(16U << 20U, 'a') + "\"")), "it is larger than 16 MB");
  EXPECT_EQ(XmpFault(Packet("crs:A=\"" + std::string(2000001, '\n') + "\"")),
            "it has more than 2000000 lines");
  const std::string long_name = "crs:" + std::string(10000, 'N');
  EXPECT_EQ(
      XmpFault(Packet("", "<" + long_name + ">" + List(Repeated(10000, [](auto) { return "<rdf:li/>"; })) +
                              "</" + long_name + ">")),
      "its names are too long");
}

// Properties of all descriptions of the photograph are of one structure.
TEST(XmpFenceTest, PropertiesAreCountedAcrossDescriptions) {
  std::string packet = Packet("");
  const std::string end = "</rdf:RDF></x:xmpmeta>";
  packet.replace(packet.find(end), end.size(),
                 Repeated(2100, [](auto) { return "<rdf:Description crs:P=\"1\"/>"; }) + end);
  EXPECT_EQ(XmpFault(packet), kTooManyProperties);
}

TEST(XmpFenceTest, MarkupThatIsNotATagIsSkipped) {
  const std::string tags = Repeated(3000, [](auto) { return "<crs:P/>"; });
  EXPECT_EQ(XmpFault(Packet("", "<!-- " + tags + " -->")), "");
  EXPECT_EQ(XmpFault(Packet("", "<crs:A><![CDATA[" + tags + "]]></crs:A>")), "");
  EXPECT_EQ(XmpFault("<?xpacket begin='' " + tags + "?>" + Packet("")), "");
  EXPECT_EQ(XmpFault(Packet("crs:A='<b/>\"' crs:B = \"'/>\"")), "");
  EXPECT_EQ(XmpFault(Packet("", tags)), kTooManyProperties);
}

TEST(XmpFenceTest, EntitiesAreRefused) {
  const std::string laughs =
      "<!DOCTYPE x [<!ENTITY a \"lol\">" +
      Repeated(30,
               [](std::size_t i) {
                 const std::string inner = i == 0 ? "a" : "a" + std::to_string(i);
                 return "<!ENTITY a" + std::to_string(i + 1) + " \"&" + inner + ";&" + inner + ";\">";
               }) +
      "]>";
  EXPECT_EQ(XmpFault(laughs + Packet("", "<crs:A>&a30;</crs:A>")), "it has a document type declaration");
}

TEST(XmpFenceTest, OtherEncodingsAreRefused) {
  std::string wide;
  for (const char c : Packet("")) wide += {c, '\0'};
  EXPECT_EQ(XmpFault(wide), "it is not in UTF-8");
  EXPECT_EQ(XmpFault(Packet("") + std::string(5, '\0')), "");
}

TEST(XmpFenceTest, MalformedTagsAreRefused) {
  for (const char* packet : {"<", "<a", "<a b", "<a b>", "<a b=>", "<a b=c>", "<a b='c", "< a>", "<!--", "<?",
                             "<![CDATA[", "</a", "<a /", "<a / >"}) {
    EXPECT_EQ(XmpFault(packet), "it is not XMP, or it is damaged") << packet;
  }
  for (const char* packet : {"", "no tags", "</a></a><b/>", "<a/>"})
    EXPECT_EQ(XmpFault(packet), "") << packet;
}

// Where exiv2 finds XMP in photographs.
class FencedPhotographTest : public MetadataFixture {
 protected:
  static std::string Content(const std::string& path) {
    const std::vector<std::uint8_t> bytes = lumvik::test::ReadBytes(path);
    return {bytes.begin(), bytes.end()};
  }

  std::string Write(const std::string& name, const std::string& content) const {
    return lumvik::test::WriteBytes(Path(name), {content.begin(), content.end()});
  }

  // Photographs with this packet, by format and way of storing it.
  std::vector<std::string> Photographs(const std::string& packet) const {
    std::vector<std::string> paths = {
        Write("in.jpg", ReplaceXmp(Content(PlainImage("plain.jpg")), LUMVIK_HOST_FORMAT_JPEG,
                                   packet.substr(0, packet.size() > kMaxInJpeg ? 0 : packet.size()))),
        Write("in.png", ReplaceXmp(Content(PlainImage("plain.png")), LUMVIK_HOST_FORMAT_PNG, packet)),
        Write("in.tif", ReplaceXmp(Content(PlainImage("plain.tif")), LUMVIK_HOST_FORMAT_TIFF, packet)),
        WithChunk("compressed.png", "iTXt",
                  std::string("XML:com.adobe.xmp\0\1\0\0\0", 22) + Deflated(packet)),
        WithChunk("profile.png", "zTXt",
                  std::string("Raw profile type xmp\0\0", 22) + Deflated(RawProfile(packet))),
        WithChunk("text.png", "tEXt", std::string("Raw profile type xmp\0", 21) + RawProfile(packet)),
        WebpWith("in.webp", packet)};
    if (packet.size() > kMaxInJpeg) paths.erase(paths.begin());
    return paths;
  }

  std::string CompressedPng(const std::string& packet) const {
    return WithChunk("compressed.png", "iTXt",
                     std::string("XML:com.adobe.xmp\0\1\0\0\0", 22) + Deflated(packet));
  }

  static Failure FailureOf(const std::string& path) {
    try {
      ReadCameraRawSettings(path);
    } catch (const Failure& failure) {
      return failure;
    }
    return {LUMVIK_HOST_OK, ""};
  }

 private:
  static constexpr std::size_t kMaxInJpeg = 65000;

  static std::string Deflated(const std::string& text) {
    std::string packed(compressBound(static_cast<uLong>(text.size())), '\0');
    auto size = static_cast<uLongf>(packed.size());
    EXPECT_EQ(compress(reinterpret_cast<Bytef*>(packed.data()), &size,
                       reinterpret_cast<const Bytef*>(text.data()), static_cast<uLong>(text.size())),
              Z_OK);
    return packed.substr(0, size);
  }

  static std::string RawProfile(const std::string& bytes) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    constexpr std::size_t kPerLine = 36;
    std::string text = "\nxmp\n" + std::to_string(bytes.size());
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      if (i % kPerLine == 0) text += '\n';
      text += {kDigits[static_cast<unsigned char>(bytes[i]) >> 4U], kDigits[bytes[i] & 0xF]};
    }
    return text + '\n';
  }

  std::string WithChunk(const std::string& name, const char* type, const std::string& data) const {
    return Write(name, InsertIntoPng(Content(PlainImage("plain.png")), MakePngChunk(type, data)));
  }

  std::string WebpWith(const std::string& name, const std::string& packet) const {
    const std::string path = PlainImage(name);
    const auto image = OpenedByExiv2(path);
    image->setXmpPacket(packet);
    image->writeXmpFromPacket(true);
    image->writeMetadata();
    return path;
  }
};

TEST_F(FencedPhotographTest, XmpWithinTheLimitsIsRead) {
  for (const std::string& path : Photographs(Packet("crs:Exposure2012=\"+0.50\""))) {
    const CameraRawSettings settings = ReadCameraRawSettings(path);
    ASSERT_EQ(settings.properties.size(), 1U) << path;
    EXPECT_EQ(settings.properties[0].first, "Exposure2012") << path;
  }
}

TEST_F(FencedPhotographTest, OtherXmpIsRefused) {
  for (const std::string& packet :
       {Packet(Attributes(2100)), Packet(Attributes(2100)) + std::string(100000, ' ')}) {
    const std::vector<std::string> paths = Photographs(packet);
    EXPECT_GE(paths.size(), 6U);
    for (const std::string& path : paths) {
      const Failure failure = FailureOf(path);
      EXPECT_EQ(failure.GetStatus(), LUMVIK_HOST_DAMAGED) << path;
      EXPECT_EQ(failure.what(), "cannot read '" + path + "': its XMP cannot be used: " + kTooManyProperties);
    }
  }
}

TEST_F(FencedPhotographTest, AnXmpFileIsRefused) {
  const std::string path = Write("in.xmp", Packet(Attributes(2100)));
  EXPECT_EQ(FailureOf(path).GetStatus(), LUMVIK_HOST_DAMAGED);
  EXPECT_EQ(FailureOf(path).what(), "cannot read '" + path + "': " + kTooManyProperties);
  Write("in.xmp", Packet("", Nested(1000000)));
  EXPECT_EQ(FailureOf(path).what(), "cannot read '" + path + "': it has more than 100 nested elements");
  Write("in.xmp", Packet("crs:A=\"" + std::string(17U << 20U, 'a') + "\""));
  EXPECT_EQ(FailureOf(path).what(), "cannot read '" + path + "': it is larger than 16 MB");
}

// The rest of the metadata is copied.
TEST_F(FencedPhotographTest, RefusedXmpIsLeftOutOfCopies) {
  for (const std::string& path : Photographs(Packet("dc:source=\"film\"" + Attributes(2100)))) {
    {
      const auto image = OpenedByExiv2(path);  // in the form that exiv2 writes from now on
      image->exifData()["Exif.Image.Artist"] = "Ada";
      image->writeMetadata();
    }
    const std::string out = PlainImage("out.jpg");
    EXPECT_THAT(CopyMetadataForTest(path, out),
                ElementsAre("damaged XMP of 'in' was left out: " + std::string(kTooManyProperties)))
        << path;
    const auto copy = OpenedByExiv2(out);
    EXPECT_EQ(ExifValue(*copy, "Exif.Image.Artist"), "Ada") << path;
    EXPECT_TRUE(copy->xmpData().empty()) << path;
  }
}

TEST_F(FencedPhotographTest, ATextThatInflatesBeyondTheLimitIsRefused) {
  const std::string path = CompressedPng(Packet("crs:A=\"" + std::string(20U << 20U, 'a') + "\""));
  EXPECT_THAT(FailureOf(path).what(), HasSubstr("larger than 16 MB"));
}

// As in files of Fujifilm, Minolta and Canon.
TEST_F(FencedPhotographTest, PacketsWithinOtherRawFormatsAreFound) {
  const std::string bad = Packet(Attributes(2100));
  const std::string tiff = ReplaceXmp(Content(PlainImage("plain.tif")), LUMVIK_HOST_FORMAT_TIFF, bad);
  const std::string raf = "FUJIFILMCCD-RAW 0201" + std::string(100, '\0') + tiff;
  ASSERT_EQ(FindRefusedXmp(raf).size(), 1U);
  const std::size_t tag_at = FindRefusedXmp(raf)[0].name_at;
  EXPECT_EQ(raf.substr(tag_at, 2), "\xBC\x02");

  const auto boxed = [](const std::string& packet) {
    const std::string uuid = "\xBE\x7A\xCF\xCB\x97\xA9\x42\xE8\x9C\x71\x99\x94\x91\xE3\xAF\xAC";
    const std::size_t size = 8 + uuid.size() + packet.size();
    return std::string(
               "\0\0\0\x18"
               "ftypcrx \0\0\0\1crx isom",
               24) +
           '\0' + static_cast<char>(size >> 16U) + static_cast<char>(size >> 8U) + static_cast<char>(size) +
           "uuid" + uuid + packet + "<a b>";  // beyond the box
  };
  ASSERT_EQ(FindRefusedXmp(boxed(bad)).size(), 1U);
  EXPECT_EQ(FindRefusedXmp(boxed(bad))[0].name_at, 32U);
  EXPECT_EQ(FindRefusedXmp(boxed(bad))[0].why, kTooManyProperties);
  EXPECT_EQ(FindRefusedXmp(boxed(Packet("crs:A=\"1\""))).size(), 0U);
}

TEST_F(FencedPhotographTest, NotMoreThanFourPacketsAreParsed) {
  std::string png = Content(PlainImage("plain.png"));
  const std::string packet = Packet("crs:A=\"1\"");
  for (int i = 1; i <= 5; ++i) {
    png = InsertIntoPng(png, MakePngChunk("iTXt", std::string("XML:com.adobe.xmp\0\0\0\0\0", 22) + packet));
    ASSERT_EQ(FindRefusedXmp(png).size(), i <= 4 ? 0U : 1U) << i;
  }
  EXPECT_EQ(FindRefusedXmp(png)[0].why, "there are more than 4 packets");
}

TEST_F(FencedPhotographTest, DamagedFilesAreSearchedWithinTheirBounds) {
  const std::string bad = Packet(Attributes(2100));
  for (const std::string& path : Photographs(bad)) {
    const std::string whole = Content(path);
    for (std::size_t size = 0; size < whole.size(); size += 1 + size / 8) {
      for (const RefusedXmp& refused : FindRefusedXmp(whole.substr(0, size))) {
        EXPECT_LT(refused.name_at, size) << path;
      }
    }
  }
  for (const char* start : {"", "I", "II", "MM", "RIFF", "\xFF\xD8", "\x89PNG\r\n\x1A\n"}) {
    EXPECT_EQ(FindRefusedXmp(start).size(), 0U);
  }
}

}  // namespace
}  // namespace lumvik::host::test
