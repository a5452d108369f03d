// Lists of photographs made by other programs.
#ifndef LUMVIK_APPS_BATCH_LISTED_FILES_H_
#define LUMVIK_APPS_BATCH_LISTED_FILES_H_

#include <string>
#include <vector>

namespace lumvik {

// The names in the file `list`, or in standard input for "-": separated by NUL if it contains any, otherwise
// one per line. Throws std::runtime_error with a message for the user.
std::vector<std::string> ListedFiles(const std::string& list);

// The names in the text of a list.
std::vector<std::string> NamesInList(const std::string& text);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_LISTED_FILES_H_
