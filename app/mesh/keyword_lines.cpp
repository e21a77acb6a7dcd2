// Files of keyword lines; see the header.
#include "mesh/keyword_lines.hpp"

#include <algorithm>
#include <cctype>

#include "mesh/shell_mesh.hpp"
#include "system/text.hpp"

namespace host {

namespace {

// In capitals, with single blanks between the words.
std::string keywordName(std::string_view text) {
  std::string name;
  std::size_t position = 0;
  for (std::string_view word = nextWord(text, position); !word.empty(); word = nextWord(text, position))
    name += (name.empty() ? "" : " ") + capitals(word);
  return name;
}

}  // namespace

std::string KeywordLine::parameter(std::string_view wanted) const {
  for (const auto& [parameterName, value] : parameters)
    if (parameterName == wanted) return value;
  return "";
}

bool KeywordReader::next(std::string_view& text) {
  while (nextLine(content_, position_, text)) {
    ++lineNumber_;
    text = text.substr(0, text.find_last_not_of(" \t\r") + 1);
    if (text.empty() ? emptyLines_ : text.substr(0, comment_.size()) != comment_) return true;
  }
  return false;
}

KeywordLine KeywordReader::keyword(std::string_view text) {
  KeywordLine keyword;
  keyword.line = lineNumber_;
  std::vector<std::string_view> words = commaWords(text.substr(1));
  keyword.name = keywordName(words[0]);
  words.erase(words.begin());
  for (;;) {
    const bool goesOn = !words.empty() && words.back().empty();
    for (const std::string_view word : words) {
      const std::size_t equals = std::min(word.find('='), word.size());
      if (!word.empty())
        keyword.parameters.emplace_back(keywordName(word.substr(0, equals)),
                                        trimmed(word.substr(std::min(equals + 1, word.size()))));
    }
    if (!goesOn || !next(text)) return keyword;
    words = commaWords(text);
  }
}

std::vector<std::string_view> commaWords(std::string_view text) {
  std::vector<std::string_view> words;
  for (std::size_t from = 0; from <= text.size();) {
    const std::size_t comma = std::min(text.find(',', from), text.size());
    words.push_back(trimmed(text.substr(from, comma - from)));
    from = comma + 1;
  }
  return words;
}

KeywordDialect keywordDialect(std::string_view content) {
  KeywordReader lines(content, "**");
  std::string_view text;
  bool keywordSeen = false, dollarSeen = false;
  while (lines.next(text)) {
    dollarSeen = dollarSeen || text[0] == '$';
    if (text[0] == '$' || (text[0] != '*' && keywordSeen)) continue;
    // Nastran's continuations begin with an asterisk too, but with no name behind it, and not the file
    if (text[0] != '*' || text.size() < 2 || std::isalpha(static_cast<unsigned char>(text[1])) == 0)
      return KeywordDialect::none;
    keywordSeen = true;
    const std::size_t comma = text.find(',');
    const std::string name = keywordName(text.substr(1, comma == std::string_view::npos ? comma : comma - 1));
    const std::string word = name.substr(0, name.find(' '));
    if (word == "KEYWORD" || word.find('_') != std::string::npos) return KeywordDialect::dyna;
    if (comma != std::string_view::npos || word == "HEADING" || word == "ELEMENT")
      return KeywordDialect::abaqus;
  }
  return keywordSeen && dollarSeen ? KeywordDialect::dyna : KeywordDialect::none;
}

}  // namespace host
