// Reading the user's flow curve; see the header.
#include "command/flow_curve.hpp"

#include <algorithm>
#include <array>
#include <cstdint>

#include "command/point_table.hpp"
#include "system/failure.hpp"
#include "system/text.hpp"
#include "tornwalzen_ext.h"

namespace host {

namespace {

constexpr int lawPoints = 49;      // as many as the library takes
constexpr double lawStrain = 1.0;  // plastic strain up to which a law is tabulated
constexpr std::size_t mostParameters = 4;

struct Law {
  const char* name;
  std::array<const char*, mostParameters>
      keys;  // in the order of the library's arguments; null behind the last
  int (*points)(const std::array<double, mostParameters>& p, double to, double* strain, double* stress);
};

const Law laws[] = {
    {"hollomon",
     {"K", "n"},
     [](const auto& p, double to, double* e, double* s) {
       return static_cast<int>(tornwalzen_points_hollomon(p[0], p[1], to, lawPoints, e, s));
     }},
    {"swift",
     {"K", "e0", "n"},
     [](const auto& p, double to, double* e, double* s) {
       return static_cast<int>(tornwalzen_points_swift(p[0], p[1], p[2], to, lawPoints, e, s));
     }},
    {"ludwik",
     {"s0", "K", "n"},
     [](const auto& p, double to, double* e, double* s) {
       return static_cast<int>(tornwalzen_points_ludwik(p[0], p[1], p[2], to, lawPoints, e, s));
     }},
    {"voce",
     {"s0", "ss", "rate"},
     [](const auto& p, double to, double* e, double* s) {
       return static_cast<int>(tornwalzen_points_voce(p[0], p[1], p[2], to, lawPoints, e, s));
     }},
    {"hockett-sherby",
     {"s0", "ss", "rate", "n"},
     [](const auto& p, double to, double* e, double* s) {
       return static_cast<int>(tornwalzen_points_hockett_sherby(p[0], p[1], p[2], p[3], to, lawPoints, e, s));
     }},
};

std::string keyList(const Law& law) {
  std::string list;
  for (const char* key : law.keys)
    if (key != nullptr) list += (list.empty() ? "" : ",") + std::string(key);
  return list;
}

const Law& lawNamed(const std::string& name, const std::string& text) {
  std::string known;
  for (const Law& law : laws) {
    if (law.name == name) return law;
    known += std::string(known.empty() ? "" : ", ") + law.name + ":" + keyList(law);
  }
  throw Failure("--law " + shown(text) + ": there is no law \"" + shown(name) + "\"; known are " + known);
}

struct Parameters {
  std::array<double, mostParameters> values{};
  std::array<bool, mostParameters> given{};
  double to = lawStrain;
};

// One KEY=VALUE.
void takeParameter(const Law& law, const std::string& word, const std::string& text, Parameters& parameters) {
  const std::size_t equals = word.find('=');
  const std::string key = word.substr(0, equals);
  double value = 0.0;
  if (equals == std::string::npos || !readReal(word.substr(equals + 1), value))
    throw Failure("--law " + shown(text) + ": \"" + shown(word) + "\" is not KEY=NUMBER");
  if (key == "to") {
    parameters.to = value;
    return;
  }
  for (std::size_t k = 0; k < mostParameters; ++k) {
    if (law.keys[k] == nullptr || key != law.keys[k]) continue;
    parameters.values[k] = value;
    parameters.given[k] = true;
    return;
  }
  throw Failure("--law " + shown(text) + ": " + law.name + " has no \"" + shown(key) + "\", it takes " +
                keyList(law) + " and to");
}

}  // namespace

FlowCurve readFlowCurve(const std::string& path) {
  FlowCurve curve;
  curve.source = "--curve " + path;
  for (const PointTable::Row& row :
       readPointTable(path, curve.source, "a plastic strain and a flow stress in MPa").rows) {
    curve.strain.push_back(row.first);
    curve.stress.push_back(row.second);
  }
  return curve;
}

FlowCurve hardeningLaw(const std::string& text) {
  const std::size_t colon = text.find(':');
  const Law& law = lawNamed(text.substr(0, colon), text);
  Parameters parameters;
  for (std::size_t begin = colon; begin != std::string::npos;) {
    const std::size_t end = text.find(',', begin + 1);
    takeParameter(law, text.substr(begin + 1, end == std::string::npos ? end : end - begin - 1), text,
                  parameters);
    begin = end;
  }
  for (std::size_t k = 0; k < mostParameters; ++k)
    if (law.keys[k] != nullptr && !parameters.given[k])
      throw Failure("--law " + shown(text) + ": " + law.name + " also needs " + law.keys[k]);
  FlowCurve curve;
  curve.source = "--law " + text;
  curve.strain.resize(lawPoints);
  curve.stress.resize(lawPoints);
  const int code = law.points(parameters.values, parameters.to, curve.strain.data(), curve.stress.data());
  if (code != TORNWALZEN_OK) throw Failure(curve.source + ": " + tornwalzen_error_text(code, 1));
  return curve;
}

}  // namespace host
