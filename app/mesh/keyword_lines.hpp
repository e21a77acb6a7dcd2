// Files of keyword lines that begin with an asterisk and the data lines that follow each: Abaqus and LS-DYNA.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace host {

struct KeywordLine {
  std::string name;  // in capitals, without the asterisk, single blanks inside
  std::vector<std::pair<std::string, std::string>> parameters;  // name in capitals, value as written
  std::size_t line = 0;                                         // from 1; 0: no keyword yet

  // The value of a parameter; empty: it has none or is not there.
  std::string parameter(std::string_view wanted) const;
};

// The lines of a file one after the other, without comments.
class KeywordReader {
 public:
  // comment: how a comment line begins; emptyLines: whether they count.
  KeywordReader(std::string_view content, std::string_view comment, bool emptyLines = false)
      : content_(content), comment_(comment), emptyLines_(emptyLines) {}
  // text: out, the line without blanks at its end. False at the end.
  bool next(std::string_view& text);
  std::size_t line() const { return lineNumber_; }
  // The keyword of a line that begins with an asterisk, and of those after it where a comma ends it.
  KeywordLine keyword(std::string_view text);

 private:
  std::string_view content_, comment_;
  bool emptyLines_;
  std::size_t position_ = 0, lineNumber_ = 0;
};

// The words between commas, without blanks around them; at least one.
std::vector<std::string_view> commaWords(std::string_view text);

// Which of the two a file is. Both begin with a keyword or a comment. The first keyword that only one of them
// has decides; where there is none, a comment of `$` is LS-DYNA's.
enum class KeywordDialect { none, abaqus, dyna };
KeywordDialect keywordDialect(std::string_view content);

}  // namespace host
