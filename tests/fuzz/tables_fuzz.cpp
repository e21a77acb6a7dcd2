// Any bytes as a table of points, a hardening law, a limit curve, a material library, a table of a study, an outcome or a
// summary of a run: each reader ends with what can be used or with a failure in words.
#include <algorithm>
#include <cmath>
#include <string>

#include "command/collect.hpp"
#include "command/flow_curve.hpp"
#include "command/limit_curve.hpp"
#include "command/material_library.hpp"
#include "command/outcome.hpp"
#include "command/point_table.hpp"
#include "command/study.hpp"
#include "fuzz/fuzz_target.hpp"
#include "fuzz/usable_part.hpp"

namespace {

constexpr std::size_t mostRows = 4;  // each is handed to the parser of the command line

template <class Read>
void readOrRefuse(Read read) {
  try {
    read();
  } catch (const host::Failure& failure) {
    fuzz::require(failure.what()[0] != '\0');
  }
}

void points(const std::string& content) {
  const host::PointTable table = host::pointsIn(content, "fuzz", "two numbers");
  fuzz::require(!table.rows.empty());
  for (std::size_t k = 1; k < table.rows.size(); ++k)
    fuzz::require(table.rows[k].line > table.rows[k - 1].line);
}

void law(const std::string& content) {
  const host::FlowCurve curve = host::hardeningLaw(content);
  fuzz::require(curve.strain.size() == curve.stress.size() && curve.strain.size() >= 3);
  for (std::size_t k = 0; k < curve.strain.size(); ++k)
    fuzz::require(std::isfinite(curve.strain[k]) && std::isfinite(curve.stress[k]));
}

// What a run left, which anybody may have changed since.
void results(const std::string& content) {
  host::outcomeIn(content);
  host::OverviewRow row;
  const bool taken = host::takeSummary(content, row);
  fuzz::require(taken || (row.figures.empty() && row.verdict.empty()));
}

void limitCurve(const std::string& content) {
  const host::LimitCurve curve = host::limitCurveIn(content, "fuzz");
  fuzz::require(!curve.points.empty());
  for (std::size_t k = 0; k < curve.points.size(); ++k) {
    fuzz::require(std::isfinite(curve.points[k].minor) && curve.points[k].major > 0.0);
    fuzz::require(k == 0 || curve.points[k].minor > curve.points[k - 1].minor);
  }
}

void materials(const std::string& content) {
  for (const host::Material& material : host::materialsIn(content, "fuzz")) {
    fuzz::require(!material.name.empty());
    for (const host::MaterialKey& key : host::materialKeys)
      if (const auto& value = material.*key.value)
        fuzz::require(std::isfinite(value->value) && !value->source.empty());
  }
}

// A quoted word, as a shell reads it.
std::string unquoted(const std::string& word) {
  std::string text;
  bool inside = false;
  for (std::size_t k = 0; k < word.size(); ++k) {
    if (word[k] == '\'')
      inside = !inside;
    else if (word[k] == '\\' && !inside)
      text += word[++k];
    else
      text += word[k];
  }
  fuzz::require(!inside);
  return text;
}

void study(const std::string& content) {
  const host::StudyTable table = host::readStudyTable(content, "fuzz");
  fuzz::require(!table.headings.empty() && !table.rows.empty());
  for (const host::StudyTable::Row& row : table.rows)
    fuzz::require(row.cells.size() == table.headings.size() && row.line >= 2);
  if (table.rows.size() > mostRows) return;
  for (const host::StudyRow& row : host::studyRows(table, "fuzz", "out"))
    for (const std::string& word : row.words) {
      fuzz::require(std::none_of(word.begin(), word.end(), [](char c) { return c == '\n' || c == '\0'; }));
      fuzz::require(unquoted(host::shellWord(word)) == word);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string content(reinterpret_cast<const char*>(data), size);
  readOrRefuse([&] { points(content); });
  readOrRefuse([&] { law(content); });
  readOrRefuse([&] { limitCurve(content); });
  readOrRefuse([&] { materials(content); });
  readOrRefuse([&] { study(content); });
  results(content);
  return 0;
}
