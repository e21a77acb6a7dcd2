// The packed mesh is unpacked here by the words of the header alone, and compared with what went in.
#include "result/report_pack.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

#include "app/refusal.hpp"
#include "app/result/sample_report.hpp"

using namespace host;

namespace {

using Whole = std::vector<std::int64_t>;

struct Unpacked {
  std::vector<Whole> nodes;      // x, y, z on the part, x, y in the blank
  std::vector<Whole> triangles;  // three corners, number
  std::vector<Whole> none;       // per field in storage order
  std::vector<Whole> values;     // per field in storage order, as stored
};

std::string inflated(const std::string& bytes, std::size_t length) {
  std::string planes(length, '\0');
  uLongf size = length;
  EXPECT_EQ(uncompress(reinterpret_cast<Bytef*>(planes.data()), &size,
                       reinterpret_cast<const Bytef*>(bytes.data()), bytes.size()),
            Z_OK);
  EXPECT_EQ(size, length);
  return planes;
}

Unpacked unpack(const PackedMesh& mesh) {
  std::vector<std::size_t> counts(5, static_cast<std::size_t>(mesh.nodes));
  counts.insert(counts.end(), 4, static_cast<std::size_t>(mesh.triangles));
  for (const int f : mesh.fieldOrder) {
    counts.push_back(static_cast<std::size_t>(mesh.fields[static_cast<std::size_t>(f)].none));
    counts.push_back(static_cast<std::size_t>(mesh.triangles));
  }
  EXPECT_EQ(counts.size(), mesh.widths.size());
  std::size_t length = 0, at = 0;
  for (std::size_t s = 0; s < counts.size(); ++s)
    length += counts[s] * static_cast<std::size_t>(mesh.widths[s]);
  const std::string planes = inflated(mesh.bytes, length);
  std::vector<Whole> streams;
  for (std::size_t s = 0; s < counts.size(); ++s) {
    Whole numbers(counts[s], 0);
    for (int plane = 0; plane < mesh.widths[s]; ++plane)
      for (std::size_t k = 0; k < counts[s]; ++k, ++at)
        numbers[k] += static_cast<std::int64_t>(static_cast<unsigned char>(planes[at])) << (8 * plane);
    for (std::int64_t& number : numbers) number = number % 2 == 0 ? number / 2 : -(number + 1) / 2;
    // all but the second and third corners are differences
    if (s != 6 && s != 7)
      for (std::size_t k = 1; k < numbers.size(); ++k) numbers[k] += numbers[k - 1];
    streams.push_back(numbers);
  }
  Unpacked unpacked;
  unpacked.nodes.assign(streams.begin(), streams.begin() + 5);
  unpacked.triangles.assign(streams.begin() + 5, streams.begin() + 9);
  for (std::size_t e = 0; e < unpacked.triangles[0].size(); ++e) {
    unpacked.triangles[1][e] += unpacked.triangles[0][e];
    unpacked.triangles[2][e] += unpacked.triangles[1][e];
  }
  for (std::size_t s = 9; s < streams.size(); s += 2) {
    unpacked.none.push_back(streams[s]);
    unpacked.values.push_back(streams[s + 1]);
  }
  return unpacked;
}

// Per number of a triangle: its corners' places on the part, from the one that is stored first.
std::map<std::int64_t, std::vector<double>> cornersOf(const PackedMesh& mesh, const Unpacked& unpacked) {
  std::map<std::int64_t, std::vector<double>> corners;
  for (std::size_t e = 0; e < unpacked.triangles[0].size(); ++e)
    for (std::size_t k = 0; k < 3; ++k)
      for (std::size_t axis = 0; axis < 3; ++axis)
        corners[unpacked.triangles[3][e]].push_back(
            mesh.partOrigin[axis] +
            mesh.partStep * static_cast<double>(
                                unpacked.nodes[axis][static_cast<std::size_t>(unpacked.triangles[k][e])]));
  return corners;
}

void expectMesh(const ReportData& report) {
  const PackedMesh mesh = packMesh(report);
  const auto corners = cornersOf(mesh, unpack(mesh));
  ASSERT_EQ(corners.size(), report.corners.size() / 3);
  for (std::size_t e = 0; e < report.corners.size() / 3; ++e) {
    const std::vector<double>& got = corners.at(report.number[e]);
    // the triangle may begin with another corner, but it runs the same way
    double best = std::numeric_limits<double>::infinity();
    for (std::size_t turn = 0; turn < 3; ++turn) {
      double worst = 0.0;
      for (std::size_t k = 0; k < 3; ++k)
        for (std::size_t axis = 0; axis < 3; ++axis)
          worst = std::max(
              worst,
              std::abs(
                  got[3 * k + axis] -
                  report.partPoints[3 * static_cast<std::size_t>(report.corners[3 * e + (k + turn) % 3]) +
                                    axis]));
      best = std::min(best, worst);
    }
    ASSERT_LE(best, 0.51 * mesh.partStep) << "triangle " << e;
  }
}

}  // namespace

TEST(ReportPack, PlacesAndCornersComeBackWithinHalfAStep) {
  expectMesh(sampleReport(20));
}

TEST(ReportPack, AShuffledMeshComesBackToo) {
  const ReportData report = sampleReport(20);
  expectMesh(shuffledReport(report));
}

TEST(ReportPack, TheShorterOfBothOrdersIsTaken) {
  const ReportData report = sampleReport(60);
  const Unpacked kept = unpack(packMesh(report));
  EXPECT_TRUE(std::is_sorted(kept.triangles[3].begin(), kept.triangles[3].end())) << "the file's order";
  const ReportData other = shuffledReport(report);
  const Unpacked moved = unpack(packMesh(other));
  EXPECT_FALSE(std::equal(moved.triangles[3].begin(), moved.triangles[3].end(), other.number.begin()));
  EXPECT_TRUE(std::is_sorted(moved.triangles[0].begin(), moved.triangles[0].end())) << "by the first node";
}

TEST(ReportPack, ValuesAreWholeStepsOfAThousandthOfTheirRangeAtMost) {
  const ReportData report = sampleReport(20);
  const PackedMesh mesh = packMesh(report);
  const Unpacked unpacked = unpack(mesh);
  for (std::size_t s = 0; s < mesh.fieldOrder.size(); ++s) {
    const auto f = static_cast<std::size_t>(mesh.fieldOrder[s]);
    const double step = std::pow(10.0, mesh.fields[f].power);
    // with a key they are stored in another order: as sets they are the same
    std::vector<double> got, wanted;
    for (const std::int64_t value : unpacked.values[s]) got.push_back(step * static_cast<double>(value));
    for (const double value : report.fields[f].values) wanted.push_back(std::isfinite(value) ? value : 0.0);
    std::sort(got.begin(), got.end());
    std::sort(wanted.begin(), wanted.end());
    for (std::size_t e = 0; e < got.size(); ++e)
      ASSERT_NEAR(got[e], wanted[e], 0.5000001 * step) << report.fields[f].name;
    const double range = report.fields[f].classes.empty() ? wanted.back() - wanted.front() : 1e3;
    EXPECT_LE(step, range / 1e3) << report.fields[f].name;
  }
}

TEST(ReportPack, ValuesAlongTheirKeyNeedHardlyAnyRoom) {
  ReportData report = sampleReport(100);
  const std::size_t with = packMesh(report).bytes.size();
  for (ReportField& field : report.fields) field.key.clear();
  const std::size_t without = packMesh(report).bytes.size();
  EXPECT_LT(static_cast<double>(with), 0.8 * static_cast<double>(without));
}

TEST(ReportPack, InThreadsTheBytesAreTheSame) {
  const ReportData report = sampleReport(60);
  for (const ReportData& numbered :
       {report, shuffledReport(report)}) {  // the file's order, the Morton curve's
    EXPECT_EQ(packMesh(numbered, true).bytes, packMesh(numbered).bytes);
    EXPECT_EQ(packMesh(numbered, true).widths, packMesh(numbered).widths);
  }
}

TEST(ReportPack, TrianglesWithoutAValueAreNamed) {
  ReportData report = sampleReport(4);
  report.fields.resize(1);
  report.fields[0].key.clear();
  report.fields[0].values[3] = std::numeric_limits<double>::quiet_NaN();
  report.fields[0].values[7] = std::numeric_limits<double>::infinity();
  const PackedMesh mesh = packMesh(report);
  EXPECT_EQ(mesh.fields[0].none, 2);
  const Unpacked unpacked = unpack(mesh);
  Whole numbers;
  for (const std::int64_t e : unpacked.none[0])
    numbers.push_back(unpacked.triangles[3][static_cast<std::size_t>(e)]);
  EXPECT_THAT(numbers, testing::UnorderedElementsAre(report.number[3], report.number[7]));
}

TEST(ReportPack, NodesInNoTriangleAreLeftOut) {
  ReportData report = sampleReport(4);
  report.partPoints.insert(report.partPoints.end(), {1e9, 1e9, 1e9});
  report.blankPoints.insert(report.blankPoints.end(), {1e9, 1e9});
  const PackedMesh mesh = packMesh(report);
  EXPECT_EQ(mesh.nodes, 25);
  EXPECT_LT(mesh.partStep, 1.0);
}

TEST(ReportPack, StepsAreDecimalPowers) {
  const auto power = [](std::vector<double> values) {
    ReportField field;
    field.values = std::move(values);
    return stepsOf(field).power;
  };
  EXPECT_EQ(power({-0.1, 0.4}), -4);  // range 0.5
  EXPECT_EQ(power({0.0, 0.99}), -4);
  EXPECT_EQ(power({0.0, 1.01}), -3);
  EXPECT_EQ(power({200.0, 800.0}), -1);
  EXPECT_EQ(power({0.0, 2e9}), 6);
  EXPECT_EQ(power({200.0, 200.0}), -4);  // no range: a millionth of the value
  EXPECT_EQ(power({0.0, 0.0}), 0);
  EXPECT_EQ(power({}), 0);
  EXPECT_EQ(power({std::numeric_limits<double>::quiet_NaN()}), 0);
}

TEST(ReportPack, AKeyThatWouldNotBeExactIsNotUsed) {
  ReportData report = sampleReport(4);
  ASSERT_FALSE(packMesh(report).fields[0].key.empty());
  for (KeyTerm& term : report.fields[0].key) term.factor = 1e12;
  EXPECT_TRUE(packMesh(report).fields[0].key.empty());
}

TEST(ReportPack, NothingGivesNothing) {
  const PackedMesh mesh = packMesh(ReportData{});
  EXPECT_EQ(mesh.nodes, 0);
  EXPECT_EQ(mesh.triangles, 0);
  unpack(mesh);
}

TEST(ReportPack, WhatDoesNotFitIsRefused) {
  const auto refused = [](const std::function<void(ReportData&)>& spoil) {
    ReportData report = sampleReport(4);
    spoil(report);
    return refusal([&] { packMesh(report); });
  };
  const std::string misfit = "the report's mesh and fields do not fit each other";
  EXPECT_EQ(refused([](ReportData& report) { report.corners[4] = 25; }), misfit);
  EXPECT_EQ(refused([](ReportData& report) { report.corners[4] = -1; }), misfit);
  EXPECT_EQ(refused([](ReportData& report) { report.corners.pop_back(); }), misfit);
  EXPECT_EQ(refused([](ReportData& report) { report.blankPoints.pop_back(); }), misfit);
  EXPECT_EQ(refused([](ReportData& report) { report.partPoints.pop_back(); }), misfit);
  EXPECT_EQ(refused([](ReportData& report) { report.number.pop_back(); }), misfit);
  EXPECT_EQ(refused([](ReportData& report) { report.fields[1].values.pop_back(); }), misfit);
  EXPECT_EQ(refused([](ReportData& report) { report.fields[5].values[2] = 3.0; }), misfit)
      << "there are three classes";
  EXPECT_EQ(refused([](ReportData& report) { report.fields[5].values[2] = 0.5; }), misfit);
  EXPECT_EQ(refused([](ReportData& report) { report.fields[5].values[2] = -1.0; }), misfit);
  EXPECT_EQ(refused([](ReportData& report) { report.fields[0].key = {{1.0, 99}}; }), misfit);
  EXPECT_EQ(refused([](ReportData& report) {
              report.fields[3].key = {{1.0, 4}};
            }),
            misfit)
      << "a later field with a key";
  EXPECT_EQ(
      refused([](ReportData& report) { report.partPoints[5] = std::numeric_limits<double>::infinity(); }),
      "the report's mesh has a coordinate that is not finite");
}
