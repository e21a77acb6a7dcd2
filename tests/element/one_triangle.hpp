// One triangle in the library's layouts, with material 1 set up, and the element's outputs.
#pragma once

#include <gtest/gtest.h>

#include "element/element.hpp"
#include "reference.hpp"

namespace reference {

struct OneTriangle {
  Blank RX{};
  double KNZ[9] = {};  // 3 × 3, column-major
  Int INTA[3] = {1, 2, 3};
  double potential = 0.0, gradient[6] = {}, hessian[36] = {}, ELG[5] = {}, measured = 0.0;

  OneTriangle() = default;
  OneTriangle(const Blank& blank, const Part& part) { place(blank, part); }
  void place(const Blank& blank, const Part& part) {
    RX = blank;
    for (int n = 0; n < 3; ++n)
      for (int i = 0; i < 3; ++i) KNZ[3 * i + n] = part[3 * n + i];
  }
  void evaluate(Int mode) {
    tornwalzen::elementRoutine(tornwalzen::run, 1, mode, {"INTA", INTA, 1, 3}, {"RX", RX.data(), 6},
                               {"KNZ", KNZ, 3, 3}, tornwalzen::FlowCurve(tornwalzen::run), potential,
                               gradient, hessian);
  }
  void measure() {
    tornwalzen::elementMeasure(tornwalzen::run, 1, {"INTA", INTA, 1, 3}, {"RX", RX.data(), 6},
                               {"KNZ", KNZ, 3, 3}, tornwalzen::FlowCurve(tornwalzen::run), measured,
                               {"ELG", ELG, 1, 5});
  }
};

/// Fresh run state, curve 1, the density that istat selects.
class ElementTest : public ::testing::Test {
 protected:
  void SetUp() override {
    tornwalzen::freshState();
    tornwalzen::materialSetup(tornwalzen::run, 1);
    run.istat = 1;
  }
  void TearDown() override {
    tornwalzen::freshState();
    tornwalzen::run.options = tornwalzen::RunOptions();
  }
};

inline double largest(const double* values, int count) {
  double size = 0.0;
  for (int i = 0; i < count; ++i) size = std::max(size, std::fabs(values[i]));
  return size;
}

}  // namespace reference
