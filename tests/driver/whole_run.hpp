// A whole run of the driver, with its lines and its progress taken apart.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "driver/inverse_driver.hpp"
#include "driver/test_run.hpp"

namespace tornwalzen::test {

struct Increment {
  int number;
  double lambda, step;
  std::vector<double> maxgrad, lsfak;  // one per Newton iteration
  bool repeated = false;
};

/// Runs the driver on a part and takes its output apart.
struct WholeRun {
  TestPart& part;
  std::vector<double> EVAL;
  std::vector<std::string> lines;
  std::vector<Increment> increments;
  std::vector<double> fractions;  // of the increments, behind those of the development
  std::vector<std::string> texts;
  Int times = 0;
  bool converged = false;  // judged as a host has to

  WholeRun(TestPart& p, Int ICTRL) : part(p), EVAL(5 * static_cast<std::size_t>(p.nele), -9.0) {
    prepareSolver(part);
    selectMaterial(ICTRL);
    ProgressLog log;
    testing::internal::CaptureStdout();
    inverseDriver(run, part.arrays(), {"EVAL", EVAL.data(), static_cast<Int64>(EVAL.size())});
    lines = linesOf(testing::internal::GetCapturedStdout());
    takeApart();
    const std::size_t own = std::min(log.fractions.size(), increments.size() + 1);
    fractions.assign(log.fractions.end() - static_cast<std::ptrdiff_t>(own), log.fractions.end());
    for (const auto& text : log.texts)
      if (text.rfind(" Tornwalzen - Inverse", 0) == 0) texts.push_back(text);
    for (std::size_t r = log.records.size(); r-- > 0 && log.records[r].kind == 1;) ++trailingTexts;
    converged = !fractions.empty() && fractions.back() == 1.0 && trailingTexts == 3 && run.ierrso == 0;
    times = log.times;
  }

  int trailingTexts = 0;  // texts behind the last fraction: information, time, and the closing time

 private:
  void takeApart() {
    for (const std::string& line : lines) {
      if (line.rfind(" START INKRMEMENT ", 0) == 0)
        increments.push_back({std::atoi(line.c_str() + 18), 0.0, 0.0, {}, {}});
      else if (line.rfind(" FORTSCHRITT/SCHRITTWEITE ", 0) == 0) {
        increments.back().lambda = std::stod(line.substr(26, 10));
        increments.back().step = std::stod(line.substr(36, 10));
      } else if (line.rfind("MAX.GRAD, LS-FAK, EN", 0) == 0) {
        increments.back().maxgrad.push_back(std::strtod(line.substr(20, 13).c_str(), nullptr));
        increments.back().lsfak.push_back(std::strtod(line.substr(33, 13).c_str(), nullptr));
      } else if (line == "INKREMENT WIRD WIEDERHOLT @")
        increments.back().repeated = true;
    }
  }
};

}  // namespace tornwalzen::test
