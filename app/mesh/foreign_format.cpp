// Mesh formats of other programs; see the header.
#include "mesh/foreign_format.hpp"

#include <algorithm>
#include <cctype>
#include <string>

#include "system/text.hpp"

namespace host {

namespace {

constexpr std::size_t headLength = 65536;

bool isKeyword(std::string_view line) {
  return line.size() > 1 && line[0] == '*' && std::isalpha(static_cast<unsigned char>(line[1])) != 0;
}

// The keyword of a line without its parameters, in capitals.
std::string keywordOf(std::string_view line) {
  const std::string_view word = line.substr(1, line.find_first_of(", \t\r") - 1);
  std::string keyword(word);
  std::transform(keyword.begin(), keyword.end(), keyword.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return keyword;
}

}  // namespace

ForeignFormat foreignFormat(std::string_view content) {
  const std::string_view head = content.substr(0, headLength);
  std::size_t position = 0;
  std::string_view line;
  bool any = false, dollar = false;
  while (nextLine(head, position, line)) {
    std::size_t inLine = 0;
    if (nextWord(line, inLine).empty() || line.starts_with("**")) continue;
    if (line[0] == '$') {
      dollar = true;
    } else if (isKeyword(line)) {
      any = true;
      const std::string keyword = keywordOf(line);
      if (dollar || keyword == "KEYWORD" || keyword.find('_') != std::string::npos)
        return ForeignFormat::lsDyna;
      if (keyword == "HEADING") return ForeignFormat::abaqus;
    } else if (!any) {
      return ForeignFormat::none;  // the first line that says something is no keyword
    }
  }
  return any ? ForeignFormat::abaqus : ForeignFormat::none;
}

}  // namespace host
