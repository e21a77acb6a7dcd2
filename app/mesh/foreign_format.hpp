// Mesh formats of other programs, known by their content.
#ifndef TORNWALZEN_APP_FOREIGN_FORMAT_HPP
#define TORNWALZEN_APP_FOREIGN_FORMAT_HPP

#include <string_view>

namespace host {

enum class ForeignFormat { none, abaqus, lsDyna };

// The keyword format that the content begins with. In both a keyword stands behind an asterisk at the beginning
// of its line. LS-DYNA files begin with *KEYWORD, join the words of a keyword by underscores and have comments
// that begin with $; Abaqus separates the items of a line by commas and has comments that begin with **. Looks at
// the first 64 KiB.
ForeignFormat foreignFormat(std::string_view content);

}  // namespace host

#endif
