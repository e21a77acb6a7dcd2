#include "errors/hostile_host.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace hostile {

Host::Host(const Mesh& mesh, Flush flush)
    : MODE("MODE", flush, 1),
      NKNO("NKNO", flush, 1),
      NELE("NELE", flush, 1),
      NEQ("NEQ", flush, 1),
      MNSYSM("MNSYSM", flush, 1),
      NIWOR("NIWOR", flush, 1),
      NRK("NRK", flush, 1),
      INZI("INZI", flush),
      INTA("INTA", flush),
      COLS("COLS", flush),
      ROWI("ROWI", flush),
      WORK("WORK", flush),
      ARFA("ARFA", flush),
      ICTRL("ICTRL", flush, 1),
      ISTAT("ISTAT", flush, 1),
      KNOTS("KNOTS", flush),
      KNG("KNG", flush),
      RWORK("RWORK", flush),
      RR("RR", flush),
      RB("RB", flush),
      RX("RX", flush),
      TEMP("TEMP", flush),
      KNZ("KNZ", flush),
      KNA("KNA", flush),
      ELG("ELG", flush),
      SYSM("SYSM", flush),
      RXA("RXA", flush),
      WRHS("WRHS", flush),
      EVAL("EVAL", flush) {
  PlivaneSetProgressHdlr(onProgress, this);
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
  const std::int64_t nodes = mesh.nodes(), triangles = mesh.triangles();
  NKNO[0] = mesh.nodes();
  NELE[0] = mesh.triangles();
  NEQ[0] = 2 * mesh.nodes();
  MNSYSM[0] = static_cast<std::int32_t>(4 * (nodes + 3 * triangles) - nodes);
  KNOTS.set(mesh.knots);
  INZI.set(mesh.inzi);
  INTA.resize(3 * triangles);
  COLS.resize(2 * nodes + 1);
  ROWI.resize(MNSYSM[0]);
  KNG.resize(3 * nodes);
  ARFA.set(pinned(mesh, std::min<std::int32_t>(mesh.nodes(), 2)));
  supplyResults();
}

void Host::supplyResults() {
  const std::int64_t equations = 2 * std::int64_t{NKNO[0]}, triangles = NELE[0];
  for (Reals* vector : {&RR, &RB, &RX, &TEMP, &RXA, &WRHS}) vector->resize(equations);
  for (Reals* table : {&KNZ, &KNA}) table->resize(3 * equations / 2);
  for (Reals* table : {&ELG, &EVAL}) table->resize(5 * triangles);
}

void Host::supply() {
  ROWI.resize(MNSYSM[0]);
  SYSM.resize(MNSYSM[0]);
  WORK.resize(NIWOR[0]);
  if (MODE[0] > 1) RWORK.resize(NRK[0]);
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
  dropped_ = {name};
  const auto named = [&](const auto* array) { return array->name() == name; };
  const std::vector<Ints*> integers = ints();
  const std::vector<Reals*> doubles = reals();
  return std::any_of(integers.begin(), integers.end(), named) ||
         std::any_of(doubles.begin(), doubles.end(), named);
}

template <class T>
T* Host::given(const GuardedArray<T>& array) const {
  return std::find(dropped_.begin(), dropped_.end(), array.name()) == dropped_.end() ? array.data() : nullptr;
}

std::int32_t Host::init(std::int32_t mode) {
  MODE[0] = mode;
  std::vector<const Ints*> constant{&MODE, &NKNO, &NELE, &NEQ, &INZI};
  if (mode != 1) constant.insert(constant.end(), {&COLS, &ROWI});
  for (const Ints* array : constant) array->readOnly(true);
  KNOTS.readOnly(true);
  OSINIT(given(MODE), given(NKNO), given(NELE), given(NEQ), given(MNSYSM), given(NIWOR), given(NRK),
         given(KNOTS), given(INZI), given(INTA), nullptr, given(COLS), given(ROWI), given(WORK), given(RWORK),
         nullptr, nullptr, nullptr, nullptr, given(KNG), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
         given(ISTAT));
  for (const Ints* array : constant) array->readOnly(false);
  KNOTS.readOnly(false);
  expectGuards();
  return ISTAT[0];
}

std::int32_t Host::analyse(std::int32_t material) {
  ICTRL[0] = material;
  progress.clear();
  const std::vector<const Ints*> constant{&ARFA, &COLS, &ROWI, &ICTRL};
  for (const Ints* array : constant) array->readOnly(true);
  KNG.readOnly(true);
  OSMAIN(given(INTA), given(ARFA), given(COLS), given(ROWI), given(WORK), given(RWORK), given(RR), given(RB),
         given(RX), given(TEMP), given(KNG), given(KNZ), given(KNA), given(ELG), given(SYSM), given(RXA),
         given(WRHS), given(ICTRL), given(EVAL), given(ISTAT));
  for (const Ints* array : constant) array->readOnly(false);
  KNG.readOnly(false);
  expectGuards();
  return ISTAT[0];
}

void Host::expectGuards() {
  for (const Ints* array : ints()) EXPECT_TRUE(array->whole()) << "guard of " << array->name();
  for (const Reals* array : reals()) EXPECT_TRUE(array->whole()) << "guard of " << array->name();
}

bool Host::converged() const {
  std::size_t last = progress.size();
  for (std::size_t i = 0; i < progress.size(); ++i)
    if (progress[i].kind == 0) last = i;
  if (last == progress.size() || progress[last].value != 1.0) return false;
  const auto times =
      std::count_if(progress.begin() + static_cast<std::ptrdiff_t>(last), progress.end(),
                    [](const ProgressEvent& e) { return e.kind == 1 && e.text.rfind("TIME:", 0) == 0; });
  return times == 2 && ISTAT[0] != -1;
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

void Host::onProgress(void* host, const TornwalzenProgress* record) {
  static_cast<Host*>(host)->progress.push_back(
      {record->value, record->kind, record->text != nullptr ? record->text : ""});
}

}  // namespace hostile
