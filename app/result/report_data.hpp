// What the page report.html shows, as plain data: whoever makes a page fills what is there, and what is empty is not
// shown. Lengths are in `unit`; triangles count from 0 here, and by `number` on the page.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace host {

enum class ReportLevel { good, note, caution, bad };

// A term of the key that a field follows: factor times a value of one field, or of two.
struct KeyTerm {
  double factor = 1.0;  // a whole number, so that the key has no rounding
  int first = 0;        // index in ReportData::fields
  int second = -1;      // likewise; -1: none
};

enum class ClassColour { plain, green, amber, red, blue, violet };

struct ReportClass {
  std::string name;
  ClassColour colour = ClassColour::plain;
};

// A quantity per triangle, by which part and blank can be coloured.
struct ReportField {
  std::string name;                  // "thinning"
  std::string unit;                  // "%", "MPa"; empty: dimensionless
  std::string note;                  // what it is, a formula
  std::vector<double> values;        // per triangle; not finite: the triangle has none
  bool aboutZero = false;            // coloured from zero to both sides
  std::vector<ReportClass> classes;  // not empty: the values are their indices
  // The field is a function of earlier ones, and this is a key along which it changes little: it is sent in that
  // order and so needs little room. A key refers to fields without one, or to earlier ones.
  std::vector<KeyTerm> key;
};

struct ReportFigure {
  std::string name, value;
};

struct ReportFinding {
  ReportLevel level = ReportLevel::good;
  std::string text;
};

// What the result is worth, in words.
struct ReportTrust {
  ReportLevel level = ReportLevel::good;
  std::string headline;
  std::vector<ReportFinding> findings;
  std::string scope;  // what the method leaves out
};

struct ReportPlace {
  std::string text;
  std::int64_t triangle = 0;
};

using ReportPoint = std::array<double, 2>;  // x, y

struct ReportOutline {
  std::vector<std::vector<ReportPoint>> loops;  // closed, the outer one first
  double angle = 0.0;                           // degrees from x to the length of the smallest rectangle
  std::vector<ReportPoint> marks;               // where it is wrong
};

struct ReportIncrement {
  int number = 0;                // from 1; a repeated one keeps its number
  double progress = 0.0;         // 0..1, of the part, at its end
  bool repeated = false;         // given up, and made again with a smaller step
  std::vector<double> gradient;  // mm, largest free component after each step
  std::vector<double> factor;    // accepted fraction of each correction, 0: none
  int chords = 0;                // steps with an earlier factorization; the others are Newton iterations
};

struct ReportConvergence {
  std::vector<ReportIncrement> increments;
  double tolerance = 0.0;  // mm, of the last increment
};

// The forming-limit curve; the diagram itself needs the fields alone.
struct ReportLimits {
  std::vector<ReportPoint> curve;  // minor and major strain, logarithmic
  double margin = 0.0;             // percent of engineering strain below the curve: marginal
  std::string source;
};

struct ReportStrip {
  double width = 0.0, pitch = 0.0;            // width across, pitch along the strip
  std::vector<std::array<double, 3>> placed;  // per blank: turned by (degrees), then moved by x (along) and y
  std::vector<ReportFigure> figures;
};

struct ReportData {
  std::string part, program, unit = "mm";
  // the mesh: nodes in any order, those in no triangle are left out
  std::vector<double> partPoints;        // x, y, z per node
  std::vector<double> blankPoints;       // x, y per node
  std::vector<std::int32_t> corners;     // three nodes per triangle, from 0
  std::vector<std::int32_t> number;      // per triangle, in the user's file; empty: from 1 on
  std::vector<ReportField> fields;       // all of the triangles' length
  int shownField = 0;                    // index of the one shown first
  int majorField = -1, minorField = -1;  // strains of the diagram; -1: no diagram
  std::vector<std::string> notes;        // sentences about the mesh
  std::vector<ReportFigure> figures;     // the key figures
  std::vector<ReportFigure> settings;    // what the run was made with
  ReportTrust trust;
  std::vector<ReportPlace> places;
  ReportOutline outline;
  ReportConvergence convergence;
  ReportLimits limits;
  ReportStrip strip;
};

}  // namespace host
