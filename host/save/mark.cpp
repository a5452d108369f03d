#include "save/mark.h"

#include <cstddef>
#include <string_view>
#include <utility>

#include "base/failure.h"
#include "base/text_cut.h"
#include "base/xml_text.h"
#include "files/intact_mark.h"
#include "files/png_chunks.h"
#include "files/xmp_part.h"
#include "settings/camera_raw_names.h"

namespace lumvik::host {
namespace {

constexpr std::size_t kMaxMarkBytes = 1000;
constexpr std::size_t kMaxPacketBytes = kMarkDistance / 2;

constexpr std::string_view kDescriptionBegin = "<rdf:Description rdf:about=\"\" xmlns:";
constexpr std::string_view kDescriptionEnd = "</rdf:Description>";
constexpr std::string_view kRdfEnd = "</rdf:RDF>";
constexpr std::string_view kEmptyPacket =
    "<?xpacket begin=\"\xEF\xBB\xBF\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>\n"
    "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\">\n"
    "<rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">\n"
    "</rdf:RDF>\n"
    "</x:xmpmeta>\n"
    "<?xpacket end=\"w\"?>";

Failure InvalidMark(const std::string& why) {
  return {LUMVIK_HOST_INVALID_ARGUMENT, "the mark " + why};
}

Failure Unmarkable(const std::string& why) {
  return {LUMVIK_HOST_UNSUPPORTED, "the image cannot be marked: " + why};
}

std::string MarkedDescriptionBegin() {
  return std::string(kDescriptionBegin)
      .append(kOwnPrefix)
      .append("=\"")
      .append(kOwnNamespace)
      .append("\">")
      .append(kMarkBegin);
}

// A separate description with the two properties: descriptions of one resource add up.
std::string MarkDescription(const std::string& mark) {
  return MarkedDescriptionBegin()
      .append(XmlText(mark))
      .append(kMarkDigestBegin)
      .append(kMarkDigits, '0')
      .append(kMarkDigestEnd)
      .append(kDescriptionEnd)
      .append("\n");
}

void EraseMark(std::string& packet) {
  const std::size_t begin = packet.find(MarkedDescriptionBegin());
  if (begin == std::string::npos) return;
  const std::size_t end = packet.find(kDescriptionEnd, begin);
  if (end != std::string::npos) packet.erase(begin, end + kDescriptionEnd.size() - begin);
}

// The packet of an image, or one without properties.
std::string PacketOf(std::string_view image, lumvik_host_format format) {
  const XmpPart xmp = FindXmp(image, format);
  if (xmp.packet.empty()) return std::string(kEmptyPacket);
  return xmp.is_compressed ? InflatePng(xmp.packet, kMaxPacketBytes) : std::string(xmp.packet);
}

std::string PacketWithMark(std::string packet, const std::string& mark) {
  EraseMark(packet);
  const std::size_t position = packet.rfind(kRdfEnd);
  if (position == std::string::npos) throw Unmarkable("its XMP packet is too long or damaged");
  packet.insert(position, MarkDescription(mark));
  if (packet.size() > kMaxPacketBytes) throw Unmarkable("its XMP packet is too long");
  return packet;
}

void WriteDigest(const MarkPlace& place, std::string& image) {
  const std::string digest = MarkDigest(image, place);
  image.replace(place.digits, digest.size(), digest);
  if (place.png_checked.empty()) return;
  const std::string checksum = PngChecksum(place.png_checked);
  const auto end =
      static_cast<std::size_t>(place.png_checked.data() - image.data()) + place.png_checked.size();
  image.replace(end, checksum.size(), checksum);
}

}  // namespace

std::optional<std::string> MarkOf(const char* mark) {
  if (mark == nullptr) return std::nullopt;
  const std::string_view text(mark);
  if (text.size() > kMaxMarkBytes) {
    throw InvalidMark("has " + std::to_string(text.size()) + " bytes, but at most " +
                      std::to_string(kMaxMarkBytes) + " are possible");
  }
  if (!IsPlainUtf8(text)) throw InvalidMark("is not UTF-8 or has control characters");
  return std::string(text);
}

std::string WithMark(std::string image, lumvik_host_format format, const std::string& mark) {
  const std::string packet = PacketWithMark(PacketOf(image, format), mark);
  image = ReplaceXmp(std::move(image), format, packet);
  if (const auto place = FindMark(image, format)) WriteDigest(*place, image);
  if (IntactMarkIn(image) != mark) throw Unmarkable("it is damaged");
  return image;
}

}  // namespace lumvik::host
