// The whole call sequence on a small random mesh, with calls left out or repeated and bits flipped in the
// host's arrays between them: every call ends, stays inside the arrays, and a run that says it converged has
// a finite blank and a small residual.
#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

#include "fuzz/byte_source.hpp"
#include "fuzz/fuzz_target.hpp"
#include "host_kit/default_run.hpp"
#include "tornwalzen.h"

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

// Blocks of exactly the lengths promised, so that the address checker sees every step beyond.
struct Host {
  std::int32_t NN = 0, NE = 0, NEQ = 0, MNSYSM = 0, NIWOR = 0, NRK = 0, ISTAT = 0, ICTRL = 1;
  std::vector<double> KNOTS, KNG, RWORK, RR, RB, RX, TEMP, KNZ, KNA, ELG, SYSM, RXA, WRHS, EVAL;
  std::vector<std::int32_t> INZI, INTA, COLS, ROWI, WORK, ARFA;
  double lastFraction = 0.0;
  int timesAfterFraction = 0;

  explicit Host(fuzz::ByteSource& bytes);
  void init(std::int32_t mode);
  void analyse();
  void damage(fuzz::ByteSource& bytes);
  bool converged() const { return lastFraction == 1.0 && timesAfterFraction == 2 && ISTAT != -1; }
  void requireTruth() const;
  static void onProgress(void* host, const TornwalzenProgress* record);
};

// A grid of up to 4 x 4 nodes whose heights, numbers, counts and flags are then spoiled here and there.
Host::Host(fuzz::ByteSource& bytes) {
  const int nx = 1 + static_cast<int>(bytes.below(4)), ny = 1 + static_cast<int>(bytes.below(4));
  for (int j = 0; j < ny; ++j)
    for (int i = 0; i < nx; ++i) KNOTS.insert(KNOTS.end(), {10.0 * i, 10.0 * j, bytes.number() / 4.0});
  for (int j = 0; j + 1 < ny; ++j)
    for (int i = 0; i + 1 < nx; ++i) {
      const int a = j * nx + i + 1, b = a + 1, c = a + nx, d = c + 1;
      INZI.insert(INZI.end(), {a, b, d, a, d, c});
    }
  for (unsigned k = bytes.below(6); k > 0; --k) KNOTS[bytes.byte() % KNOTS.size()] = bytes.number();
  for (unsigned k = bytes.below(6); k > 0 && !INZI.empty(); --k)
    INZI[bytes.byte() % INZI.size()] = static_cast<std::int32_t>(bytes.below(nx * ny + 2));
  NN = nx * ny;
  NE = static_cast<std::int32_t>(INZI.size() / 3);
  NEQ = 2 * NN;
  MNSYSM = 4 * (NN + 3 * NE) - NN - static_cast<std::int32_t>(bytes.below(8) == 7 ? bytes.byte() : 0);
  ARFA.assign(NEQ, 1);
  ARFA[0] = ARFA[1] = ARFA[ARFA.size() - 1] = 0;
  for (unsigned k = bytes.below(6); k > 0; --k)
    ARFA[bytes.byte() % ARFA.size()] = static_cast<std::int32_t>(bytes.below(4)) - 1;
  constexpr std::int32_t materials[] = {1, 0, 2, 10, 7};
  ICTRL = materials[bytes.below(5)];
  for (std::vector<double>* vector : {&RR, &RB, &RX, &TEMP, &RXA, &WRHS}) vector->resize(NEQ);
  for (std::vector<double>* table : {&KNG, &KNZ, &KNA}) table->resize(3 * NN);
  for (std::vector<double>* table : {&ELG, &EVAL}) table->resize(5 * NE);
  INTA.resize(INZI.size());
  COLS.resize(NEQ + 1);
  ROWI.resize(MNSYSM > 0 ? MNSYSM : 0);
  PlivaneSetProgressHdlr(onProgress, this);
}

void Host::init(std::int32_t mode) {
  OSINIT(&mode, &NN, &NE, &NEQ, &MNSYSM, &NIWOR, &NRK, KNOTS.data(), INZI.data(), INTA.data(), nullptr,
         COLS.data(), ROWI.data(), WORK.data(), RWORK.data(), nullptr, nullptr, nullptr, nullptr, KNG.data(),
         nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &ISTAT);
  require(ISTAT == 0 || ISTAT == -1);
  if (ISTAT != 0 || mode < 1 || mode > 3) return;
  ROWI.resize(MNSYSM);
  ROWI.shrink_to_fit();
  SYSM.resize(MNSYSM);
  WORK.resize(NIWOR);
  WORK.shrink_to_fit();
  if (mode == 1) return;
  RWORK.resize(NRK);
  RWORK.shrink_to_fit();
}

void Host::analyse() {
  lastFraction = 0.0;
  OSMAIN(INTA.data(), ARFA.data(), COLS.data(), ROWI.data(), WORK.data(), RWORK.data(), RR.data(), RB.data(),
         RX.data(), TEMP.data(), KNG.data(), KNZ.data(), KNA.data(), ELG.data(), SYSM.data(), RXA.data(),
         WRHS.data(), &ICTRL, EVAL.data(), &ISTAT);
  require(ISTAT == -1 || ISTAT == (ICTRL <= 2 ? 1 : 0));
  requireTruth();
}

void Host::requireTruth() const {
  if (!converged()) return;
  for (const double x : RX) require(std::isfinite(x));
  // The third result is the smallest angle of the part's triangle, which is no number where an edge is so short that
  // its square is zero, or the corners lie on a line.
  for (std::size_t k = 0; k < EVAL.size(); ++k) require(k % 5 == 2 || std::isfinite(EVAL[k]));
  for (std::int32_t i = 0; i < NEQ; ++i)
    require(ARFA[i] != 1 || std::fabs(RR[i]) <= (ISTAT == 1 ? 0.1 : 0.01));  // the two convergence classes
}

void Host::damage(fuzz::ByteSource& bytes) {
  std::vector<std::int32_t>* const arrays[] = {&COLS, &ROWI, &INTA, &WORK, &ARFA};
  std::vector<std::int32_t>& array = *arrays[bytes.below(5)];
  if (array.empty()) return;
  std::int32_t& element = array[(bytes.byte() | bytes.byte() << 8) % array.size()];
  if (bytes.below(2) == 0)
    element = static_cast<std::int32_t>(static_cast<std::uint32_t>(element) ^ (1u << bytes.below(32)));
  else
    element += static_cast<std::int32_t>(bytes.below(5)) - 2;
}

void Host::onProgress(void* self, const TornwalzenProgress* record) {
  auto& host = *static_cast<Host*>(self);
  if (record->kind == 0) {
    host.lastFraction = record->value;
    host.timesAfterFraction = 0;
  } else if (std::string(record->text).rfind("TIME:", 0) == 0) {
    ++host.timesAfterFraction;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tornwalzen::freshState();  // as a host finds it that has just loaded the library
  fuzz::ByteSource bytes(data, size);
  Host host(bytes);
  if (bytes.below(4) != 3) {  // the straight protocol, damaged at most
    for (std::int32_t mode = 1; mode <= 3; ++mode) {
      host.init(mode);
      if (host.ISTAT != 0) break;
      if (bytes.below(8) == 7) host.damage(bytes);
    }
    host.analyse();
  } else {
    for (unsigned calls = bytes.below(10); calls > 0; --calls) {
      const unsigned what = bytes.below(6);
      if (what < 4)
        host.init(static_cast<std::int32_t>(what));
      else if (what == 4)
        host.analyse();
      else
        host.damage(bytes);
    }
  }
  PlivaneSetProgressHdlr(nullptr, nullptr);
  return 0;
}
