#include "errors/hostile_host.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace hostile {

Host::Host(const Mesh& mesh, Flush flush) : FixedHost(GuardedMemory{flush}) {
  PlivaneSetProgressHdlr(host_kit::ProgressTold::take, &progress);
  open(mesh);
}

std::vector<Ints*> Host::ints() {
  return {&MODE, &NKNO, &NELE, &NEQ,  &MNSYSM, &NIWOR, &NRK,  &INZI,
          &INTA, &COLS, &ROWI, &WORK, &ARFA,   &ICTRL, &ISTAT};
}

std::vector<Reals*> Host::reals() {
  return {&KNOTS, &KNG, &RWORK, &RR, &RB, &RX, &TEMP, &KNZ, &KNA, &ELG, &SYSM, &RXA, &WRHS, &EVAL};
}

void Host::open(const Mesh& mesh) {
  FixedHost::open(mesh.knots, mesh.inzi, pinned(mesh, std::min<std::int32_t>(mesh.nodes(), 2)));
}

void Host::setUp() {
  for (std::int32_t mode = 1; mode <= 3; ++mode) {
    ASSERT_EQ(init(mode), 0) << "mode " << mode;
    supply();
  }
}

void Host::moveAll() {
  for (Ints* array : ints()) array->move();
  for (Reals* array : reals()) array->move();
}

bool Host::drop(const std::string& name) {
  omit(name);
  const auto named = [&](const auto* array) { return array->name() == name; };
  const std::vector<Ints*> integers = ints();
  const std::vector<Reals*> doubles = reals();
  return std::any_of(integers.begin(), integers.end(), named) ||
         std::any_of(doubles.begin(), doubles.end(), named);
}

std::int32_t Host::init(std::int32_t mode) {
  std::vector<const Ints*> constant{&MODE, &NKNO, &NELE, &NEQ, &INZI};
  if (mode != 1) constant.insert(constant.end(), {&COLS, &ROWI});
  MODE[0] = mode;
  for (const Ints* array : constant) array->readOnly(true);
  KNOTS.readOnly(true);
  FixedHost::init();
  for (const Ints* array : constant) array->readOnly(false);
  KNOTS.readOnly(false);
  expectGuards();
  return ISTAT[0];
}

std::int32_t Host::analyse(std::int32_t material) {
  ICTRL[0] = material;
  progress = {};
  const std::vector<const Ints*> constant{&ARFA, &COLS, &ROWI, &ICTRL};
  for (const Ints* array : constant) array->readOnly(true);
  KNG.readOnly(true);
  FixedHost::analyse();
  for (const Ints* array : constant) array->readOnly(false);
  KNG.readOnly(false);
  expectGuards();
  return ISTAT[0];
}

void Host::expectGuards() {
  for (const Ints* array : ints()) EXPECT_TRUE(array->whole()) << "guard of " << array->name();
  for (const Reals* array : reals()) EXPECT_TRUE(array->whole()) << "guard of " << array->name();
}

void Host::expectTruth() const {
  const auto allFinite = [](const Reals& array) {
    return std::all_of(array.begin(), array.end(), [](double x) { return std::isfinite(x); });
  };
  if (!converged()) {
    const double* const areas = ELG.data() + 4 * (ELG.length() / 5);
    const bool sound = allFinite(KNG) && std::all_of(areas, areas + ELG.length() / 5, [](double area) {
                         return area > 0.0 && std::isfinite(area);
                       });
    EXPECT_TRUE(allFinite(RX) || !sound) << "a part of finite triangles, a blank that is not finite";
    return;
  }
  EXPECT_TRUE(allFinite(RX)) << "converged, and the blank is not finite";
  EXPECT_TRUE(allFinite(EVAL)) << "converged, and the results are not finite";
  const double tolerance = ISTAT[0] == 1 ? 0.1 : 0.01;  // the two convergence classes
  for (std::int64_t i = 0; i < RR.length(); ++i) {
    if (ARFA[i] != 1) continue;
    EXPECT_LE(std::fabs(RR[i]), tolerance) << "converged, residual of unknown " << i + 1;
  }
}

}  // namespace hostile
