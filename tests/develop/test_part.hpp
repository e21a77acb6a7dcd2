// A small part with all arrays that a run needs, and the meshes the tests of development and driver use.
#pragma once

#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "ground/driver_arrays.hpp"
#include "host_kit/default_run.hpp"
#include "tornwalzen.h"

namespace tornwalzen::test {

struct Point {
  double x, y, z;
};

/// Owns the arrays of one part; sets the counts of the run state and clears its error words.
class TestPart {
 public:
  TestPart(const std::vector<Point>& nodes, const std::vector<std::vector<Int>>& triangles)
      : nkno(static_cast<Int>(nodes.size())), nele(static_cast<Int>(triangles.size())), neq(2 * nkno) {
    INTA.resize(3 * triangles.size());
    for (std::size_t e = 0; e < triangles.size(); ++e)
      for (std::size_t c = 0; c < 3; ++c) INTA[c * triangles.size() + e] = triangles[e][c];
    KNG.resize(3 * nodes.size());
    for (std::size_t n = 0; n < nodes.size(); ++n) {
      KNG[n] = nodes[n].x;
      KNG[nodes.size() + n] = nodes[n].y;
      KNG[2 * nodes.size() + n] = nodes[n].z;
    }
    ARFA.assign(static_cast<std::size_t>(neq), 1);
    for (auto* v : {&RR, &RB, &RX, &TEMP, &RXA, &WRHS}) v->assign(static_cast<std::size_t>(neq), 0.0);
    KNZ.assign(KNG.size(), 0.0);
    KNA.assign(KNG.size(), -77.0);
    ELG.assign(5 * triangles.size(), 0.0);
    COLS.assign(static_cast<std::size_t>(neq) + 1, 1);
    bind();
  }

  /// Sets the run state's counts for this part (again, when several parts are in use).
  void bind() {
    run.maxkno = run.nkno = nkno;
    run.maxele = run.nele = nele;
    run.neq = run.solver.neq = neq;
    run.ierrel = run.ierrso = 0;
  }

  DriverArrays arrays() {
    return {{"INTA", INTA.data(), nele, 3},
            {"ARFA", ARFA.data(), neq},
            {"COLS", COLS.data(), neq + 1},
            {"ROWI", ROWI.data(), static_cast<Int64>(ROWI.size())},
            {"WORK", WORK.data(), static_cast<Int64>(WORK.size())},
            {"RWORK", RWORK.data(), static_cast<Int64>(RWORK.size())},
            {"RR", RR.data(), neq},
            {"RB", RB.data(), neq},
            {"RX", RX.data(), neq},
            {"TEMP", TEMP.data(), neq},
            {"KNG", KNG.data(), nkno, 3},
            {"KNZ", KNZ.data(), nkno, 3},
            {"KNA", KNA.data(), nkno, 3},
            {"ELG", ELG.data(), nele, 5},
            {"SYSM", SYSM.data(), static_cast<Int64>(SYSM.size())},
            {"RXA", RXA.data(), neq},
            {"WRHS", WRHS.data(), neq}};
  }

  void hold(Int node) {
    ARFA[2 * static_cast<std::size_t>(node) - 2] = ARFA[2 * static_cast<std::size_t>(node) - 1] = 0;
  }

  Int nkno, nele, neq;
  std::vector<Int> INTA, ARFA, COLS, ROWI, WORK;
  std::vector<double> RWORK, RR, RB, RX, TEMP, KNG, KNZ, KNA, ELG, SYSM, RXA, WRHS;
};

/// Triangles of a grid of `columns` × `rows` squares over nodes numbered row by row, counter-clockwise.
inline std::vector<std::vector<Int>> gridTriangles(Int columns, Int rows) {
  std::vector<std::vector<Int>> triangles;
  for (Int r = 0; r < rows; ++r)
    for (Int c = 0; c < columns; ++c) {
      const Int n = r * (columns + 1) + c + 1;
      const Int up = n + columns + 1;
      triangles.push_back({n, n + 1, up + 1});
      triangles.push_back({n, up + 1, up});
    }
  return triangles;
}

/// A flat plate of `columns` × `rows` squares of side `edge` (mm) at height z.
inline TestPart flatPlate(Int columns, Int rows, double z = 0.0, double edge = 10.0) {
  std::vector<Point> nodes;
  for (Int r = 0; r <= rows; ++r)
    for (Int c = 0; c <= columns; ++c) nodes.push_back({edge * c, edge * r, z});
  return {nodes, gridTriangles(columns, rows)};
}

/// A hat of sheet over a profile in the x-z plane: flange, wall, roof, wall, flange, with vertical walls.
/// `across` squares in the depth y; every leg of the profile has `legs` squares of side `edge` (mm).
inline TestPart hatWithVerticalWalls(Int legs, Int across, double edge = 10.0) {
  std::vector<std::pair<double, double>> profile{{0.0, 0.0}};
  const std::vector<std::pair<double, double>> directions{{1, 0}, {0, 1}, {1, 0}, {0, -1}, {1, 0}};
  for (const auto& [dx, dz] : directions)
    for (Int s = 0; s < legs; ++s)
      profile.push_back({profile.back().first + edge * dx, profile.back().second + edge * dz});
  std::vector<Point> nodes;
  for (Int r = 0; r <= across; ++r)
    for (const auto& [x, z] : profile) nodes.push_back({x, edge * r, z});
  return {nodes, gridTriangles(static_cast<Int>(profile.size()) - 1, across)};
}

/// A shallow dome over a plate: z = height · (1 − (x/a)²)·(1 − (y/a)²) over |x|, |y| ≤ a = 10·half.
inline TestPart dome(Int half, double height) {
  std::vector<Point> nodes;
  for (Int r = -half; r <= half; ++r)
    for (Int c = -half; c <= half; ++c) {
      const double s = double(c) / half, t = double(r) / half;
      nodes.push_back({10.0 * c, 10.0 * r, height * (1.0 - s * s) * (1.0 - t * t)});
    }
  return {nodes, gridTriangles(2 * half, 2 * half)};
}

/// Collects what the progress handler is told, as long as it lives: fractions as "0.25", texts as they are.
class ProgressLog {
 public:
  ProgressLog() { PlivaneSetProgressHdlr(&ProgressLog::take, this); }
  ~ProgressLog() { PlivaneSetProgressHdlr(nullptr, nullptr); }
  ProgressLog(const ProgressLog&) = delete;
  ProgressLog& operator=(const ProgressLog&) = delete;

  std::vector<TornwalzenProgress> records;
  std::vector<double> fractions;
  std::vector<std::string> texts;  // without the time texts
  Int times = 0;                   // number of time texts

 private:
  static void take(void* self, const TornwalzenProgress* record) {
    auto& log = *static_cast<ProgressLog*>(self);
    log.records.push_back(*record);
    if (record->kind == 0)
      log.fractions.push_back(record->value);
    else if (std::string(record->text).rfind("TIME: ", 0) == 0)
      ++log.times;
    else
      log.texts.emplace_back(record->text);
  }
};

/// The lines of a captured output, without their trailing blanks.
inline std::vector<std::string> linesOf(const std::string& captured) {
  std::vector<std::string> lines;
  std::size_t begin = 0;
  for (std::size_t end; (end = captured.find('\n', begin)) != std::string::npos; begin = end + 1) {
    std::string line = captured.substr(begin, end - begin);
    line.erase(line.find_last_not_of(' ') + 1);
    lines.push_back(line);
  }
  return lines;
}

}  // namespace tornwalzen::test
