// XMP files for import tests.
#ifndef LUMVIK_TESTS_APPS_XMP_FILE_H_
#define LUMVIK_TESTS_APPS_XMP_FILE_H_

#include <string>

namespace lumvik::test {

// An XMP file with properties as attributes and as elements.
inline std::string Xmp(const std::string& attributes, const std::string& elements = "") {
  return "<?xpacket begin=\"\xEF\xBB\xBF\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>\n"
         "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\">\n"
         " <rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">\n"
         "  <rdf:Description rdf:about=\"\" xmlns:crs=\"http://ns.adobe.com/camera-raw-settings/1.0/\"\n"
         "   xmlns:tiff=\"http://ns.adobe.com/tiff/1.0/\" " +
         attributes + ">\n" + elements +
         "\n  </rdf:Description>\n </rdf:RDF>\n</x:xmpmeta>\n<?xpacket end=\"w\"?>\n";
}

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_APPS_XMP_FILE_H_
