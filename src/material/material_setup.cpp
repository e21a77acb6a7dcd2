// The built-in flow curves (plastic strain, dimensionless; flow stress in MPa), the host's in their place, their
// normalisation and the coefficients of their piecewise cubics.
#include "material/material_setup.hpp"

#include <iterator>

namespace tornwalzen {

namespace {

// Five table values are held in single precision and widened; results depend on the digits that this adds.
constexpr double strain024 = 0.24f;        // 0.23999999463558197
constexpr double strain158621 = 1.58621f;  // 1.5862100124359131
constexpr double stress566876 = 566.876f;  // 566.8759765625
constexpr double stress570104 = 570.104f;  // 570.10400390625
constexpr double stress85323 = 853.23f;    // 853.22998046875

constexpr double farStrain = farCurveStrain;

constexpr double strains0[] = {0.0,     0.06897, 0.13793,      0.2069,   0.27586, 0.34483, 0.41379,
                               0.48276, 0.55172, 0.62069,      0.68966,  0.75862, 0.82759, 0.89655,
                               0.96552, 1.03448, 1.10345,      1.17241,  1.24138, 1.31034, 1.37931,
                               1.44828, 1.51724, strain158621, farStrain};
constexpr double stresses0[] = {153.0,   283.505, 329.4,        360.294,    384.162, 403.852, 420.736,
                                435.591, 448.902, 460.995,      472.097,    482.378, 491.965, 500.957,
                                509.432, 517.454, 525.074,      532.337,    539.278, 545.929, 552.315,
                                558.461, 564.385, stress570104, stress85323};

constexpr double strains1[] = {0.0,  0.01, 0.02, 0.03, 0.04, 0.05, 0.06,      0.07,     0.08,
                               0.09, 0.10, 0.11, 0.12, 0.13, 0.14, 0.15,      0.16,     0.17,
                               0.18, 0.19, 0.20, 0.21, 0.22, 0.23, strain024, farStrain};
constexpr double stresses1[] = {366.0,   369.333, 379.545, 402.435,      421.82,  438.375, 452.413,
                                464.642, 475.012, 485.903, 495.27,       502.253, 510.108, 517.186,
                                523.885, 529.764, 534.457, 539.845,      544.459, 549.96,  553.687,
                                557.85,  561.553, 564.782, stress566876, 1563.0};

constexpr double strains2[] = {0.0, 0.03, 0.058, 0.1, 0.14, 0.191, 0.223, 0.247, 2.0, farStrain};
constexpr double stresses2[] = {152.0, 191.0, 236.6, 272.1, 311.9, 332.0, 340.0, 344.0, 370.0, 415.0};

// Curve 10 is curve 0 with one more point between its first two.
constexpr double strains10[] = {0.0,     0.03,    0.06897, 0.13793,      0.2069,   0.27586, 0.34483,
                                0.41379, 0.48276, 0.55172, 0.62069,      0.68966,  0.75862, 0.82759,
                                0.89655, 0.96552, 1.03448, 1.10345,      1.17241,  1.24138, 1.31034,
                                1.37931, 1.44828, 1.51724, strain158621, farStrain};
constexpr double stresses10[] = {153.0,   210.0,   283.505, 329.4,        360.294,    384.162, 403.852,
                                 420.736, 435.591, 448.902, 460.995,      472.097,    482.378, 491.965,
                                 500.957, 509.432, 517.454, 525.074,      532.337,    539.278, 545.929,
                                 552.315, 558.461, 564.385, stress570104, stress85323};

struct BuiltInCurve {
  Int selector;
  Int points;
  const double* strains;
  const double* stresses;
};

constexpr BuiltInCurve builtInCurves[] = {
    {0, std::size(strains0), strains0, stresses0},
    {1, std::size(strains1), strains1, stresses1},
    {2, std::size(strains2), strains2, stresses2},
    {10, std::size(strains10), strains10, stresses10},
};
static_assert(std::size(strains0) == std::size(stresses0) && std::size(strains0) == 25);
static_assert(std::size(strains1) == std::size(stresses1) && std::size(strains1) == 26);
static_assert(std::size(strains2) == std::size(stresses2) && std::size(strains2) == 10);
static_assert(std::size(strains10) == std::size(stresses10) && std::size(strains10) == 26);

// Divides the stresses by the smallest of them.
void normalise(Table<double> FC, Int npkt, double& smin) {
  smin = FC(1, 2);
  for (Int i = 2; i <= npkt; ++i)
    if (FC(i, 2) <= smin) smin = FC(i, 2);
  for (Int i = 1; i <= npkt; ++i) FC(i, 2) /= smin;
}

void copyBuiltIn(const BuiltInCurve& curve, Table<double> FC, Int& npkt) {
  npkt = curve.points;
  for (Int i = 1; i <= npkt; ++i) {
    FC(i, 1) = curve.strains[i - 1];
    FC(i, 2) = curve.stresses[i - 1];
  }
}

}  // namespace

void prepareFlowCurve(Table<double> FC, Int npkt) {
  for (Int i = 1; i < npkt; ++i) FC(i, 3) = (FC(i + 1, 2) - FC(i, 2)) / (FC(i + 1, 1) - FC(i, 1));
  FC(npkt, 3) = FC(npkt - 1, 3);

  // m(i+1), the slope at the right end of segment i: the mean of its secant slope and the next one's.
  const auto nodeSlope = [&](Int i) { return (FC(i - 1, 3) + FC(i, 3)) / 2.0; };
  {
    const double e1 = FC(1, 1), e2 = FC(2, 1), s1 = FC(1, 2), s2 = FC(2, 2), m2 = nodeSlope(2);
    const double h = e1 - e2;
    const double B = (s1 - s2) / (h * h) - m2 / h;
    const double C = m2 - 2.0 * B * e2;
    FC(1, 4) = 0.0;
    FC(1, 5) = B;
    FC(1, 6) = C;
    FC(1, 7) = s1 - B * e1 * e1 - C * e1;
  }
  for (Int i = 2; i < npkt; ++i) {
    const double ei = FC(i, 1), ej = FC(i + 1, 1), si = FC(i, 2), s = FC(i, 3);
    const double mi = nodeSlope(i), mj = nodeSlope(i + 1);
    const double h = ei - ej;
    const double A = (mi + mj - 2.0 * s) / (h * h);
    const double B = (s - ((ei + ej) * ei - 2.0 * ej * ej) * A - mj) / h;
    const double C = mi - 3.0 * A * ei * ei - 2.0 * B * ei;
    FC(i, 4) = A;
    FC(i, 5) = B;
    FC(i, 6) = C;
    FC(i, 7) = si - A * ei * ei * ei - B * ei * ei - C * ei;
  }
}

void copyHostCurve(const HostCurve& curve, Table<double> FC, Int& npkt) {
  const Int last = curve.points;
  for (Int i = 1; i <= last; ++i) {
    FC(i, 1) = curve.strain[i - 1];
    FC(i, 2) = curve.stress[i - 1];
  }
  npkt = last + 1;
  FC(npkt, 1) = farCurveStrain;
  FC(npkt, 2) = FC(last, 2) + (FC(last, 2) - FC(last - 1, 2)) / (FC(last, 1) - FC(last - 1, 1)) *
                                  (farCurveStrain - FC(last, 1));
}

bool loadFlowCurve(const RunOptions& options, Int selector, Table<double> FC, Int& npkt, double& smin) {
  for (const BuiltInCurve& curve : builtInCurves) {
    if (curve.selector != selector) continue;
    if (selector < curveSelectors && options.curves[selector].points > 0)
      copyHostCurve(options.curves[selector], FC, npkt);
    else
      copyBuiltIn(curve, FC, npkt);
    normalise(FC, npkt, smin);
    prepareFlowCurve(FC, npkt);
    return true;
  }
  return false;
}

void materialSetup(Analysis& run, Int ICTRL) {
  loadFlowCurve(run.options, ICTRL, flowCurve(run), run.npkt, run.smin);
}

void selectMaterial(Analysis& run, Int ICTRL) {
  materialSetup(run, ICTRL);
  run.istat = ICTRL == 0 || ICTRL == 1 || ICTRL == 2 ? 1 : 0;
}

}  // namespace tornwalzen
