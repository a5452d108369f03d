// Writes the seed corpora: small files of every kind that the engine reads, whole and broken, in one folder
// for each fuzz target.
#include <filesystem>
#include <iostream>
#include <opencv2/imgcodecs.hpp>
#include <random>

#include "host/marked_images.h"
#include "support/broken_raw.h"
#include "support/exif_jpeg.h"
#include "support/file_bytes.h"
#include "support/raw_previews.h"
#include "support/raw_writer.h"

namespace lumvik::test {
namespace {

using Bytes = std::vector<uint8_t>;

class Folder {
 public:
  explicit Folder(std::filesystem::path path) : path_(std::move(path)) {
    std::filesystem::create_directories(path_);
  }

  void Add(const std::string& name, const Bytes& bytes) const { WriteBytes((path_ / name).string(), bytes); }
  void Add(const std::string& name, const std::string& text) const {
    Add(name, Bytes(text.begin(), text.end()));
  }

 private:
  std::filesystem::path path_;
};

cv::Mat Picture(int type = CV_8UC3) {
  cv::Mat picture(32, 48, type);
  cv::RNG(1).fill(picture, cv::RNG::UNIFORM, 0, 256);
  return picture;
}

void AddImages(const Folder& folder) {
  for (const char* extension : {".jpg", ".png", ".tif", ".bmp", ".webp"}) {
    for (const int type : {CV_8UC1, CV_8UC3, CV_8UC4}) {
      Bytes bytes;
      cv::imencode(extension, Picture(type), bytes);
      folder.Add("channels" + std::to_string(CV_MAT_CN(type)) + extension, bytes);
    }
  }
  for (const char* extension : {".png", ".tif"}) {
    Bytes bytes;
    cv::imencode(extension, Picture(CV_16UC3), bytes);
    folder.Add(std::string("deep") + extension, bytes);
  }
  Bytes bytes;
  cv::imencode(".jpg", Picture(), bytes, {cv::IMWRITE_JPEG_PROGRESSIVE, 1});
  folder.Add("progressive.jpg", bytes);
  folder.Add("turned.jpg", JpegWithExif(ExifBlock().Shorts(Ifd::kZero, 0x0112, {6}).Serialize()));
}

void AddRawFiles(const Folder& folder) {
  for (const RawFormat format : {RawFormat::kArwCompressed, RawFormat::kArwUncompressed, RawFormat::kDng}) {
    for (const RawPreview preview : {RawPreview::kNone, RawPreview::kJpeg}) {
      RawOptions options;
      options.format = format;
      options.preview = preview;
      options.orientation = 6;
      folder.Add("format" + std::to_string(static_cast<int>(format)) + "preview" +
                     std::to_string(static_cast<int>(preview)) + ".arw",
                 MakeRawFile(Picture(), options));
    }
  }
  RawOptions monochrome;
  monochrome.format = RawFormat::kDng;
  monochrome.monochrome = true;
  folder.Add("monochrome.dng", MakeRawFile(Picture(), monochrome));
  folder.Add("truncated.arw", MakeTruncatedRaw(RawFormat::kArwCompressed));
  folder.Add("undecodable.dng", MakeUndecodableRaw());
  folder.Add("undevelopable.dng", MakeUndevelopableRaw());
  folder.Add("two_colors.dng", MakeTwoColorRaw());
  folder.Add("diagonal.dng", MakeDiagonalRaw(100));
}

void AddPreviews(const Folder& folder) {
  folder.Add("bitmap.dng", MakeBitmapPreviewRaw(Picture()));
  folder.Add("short_bitmap.dng", MakeShortBitmapPreviewRaw(Picture()));
  folder.Add("undecodable_preview.dng", MakeUndecodablePreviewRaw());
  folder.Add("oversized_preview.dng", MakeOversizedPreviewRaw(5000));
  folder.Add("damaged_preview.dng", MakeDamagedPreviewRaw());
}

void AddExif(const Folder& folder) {
  for (const ByteOrder order : {ByteOrder::kLittle, ByteOrder::kBig}) {
    ExifBlock block(order);
    block.Ascii(Ifd::kZero, 0x010F, "Maker")
        .Ascii(Ifd::kZero, 0x0110, "Model")
        .Shorts(Ifd::kZero, 0x0112, {6});
    block.Ascii(Ifd::kZero, 0x0132, "2024:05:31 18:20:00").Ascii(Ifd::kExif, 0x9003, "2024:05:31 18:20:00");
    block.Ascii(Ifd::kExif, 0xA434, "Lens").Shorts(Ifd::kExif, 0x8827, {400});
    block.Rationals(Ifd::kExif, 0x829A, {{1, 250}}).Rationals(Ifd::kExif, 0x829D, {{28, 10}});
    block.Rationals(Ifd::kExif, 0x9202, {{3, 1}}).Rationals(Ifd::kExif, 0x920A, {{35, 1}});
    block.SignedRationals(Ifd::kExif, 0x9201, {{8, 1}});
    block.Longs(Ifd::kExif, 0xA002, {6000}).Longs(Ifd::kExif, 0xA003, {4000});
    block.Ascii(Ifd::kGps, 1, "N").Rationals(Ifd::kGps, 2, {{48, 1}, {51, 1}, {295, 10}});
    block.Ascii(Ifd::kGps, 3, "E").Rationals(Ifd::kGps, 4, {{2, 1}, {17, 1}, {40, 1}});
    block.Ascii(Ifd::kInteroperability, 1, "R98");
    // Maker notes in the layouts that libexif knows.
    for (const std::string maker : {"Nikon", "OLYMP", "FUJIFILM", "AOC", "Canon"}) {
      ExifBlock noted = block;
      Bytes note(maker.begin(), maker.end());
      note.resize(200, 1);
      noted.Ascii(Ifd::kZero, 0x010F, maker).Entry(Ifd::kExif, 0x927C, TiffFormat::kUndefined, 200, note);
      folder.Add(maker + (order == ByteOrder::kBig ? "_big.jpg" : ".jpg"), JpegWithExif(noted.Serialize()));
    }
    folder.Add(order == ByteOrder::kBig ? "big.jpg" : "little.jpg", JpegWithExif(block.Serialize()));
  }
}

void AddSettings(const Folder& folder) {
  folder.Add("some.json",
             std::string(R"({"lumvik": 1, "exposure": 0.5, "hsl": {"red": {"hue": 10}}, "flip_h": true,
  "tone_curve": {"master": [[0, 0], [0.5, 0.6], [1, 1]]}, "crop": {"x": 0.1, "y": 0.1, "w": 0.5, "h": 0.5}})"));
  folder.Add("none.json", std::string(R"({"lumvik": 1})"));
}

void AddXmp(const Folder& folder) {
  const std::string start =
      "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
      "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">"
      "<rdf:Description rdf:about=\"\" xmlns:crs=\"http://ns.adobe.com/camera-raw-settings/1.0/\" ";
  const std::string end = "</rdf:Description></rdf:RDF></x:xmpmeta>";
  folder.Add("numbers.xmp",
             start + R"(crs:Exposure2012="+0.50" crs:Sharpness="40" crs:WhiteBalance="As Shot">)" + end);
  folder.Add("crop.xmp", start +
                             R"(crs:HasCrop="True" crs:CropLeft="0.1" crs:CropTop="0.1" crs:CropRight="0.9"
    crs:CropBottom="0.8" crs:CropAngle="-3.5">)" +
                             end);
  folder.Add("curve.xmp", start +
                              "><crs:ToneCurvePV2012><rdf:Seq><rdf:li>0, 0</rdf:li><rdf:li>128, 150</rdf:li>"
                              "<rdf:li>255, 255</rdf:li></rdf:Seq></crs:ToneCurvePV2012>" +
                              end);
}

void AddCallLists(const Folder& folder) {
  std::mt19937 random(1);
  for (int i = 0; i < 100; ++i) {
    Bytes calls(400);
    for (uint8_t& byte : calls) byte = static_cast<uint8_t>(random());
    folder.Add(std::to_string(i), calls);
  }
}

// Images, and a packet, with a mark.
void AddMarks(const Folder& folder) {
  for (const fuzz::MarkedImage& image : fuzz::MakeMarkedImages()) {
    folder.Add("marked" + std::to_string(image.format), image.bytes);
  }
  folder.Add("packet",
             std::string("<rdf:RDF><rdf:Description rdf:about=\"\" "
                         "xmlns:lumvik=\"https://lumvik.invalid/ns/1.0/\"><lumvik:Mark>old</lumvik:Mark>"
                         "<lumvik:Digest>00000000000000000000000000000000</lumvik:Digest>"
                         "</rdf:Description></rdf:RDF>"));
}

void WriteSeeds(const std::filesystem::path& root) {
  AddImages(Folder(root / "image_loader_fuzz"));
  AddRawFiles(Folder(root / "raw_decoder_fuzz"));
  AddExif(Folder(root / "exif_fuzz"));
  for (const char* target : {"thumbnail_fuzz", "perceptual_hash_fuzz", "open_bytes_fuzz"}) {
    const Folder folder(root / target);
    AddImages(folder);
    AddRawFiles(folder);
    AddPreviews(folder);
  }
  AddSettings(Folder(root / "settings_file_fuzz"));
  AddXmp(Folder(root / "xmp_import_fuzz"));
  AddImages(Folder(root / "mark_fuzz"));
  AddMarks(Folder(root / "mark_fuzz"));
  for (const char* target : {"call_list_fuzz", "host_calls_fuzz"}) {
    AddCallLists(Folder(root / target));
  }
}

}  // namespace
}  // namespace lumvik::test

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: lumvik_fuzz_seeds FOLDER\n";
    return 2;
  }
  lumvik::test::WriteSeeds(argv[1]);
  return 0;
}
