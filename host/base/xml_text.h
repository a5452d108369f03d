// Texts in XML.
#ifndef LUMVIK_HOST_BASE_XML_TEXT_H_
#define LUMVIK_HOST_BASE_XML_TEXT_H_

#include <string>
#include <string_view>

namespace lumvik::host {

// As the content of an element.
std::string XmlText(std::string_view text);

// The inverse of XmlText.
std::string PlainText(std::string_view xml);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_BASE_XML_TEXT_H_
