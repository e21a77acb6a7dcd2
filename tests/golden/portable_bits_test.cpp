// The portable kernels give the recorded bits in every build and on every system: no compiler fuses a product with a sum,
// none reorders one. Inputs are made without the mathematical library, whose last bits are each system's own; whole runs
// on the kernels need it, and give the recorded bits with one such library, glibc's.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <new>
#include <random>
#include <string>
#include <vector>

#include "element/lanes/element_lanes.hpp"
#include "golden/sample_parts.hpp"
#include "host_kit/default_run.hpp"
#include "material/flow_curve.hpp"
#include "sparse/kernels/dense_kernels.hpp"
#include "sparse/kernels/front_layout.hpp"
#include "sparse/work_layout.hpp"

namespace {

using namespace tornwalzen;

// FNV-1a for 64 bits over the bytes of doubles.
class Bits {
 public:
  void add(const double* values, std::size_t count) {
    for (std::size_t k = 0; k < count; ++k) {
      unsigned char bytes[sizeof(double)];
      std::memcpy(bytes, values + k, sizeof bytes);
      for (const unsigned char byte : bytes) hash_ = (hash_ ^ byte) * 1099511628211u;
    }
  }
  std::string text() const {
    char out[24];
    std::snprintf(out, sizeof out, "%016llx", static_cast<unsigned long long>(hash_));
    return out;
  }

 private:
  std::uint64_t hash_ = 14695981039346656037u;
};

// Numbers of -1 to 1 by exact operations alone.
class Draws {
 public:
  double operator()() { return std::ldexp(static_cast<double>(random_()), -31) - 1.0; }

 private:
  std::mt19937 random_{7};
};

struct LinesOfCache {
  double* const first;
  explicit LinesOfCache(Int64 doubles)
      : first(static_cast<double*>(
            ::operator new(static_cast<std::size_t>(doubles) * sizeof(double), std::align_val_t(64)))) {
    std::fill(first, first + doubles, 1.0);
  }
  ~LinesOfCache() { ::operator delete(first, std::align_val_t(64)); }
  LinesOfCache(const LinesOfCache&) = delete;
  LinesOfCache& operator=(const LinesOfCache&) = delete;
};

std::string denseKernelBits() {
  Bits bits;
  Draws draw;
  for (const Int64 c : {1, 7, 40, 130}) {
    const Int64 w = (c + 1) / 2;
    const LinesOfCache F(frontDoubles(c, w)), packing(packingDoubles(c));
    std::vector<double*> columns;
    FrontBlock block = firstBlock(c, w);
    for (Int64 j = 0; j < c; ++j) {
      if (j == block.end) block = blockAfter(block, c, w);
      columns.push_back(F.first + columnPlace(block, j));
      for (Int64 i = j; i < c; ++i) columns.back()[i] = i == j ? 2.0 * static_cast<double>(c) : draw();
    }
    EXPECT_EQ(portableKernels.factorFront(F.first, c, w, packing.first), 0);
    for (Int64 j = 0; j < c; ++j)
      bits.add(columns[static_cast<std::size_t>(j)] + j, static_cast<std::size_t>(c - j));

    std::vector<double> L(static_cast<std::size_t>(trapezoidEntries(w, c) + solveMargin)),
        y(static_cast<std::size_t>(c + solveMargin));
    for (double& value : L) value = draw();
    for (double& value : y) value = draw();
    portableKernels.forward(L.data(), w, c, y.data());
    bits.add(y.data(), static_cast<std::size_t>(c));
    for (Int64 i = 0; i < c; ++i) y[static_cast<std::size_t>(i)] = draw();
    portableKernels.backward(L.data(), w, c, y.data());
    bits.add(y.data(), static_cast<std::size_t>(w));
  }
  return bits.text();
}

// A curve that needs no mathematical library: points on straight lines.
std::string elementLaneBits() {
  freshState();
  materialSetup(1);
  const FlowCurve CURVE(run);
  const LaneCurve curve(CURVE);
  Bits bits;
  Draws draw;
  for (int round = 0; round < 20; ++round) {
    MapBatch batch{};
    for (int l = 0; l < laneCount; ++l) {
      batch.p[0][l] = 3.0 + 0.3 * draw(), batch.p[1][l] = 0.3 * draw();
      batch.q[0][l] = 0.3 * draw(), batch.q[1][l] = 2.0 + 0.3 * draw();
      batch.ALONG[l] = 0.33 + 0.02 * draw(), batch.TILT[l] = 0.02 * draw(),
      batch.ACROSS[l] = 0.5 + 0.02 * draw();
      batch.WEIGHT[l] = 6.0;
    }
    EXPECT_TRUE(portableElementLanes.evaluateOverPart(Order::hessian, curve, 0.2, 0.1, batch));
    bits.add(batch.POTENTIAL, laneCount);
    for (const auto& row : batch.GRADIENT) bits.add(row, laneCount);
    for (const auto& row : batch.HESSIAN) bits.add(row, laneCount);
  }
  return bits.text();
}

std::string runBits(const char* sample, std::int32_t material) {
  freshState();
  run.kernels = &portableKernels;
  run.lanes = &portableElementLanes;
  hostile::Mesh mesh = golden::samplePart(sample, 300);
  for (double& x : mesh.knots) x = std::ldexp(std::nearbyint(std::ldexp(x, 20)), -20);
  hostile::Host host(mesh, hostile::Flush::end);
  golden::holdMiddle(host);
  testing::internal::CaptureStdout();
  host.setUp();
  host.analyse(material);
  testing::internal::GetCapturedStdout();
  EXPECT_TRUE(host.converged());
  Bits bits;
  for (const hostile::Reals* array : {&host.RX, &host.EVAL}) bits.add(array->data(), array->length());
  return bits.text();
}

// The lines of the recording that begin with one of `names`.
std::string recorded(const std::vector<std::string>& names) {
  std::ifstream file(TORNWALZEN_PORTABLE_BITS);
  std::string lines;
  for (std::string line; std::getline(file, line);)
    for (const std::string& name : names)
      if (line.starts_with(name)) lines += line + "\n";
  return lines;
}

constexpr const char* advice = "after a deliberate change of the method, this is the new recording:\n";

TEST(PortableBits, OfKernelsAreAsRecorded) {
  const std::string text =
      "dense kernels " + denseKernelBits() + "\nelement lanes " + elementLaneBits() + "\n";
  freshState();
  EXPECT_EQ(text, recorded({"dense kernels", "element lanes"})) << advice << text;
}

TEST(PortableBits, OfRunsAreAsRecorded) {
#ifndef __GLIBC__
  GTEST_SKIP() << "skipped: the C library's logarithms and angles are its own in the last bit";
#endif
  const std::vector<std::string> samples{"square_cup", "s_rail"};
  std::string text;
  for (const std::string& sample : samples)
    for (const std::int32_t material : {0, 1, 2, 10})
      text +=
          sample + " material " + std::to_string(material) + " " + runBits(sample.c_str(), material) + "\n";
  freshState();
  EXPECT_EQ(text, recorded(samples)) << advice << text;
}

}  // namespace
