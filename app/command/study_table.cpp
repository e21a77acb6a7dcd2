// The table of a study; see the header.
#include "command/study_table.hpp"

#include <algorithm>
#include <set>
#include <string_view>

#include "system/failure.hpp"
#include "system/text.hpp"

namespace host {

namespace {

std::string trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t"), last = text.find_last_not_of(" \t");
  return first == std::string_view::npos ? "" : std::string(text.substr(first, last - first + 1));
}

// Reads records from the front of a text to its end.
class Reader {
 public:
  Reader(std::string_view text, const std::string& source) : text_(text), source_(source) {
    const std::size_t found = text.substr(0, text.find_first_of("\r\n")).find_first_of(",;\t");
    separator_ = found == std::string_view::npos ? ',' : text[found];
  }
  bool atEnd() const { return next_ >= text_.size(); }
  // One record. line: out, where it begins.
  std::vector<std::string> record(std::int64_t& line) {
    line = line_;
    std::vector<std::string> cells{cell()};
    while (!atEnd() && text_[next_] == separator_) {
      ++next_;
      cells.push_back(cell());
    }
    if (!atEnd() && text_[next_] == '\r') ++next_;
    if (!atEnd() && text_[next_] == '\n') ++next_;
    ++line_;
    return cells;
  }

 private:
  std::string cell() {
    while (!atEnd() && (text_[next_] == ' ' || (text_[next_] == '\t' && separator_ != '\t'))) ++next_;
    if (!atEnd() && text_[next_] == '"') return quotedCell();
    const std::size_t begin = next_;
    while (!atEnd() && text_[next_] != separator_ && text_[next_] != '\n' && text_[next_] != '\r') ++next_;
    return trimmed(text_.substr(begin, next_ - begin));
  }

  std::string quotedCell() {
    const std::int64_t begun = line_;
    std::string value;
    for (++next_; !atEnd(); ++next_) {
      if (text_[next_] != '"') {
        value += text_[next_];
        line_ += text_[next_] == '\n';
        continue;
      }
      if (next_ + 1 < text_.size() && text_[next_ + 1] == '"') {
        value += '"';
        ++next_;
        continue;
      }
      ++next_;
      while (!atEnd() && text_[next_] == ' ') ++next_;
      if (!atEnd() && text_[next_] != separator_ && text_[next_] != '\n' && text_[next_] != '\r')
        throw Failure(source_ + ", line " + std::to_string(line_) + ": text behind a closing quote");
      return value;
    }
    throw Failure(source_ + ", line " + std::to_string(begun) + ": a quote that does not end");
  }

  std::string_view text_;
  const std::string& source_;
  char separator_;
  std::size_t next_ = 0;
  std::int64_t line_ = 1;
};

bool isEmpty(const std::vector<std::string>& cells) {
  return std::all_of(cells.begin(), cells.end(), [](const std::string& cell) { return cell.empty(); });
}

void checkHeadings(const std::vector<std::string>& headings, const std::string& source) {
  std::set<std::string> seen;
  for (std::size_t k = 0; k < headings.size(); ++k) {
    if (headings[k].empty()) throw Failure(source + ": column " + std::to_string(k + 1) + " has no heading");
    if (!seen.insert(headings[k]).second)
      throw Failure(source + ": two columns are headed " + shown(headings[k]));
  }
}

}  // namespace

StudyTable readStudyTable(const std::string& content, const std::string& source) {
  std::string_view text(content);
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);  // UTF-8 as spreadsheets mark it
  if (text.find('\0') != std::string_view::npos) throw Failure(source + ": not a table of text");
  Reader reader(text, source);
  StudyTable table;
  while (!reader.atEnd()) {
    StudyTable::Row row;
    row.cells = reader.record(row.line);
    if (isEmpty(row.cells)) continue;
    if (table.headings.empty()) {
      table.headings = row.cells;
      checkHeadings(table.headings, source);
      continue;
    }
    if (row.cells.size() > table.headings.size())
      throw Failure(source + ", line " + std::to_string(row.line) + ": " + std::to_string(row.cells.size()) +
                    " cells, but " + counted(static_cast<std::int64_t>(table.headings.size()), "heading"));
    row.cells.resize(table.headings.size());
    table.rows.push_back(row);
  }
  if (table.headings.empty()) throw Failure(source + ": no line of headings");
  if (table.rows.empty()) throw Failure(source + ": no row below the headings");
  return table;
}

}  // namespace host
