#include "modules/xmp_fence.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <stdexcept>
#include <vector>

namespace lumvik::metadata {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kItem = "rdf:li";
// What is in them belongs to the element around them.
constexpr std::string_view kTransparent[] = {"x:xmpmeta", "rdf:RDF", "rdf:Description",
                                             "rdf:Seq",   "rdf:Bag", "rdf:Alt"};

bool Begins(std::string_view text, std::string_view beginning) {
  return text.substr(0, beginning.size()) == beginning;
}

std::runtime_error MoreThan(std::size_t limit, const char* what) {
  return std::runtime_error("it has more than " + std::to_string(limit) + what);
}

// Goes through the tags of a packet. Names need not be valid nor tags match: the parser checks that.
class XmpScanner {
 public:
  explicit XmpScanner(std::string_view packet) : rest_(packet) {}

  // Throws std::runtime_error with the reason why the packet must not be parsed.
  void Scan() {
    while (SkipPast("<", false)) {
      if (Begins(rest_, "!--")) {
        rest_.remove_prefix(3);
        SkipPast("-->");
      } else if (Begins(rest_, "![CDATA[")) {
        SkipPast("]]>");
      } else if (Begins(rest_, "!")) {
        throw std::runtime_error("it has a document type declaration");
      } else if (Begins(rest_, "?")) {
        SkipPast("?>");
      } else if (Begins(rest_, "/")) {
        SkipPast(">");
        if (open_.size() > 1) open_.pop_back();
      } else {
        ReadStartTag();
      }
    }
  }

 private:
  struct Element {
    std::size_t owner;  // the index of the element to which properties in this one belong
    std::size_t path;   // the length of the names of all elements down to this one
    std::size_t properties = 0;
  };

  // Returns whether the mark is there, which it must be if `required`.
  bool SkipPast(std::string_view mark, bool required = true) {
    const std::size_t found = rest_.find(mark);
    if (found == std::string_view::npos && required) throw Malformed();
    rest_.remove_prefix(found == std::string_view::npos ? rest_.size() : found + mark.size());
    return found != std::string_view::npos;
  }

  static std::runtime_error Malformed() { return std::runtime_error("it is not XMP, or it is damaged"); }

  void SkipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(kBlanks), rest_.size())); }

  std::string_view ReadName(std::string_view ends) {
    const std::size_t size = rest_.find_first_of(ends);
    if (size == std::string_view::npos || size == 0) throw Malformed();
    const std::string_view name = rest_.substr(0, size);
    rest_.remove_prefix(size);
    return name;
  }

  void ReadStartTag() {
    const std::string_view name = ReadName(" \t\r\n/>");
    Enter(name);
    for (SkipBlanks(); !Begins(rest_, ">"); SkipBlanks()) {
      if (Begins(rest_, "/>")) {
        open_.pop_back();
        break;
      }
      ReadAttribute();
    }
    SkipPast(">");
  }

  void ReadAttribute() {
    const char* const start = rest_.data();
    const std::string_view name = ReadName(" \t\r\n=/>");
    SkipBlanks();
    if (!Begins(rest_, "=")) throw Malformed();
    rest_.remove_prefix(1);
    SkipBlanks();
    const std::string_view quote = rest_.substr(0, 1);
    if (quote != "\"" && quote != "'") throw Malformed();
    rest_.remove_prefix(1);
    SkipPast(quote);
    if (Begins(name, "xmlns")) {
      namespaces_.emplace(start, static_cast<std::size_t>(rest_.data() - start));
      if (namespaces_.size() > kMaxXmpNamespaces) throw MoreThan(kMaxXmpNamespaces, " namespaces");
    } else {
      CountProperty(name, open_.back());
    }
  }

  void Enter(std::string_view name) {
    if (open_.size() > kMaxXmpDepth) throw MoreThan(kMaxXmpDepth, " nested elements");
    const bool is_transparent =
        std::find(std::begin(kTransparent), std::end(kTransparent), name) != std::end(kTransparent);
    if (name == kItem) {
      if (++items_ > kMaxXmpItems) throw MoreThan(kMaxXmpItems, " list items");
      CountPath(name, open_.back());
    } else if (!is_transparent) {
      CountProperty(name, open_.back());
    }
    const Element& parent = open_.back();
    const std::size_t owner = is_transparent ? parent.owner : open_.size();
    open_.push_back({owner, parent.path + name.size() + 1});
  }

  void CountProperty(std::string_view name, const Element& parent) {
    if (++properties_ > kMaxXmpProperties) throw MoreThan(kMaxXmpProperties, " properties");
    if (++open_[parent.owner].properties > kMaxXmpSiblings) {
      throw MoreThan(kMaxXmpSiblings, " properties in one structure");
    }
    CountPath(name, parent);
  }

  void CountPath(std::string_view name, const Element& parent) {
    path_bytes_ += parent.path + name.size();
    if (path_bytes_ > kMaxXmpPathBytes) throw std::runtime_error("its names are too long");
  }

  std::string_view rest_;
  std::vector<Element> open_ = {{0, 0}};  // from the document on
  std::set<std::string_view> namespaces_;
  std::size_t properties_ = 0;
  std::size_t items_ = 0;
  std::size_t path_bytes_ = 0;
};

}  // namespace

std::string XmpFault(std::string_view packet) {
  constexpr std::size_t kBytesPerMegabyte = std::size_t{1} << 20U;
  if (packet.size() > kMaxXmpBytes) {
    return "it is larger than " + std::to_string(kMaxXmpBytes / kBytesPerMegabyte) + " MB";
  }
  // Some writers end it with NUL. Elsewhere there is none in UTF-8.
  packet = packet.substr(0, packet.find_last_not_of('\0') + 1);
  if (packet.find('\0') != std::string_view::npos) return "it is not in UTF-8";
  const auto lines = static_cast<std::size_t>(std::count(packet.begin(), packet.end(), '\n'));
  if (lines > kMaxXmpLines) return MoreThan(kMaxXmpLines, " lines").what();
  try {
    XmpScanner(packet).Scan();
  } catch (const std::runtime_error& fault) {
    return fault.what();
  }
  return {};
}

}  // namespace lumvik::metadata
