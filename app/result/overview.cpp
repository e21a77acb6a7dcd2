// Many runs side by side; see the header.
#include "result/overview.hpp"

#include <algorithm>
#include <map>

#include "result/csv_table.hpp"
#include "result/utf8.hpp"
#include "system/text.hpp"

namespace host {

namespace {

constexpr const char* style =
    "body{font:15px/1.4 system-ui,sans-serif;margin:2rem;color:#1b1f24;background:#fff}\n"
    "table{border-collapse:collapse}th,td{padding:.3rem .7rem;border-bottom:1px solid "
    "#d0d7de;text-align:left;"
    "vertical-align:top}td.n{text-align:right;font-variant-numeric:tabular-nums}\n"
    "th{position:sticky;top:0;background:#f6f8fa}.good{color:#1a7f37}.doubtful{color:#7d4e00}.bad{color:#"
    "b3261e}\n"
    "@media(prefers-color-scheme:dark){body{color:#e6edf3;background:#0d1117}th{background:#161b22}"
    "th,td{border-color:#30363d}a{color:#79b8ff}.good{color:#56d364}.doubtful{color:#e3b341}.bad{color:#"
    "ff938a}}\n";

// The figures that the page shows, with `*` for the part's unit at the end of the key.
struct MainFigure {
  const char* beginning;  // of the key
  const char* heading;
  int digits;
};
constexpr MainFigure mainFigures[] = {
    {"triangles", "triangles", 0},
    {"blank_rectangle_length_", "length of rectangle", 2},
    {"blank_rectangle_width_", "width", 2},
    {"blank_area_", "area of blank", 1},
    {"thinnest.thickness_ratio", "thinnest t/t0", 4},
    {"thickest.thickness_ratio", "thickest t/t0", 4},
    {"largest_equivalent_strain", "largest strain", 4},
};

std::string valueOf(const std::vector<OverviewCell>& cells, const std::string& key) {
  for (const OverviewCell& cell : cells)
    if (cell.key == key) return cell.value;
  return "";
}

// Keys in the order in which they first appear in any run.
std::vector<std::string> keysOf(const Overview& overview, std::vector<OverviewCell> OverviewRow::*cells) {
  std::vector<std::string> keys;
  std::map<std::string, bool> seen;
  for (const OverviewRow& row : overview.rows)
    for (const OverviewCell& cell : row.*cells)
      if (!seen[cell.key]) {
        seen[cell.key] = true;
        keys.push_back(cell.key);
      }
  return keys;
}

// The unit of an area or length is the end of its key.
std::string figureText(const OverviewRow& row, const MainFigure& figure) {
  const std::string beginning = figure.beginning;
  for (const OverviewCell& cell : row.figures) {
    const bool withUnit = beginning.back() == '_';
    if (withUnit ? !cell.key.starts_with(beginning)
                 : cell.key != beginning && !cell.key.starts_with(beginning + "_A"))
      continue;
    double number;
    if (!readReal(cell.value, number)) return "";
    const std::string unit = withUnit ? " " + cell.key.substr(beginning.size()) : "";
    return fixedDecimal(number, figure.digits) + unit;
  }
  return "";
}

const char* classOf(const std::string& verdict) {
  return verdict == "good" ? "good" : verdict == "doubtful" ? "doubtful" : "bad";
}

// A relative path as a link: no scheme, no sign with a meaning of its own.
std::string asLink(const std::string& path) {
  constexpr const char* plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";
  constexpr const char* digits = "0123456789ABCDEF";
  std::string link = path.starts_with("/") ? "" : "./";
  for (const char c : path) {
    if (std::string(plain).find(c) != std::string::npos) {
      link += c;
      continue;
    }
    const auto byte = static_cast<unsigned char>(c);
    link += std::string("%") + digits[byte >> 4] + digits[byte & 15];
  }
  return link;
}

std::string countsText(const Overview& overview) {
  std::map<std::string, std::int64_t> counts;
  for (const OverviewRow& row : overview.rows) ++counts[row.verdict];
  std::string text = counted(static_cast<std::int64_t>(overview.rows.size()), "run") + ":";
  for (const auto& [verdict, count] : counts)
    text += std::string(" <span class=\"") + classOf(verdict) + "\">" + std::to_string(count) + " " +
            xmlText(verdict) + "</span>";
  return text;
}

std::string rowText(const OverviewRow& row, const std::vector<std::string>& options) {
  const std::string folder = xmlText(row.folder);
  std::string text = "<tr><td>" +
                     (row.link.empty() ? folder : "<a href=\"" + asLink(row.link) + "\">" + folder + "</a>") +
                     "</td><td class=\"" + classOf(row.verdict) + "\">" + xmlText(row.verdict) + "</td>";
  for (const std::string& key : options) text += "<td>" + xmlText(valueOf(row.options, key)) + "</td>";
  for (const MainFigure& figure : mainFigures)
    text += "<td class=\"n\">" + xmlText(figureText(row, figure)) + "</td>";
  return text + "<td>" + xmlText(row.reason) + "</td></tr>\n";
}

}  // namespace

void writeOverviewTable(FileWriter& file, const Overview& overview) {
  std::vector<CsvColumn> columns;
  const auto column = [&](const std::string& heading, std::string OverviewRow::*text) {
    columns.push_back({heading, [&overview, text](std::size_t row) { return overview.rows[row].*text; }});
  };
  column("folder", &OverviewRow::folder);
  column("verdict", &OverviewRow::verdict);
  column("exit_status", &OverviewRow::status);
  column("reason", &OverviewRow::reason);
  for (const auto cells : {&OverviewRow::options, &OverviewRow::figures})
    for (const std::string& key : keysOf(overview, cells))
      if (cells == &OverviewRow::options || (key != "verdict" && key != "reason"))
        columns.push_back(
            {cells == &OverviewRow::options ? "option " + key : key,
             [&overview, cells, key](std::size_t row) { return valueOf(overview.rows[row].*cells, key); }});
  writeCsv(file, columns, overview.rows.size());
}

void writeOverviewPage(FileWriter& file, const Overview& overview) {
  file.write(
      std::string(overviewPageBeginning) +
      "\n<html lang=\"en\"><head><meta charset=\"utf-8\">\n<meta http-equiv=\"Content-Security-Policy\" "
      "content=\"default-src 'none'; style-src 'unsafe-inline'\">\n<meta name=\"viewport\" "
      "content=\"width=device-width\">\n<title>Runs - tornwalzen</title>\n<style>\n" +
      style + "</style></head>\n<body>\n<h1>Runs</h1>\n<p>" + countsText(overview) +
      "</p>\n<table>\n<thead><tr><th scope=\"col\">folder</th><th scope=\"col\">verdict</th>");
  const std::vector<std::string> options = keysOf(overview, &OverviewRow::options);
  for (const std::string& key : options) file.write("<th scope=\"col\">" + xmlText(key) + "</th>");
  for (const MainFigure& figure : mainFigures)
    file.write(std::string("<th scope=\"col\">") + figure.heading + "</th>");
  file.write("<th scope=\"col\">reason</th></tr></thead>\n<tbody>\n");
  for (const OverviewRow& row : overview.rows) file.write(rowText(row, options));
  file.write("</tbody></table>\n</body></html>\n");
}

}  // namespace host
