#include "base/xml_text.h"

namespace lumvik::host {
namespace {

struct XmlEntity {
  char character;
  std::string_view text;
};
constexpr XmlEntity kXmlEntities[] = {{'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}};

}  // namespace

std::string XmlText(std::string_view text) {
  std::string xml;
  for (const char c : text) {
    std::string_view written(&c, 1);
    for (const XmlEntity& entity : kXmlEntities) {
      if (entity.character == c) written = entity.text;
    }
    xml += written;
  }
  return xml;
}

std::string PlainText(std::string_view xml) {
  std::string text;
  while (!xml.empty()) {
    char character = xml.front();
    std::size_t size = 1;
    for (const XmlEntity& entity : kXmlEntities) {
      if (xml.substr(0, entity.text.size()) != entity.text) continue;
      character = entity.character;
      size = entity.text.size();
    }
    text += character;
    xml.remove_prefix(size);
  }
  return text;
}

}  // namespace lumvik::host
