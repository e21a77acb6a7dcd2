// A small bumpy mesh in the library's layouts, its pattern built the plain way, and the run state to assemble
// it.
#pragma once

#include <set>
#include <vector>

#include "element/assembly.hpp"
#include "reference.hpp"

namespace reference {

struct SmallMesh {
  Int nodes, elements, equations;
  std::vector<Int> INTA, ARFA, COLS, ROWI;
  std::vector<double> RX, KNZ, RR, TEMP, SYSM;

  /// cells × cells squares, cut in two each; the blank is shaken, the part is a bump over it.
  explicit SmallMesh(Int cells, unsigned seed = 1) {
    const Int side = cells + 1;
    nodes = side * side, elements = 2 * cells * cells, equations = 2 * nodes;
    RandomTriangles random(seed);
    RX.resize(equations), KNZ.resize(3 * nodes);
    for (Int n = 0; n < nodes; ++n) {
      const double u = n % side + random.between(-0.15, 0.15), v = n / side + random.between(-0.15, 0.15);
      RX[2 * n] = u, RX[2 * n + 1] = v;
      KNZ[n] = 1.1 * u + random.between(-0.05, 0.05), KNZ[nodes + n] = 0.95 * v;
      KNZ[2 * nodes + n] = 0.3 * std::sin(u) * std::cos(v);
    }
    std::vector<std::array<Int, 3>> corners;
    for (Int row = 0; row < cells; ++row) {
      for (Int column = 0; column < cells; ++column) {
        const Int n = row * side + column + 1;
        corners.push_back({n, n + 1, n + side + 1});
        corners.push_back({n + side + 1, n + side, n});
      }
    }
    setCorners(corners);
    ARFA.assign(equations, 1);
    RR.assign(equations, 77.0), TEMP.assign(equations, 77.0);  // left over from something else
  }

  void setCorners(const std::vector<std::array<Int, 3>>& corners) {
    elements = static_cast<Int>(corners.size());
    INTA.resize(3 * elements);
    for (Int e = 0; e < elements; ++e)
      for (Int c = 0; c < 3; ++c) INTA[c * elements + e] = corners[e][c];
    pattern();
    SYSM.assign(ROWI.size(), 77.0);
  }
  std::array<Int, 3> corners(Int e) const {
    return {INTA[e - 1], INTA[elements + e - 1], INTA[2 * elements + e - 1]};
  }
  std::array<Int, 6> equationsOf(Int e) const {
    std::array<Int, 6> eq;
    for (int c = 0; c < 3; ++c) eq[2 * c] = 2 * corners(e)[c] - 1, eq[2 * c + 1] = 2 * corners(e)[c];
    return eq;
  }
  double entry(Int row, Int column) const {
    for (Int p = COLS[column - 1]; p < COLS[column]; ++p)
      if (ROWI[p - 1] == row) return SYSM[p - 1];
    return 0.0;
  }

  void enter() const {
    run.nkno = run.maxkno = nodes;
    run.nele = run.maxele = elements;
    run.neq = run.solver.neq = equations;
    run.solver.nsysm = run.solver.mnsysm = static_cast<Int>(ROWI.size());
  }
  tornwalzen::Table<const Int> incidences() const { return {"INTA", INTA.data(), elements, 3}; }
  tornwalzen::Vector<const double> blank() const { return {"RX", RX.data(), equations}; }
  tornwalzen::Table<const double> target() const { return {"KNZ", KNZ.data(), nodes, 3}; }
  void assemble(Int mode) {
    enter();
    tornwalzen::DriverArrays a;
    a.INTA = {"INTA", INTA.data(), elements, 3};
    a.ARFA = {"ARFA", ARFA.data(), equations};
    a.COLS = {"COLS", COLS.data(), equations + 1};
    a.ROWI = {"ROWI", ROWI.data(), static_cast<Int>(ROWI.size())};
    a.RX = {"RX", RX.data(), equations};
    a.KNZ = {"KNZ", KNZ.data(), nodes, 3};
    a.RR = {"RR", RR.data(), equations};
    a.TEMP = {"TEMP", TEMP.data(), equations};
    a.SYSM = {"SYSM", SYSM.data(), static_cast<Int>(SYSM.size())};
    tornwalzen::assemble(tornwalzen::run, mode, a);
  }

 private:
  void pattern() {
    std::vector<std::set<Int>> rows(equations + 1);
    for (Int n = 1; n <= nodes; ++n) rows[2 * n - 1] = {2 * n - 1, 2 * n}, rows[2 * n] = {2 * n};
    for (Int e = 1; e <= elements; ++e)
      for (const Int c : equationsOf(e))
        for (const Int r : equationsOf(e))
          if (r >= c) rows[c].insert(r);
    COLS.assign(1, 1);
    ROWI.clear();
    for (Int c = 1; c <= equations; ++c) {
      ROWI.insert(ROWI.end(), rows[c].begin(), rows[c].end());
      COLS.push_back(static_cast<Int>(ROWI.size()) + 1);
    }
  }
};

}  // namespace reference
