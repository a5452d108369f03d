#include <string>
#include <vector>

#include "base/xml_text.h"
#include "settings/camera_raw_names.h"
#include "settings/settings_export.h"

namespace lumvik::host {
namespace {

using Properties = decltype(CameraRawSettings::properties);

std::string XmlElement(const std::string& tag, const std::string& content) {
  std::string element = "<";
  element.append(tag).append(">").append(content).append("</").append(tag).append(">");
  return element;
}

std::string XmlList(const std::vector<std::string>& parts) {
  std::string items;
  for (const std::string& part : parts) items += XmlElement("rdf:li", XmlText(part));
  return XmlElement("rdf:Seq", items);
}

std::string XmlElements(const std::string& prefix, const Properties& properties) {
  std::string elements;
  for (const auto& [name, parts] : properties) {
    const std::string content = parts.size() == 1 ? XmlText(parts.front()) : XmlList(parts);
    elements.append("   ").append(XmlElement(prefix + name, content)).append("\n");
  }
  return elements;
}

}  // namespace

std::string XmpPacket(const CameraRawSettings& settings) {
  return "<?xpacket begin=\"\xEF\xBB\xBF\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>\n"
         "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\">\n"
         " <rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">\n"
         "  <rdf:Description rdf:about=\"\"\n"
         "    xmlns:crs=\"http://ns.adobe.com/camera-raw-settings/1.0/\"\n"
         "    xmlns:" +
         std::string(kOwnPrefix) + "=\"" + kOwnNamespace + "\">\n" +
         XmlElements("crs:", settings.properties) +
         XmlElements(std::string(kOwnPrefix) + ":", settings.own_properties) +
         "  </rdf:Description>\n"
         " </rdf:RDF>\n"
         "</x:xmpmeta>\n"
         "<?xpacket end=\"w\"?>\n";
}

}  // namespace lumvik::host
