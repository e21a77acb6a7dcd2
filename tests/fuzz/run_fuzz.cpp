// The whole call sequence on a small random mesh, with calls left out or repeated and bits flipped in the
// host's arrays between them: every call ends, stays inside the arrays, and a run that says it converged has
// a finite blank and a small residual.
#include <cmath>
#include <cstdlib>
#include <vector>

#include "fuzz/byte_source.hpp"
#include "fuzz/fuzz_target.hpp"
#include "host_kit/default_run.hpp"
#include "host_kit/fixed_host.hpp"

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

struct Host : host_kit::FixedHost<> {
  host_kit::ProgressTold progress;

  explicit Host(fuzz::ByteSource& bytes);
  ~Host() { PlivaneSetProgressHdlr(nullptr, nullptr); }
  void init(std::int32_t mode);
  void analyse();
  void damage(fuzz::ByteSource& bytes);
  void requireTruth() const;
};

// A grid of up to 4 x 4 nodes whose heights, numbers, counts and flags are then spoiled here and there.
Host::Host(fuzz::ByteSource& bytes) {
  std::vector<double> knots;
  std::vector<std::int32_t> inzi;
  const int nx = 1 + static_cast<int>(bytes.below(4)), ny = 1 + static_cast<int>(bytes.below(4));
  for (int j = 0; j < ny; ++j)
    for (int i = 0; i < nx; ++i) knots.insert(knots.end(), {10.0 * i, 10.0 * j, bytes.number() / 4.0});
  for (int j = 0; j + 1 < ny; ++j)
    for (int i = 0; i + 1 < nx; ++i) {
      const int a = j * nx + i + 1, b = a + 1, c = a + nx, d = c + 1;
      inzi.insert(inzi.end(), {a, b, d, a, d, c});
    }
  for (unsigned k = bytes.below(6); k > 0; --k) knots[bytes.byte() % knots.size()] = bytes.number();
  for (unsigned k = bytes.below(6); k > 0 && !inzi.empty(); --k)
    inzi[bytes.byte() % inzi.size()] = static_cast<std::int32_t>(bytes.below(nx * ny + 2));
  open(knots, inzi);
  if (bytes.below(8) == 7) {
    MNSYSM[0] -= bytes.byte();
    host_kit::ExactMemory::resize(ROWI, MNSYSM[0]);
  }
  ARFA[0] = ARFA[1] = ARFA[ARFA.size() - 1] = 0;
  for (unsigned k = bytes.below(6); k > 0; --k)
    ARFA[bytes.byte() % ARFA.size()] = static_cast<std::int32_t>(bytes.below(4)) - 1;
  constexpr std::int32_t materials[] = {1, 0, 2, 10, 7};
  ICTRL[0] = materials[bytes.below(5)];
  PlivaneSetProgressHdlr(host_kit::ProgressTold::take, &progress);
}

void Host::init(std::int32_t mode) {
  FixedHost::init(mode);
  require(ISTAT[0] == 0 || ISTAT[0] == -1);
  if (ISTAT[0] == 0 && mode >= 1 && mode <= 3) supply();
}

void Host::analyse() {
  progress = {};
  FixedHost::analyse();
  require(ISTAT[0] == -1 || ISTAT[0] == (ICTRL[0] <= 2 ? 1 : 0));
  requireTruth();
}

void Host::requireTruth() const {
  if (!progress.converged(ISTAT[0])) return;
  for (const double x : RX) require(std::isfinite(x));
  // The third result is the smallest angle of the part's triangle, which is no number where an edge is so short that
  // its square is zero, or the corners lie on a line.
  for (std::size_t k = 0; k < EVAL.size(); ++k) require(k % 5 == 2 || std::isfinite(EVAL[k]));
  for (std::int32_t i = 0; i < NEQ[0]; ++i)
    require(ARFA[i] != 1 || std::fabs(RR[i]) <= (ISTAT[0] == 1 ? 0.1 : 0.01));  // the two convergence classes
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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tornwalzen::freshState();  // as a host finds it that has just loaded the library
  fuzz::ByteSource bytes(data, size);
  Host host(bytes);
  if (bytes.below(4) != 3) {  // the straight protocol, damaged at most
    for (std::int32_t mode = 1; mode <= 3; ++mode) {
      host.init(mode);
      if (host.ISTAT[0] != 0) break;
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
  return 0;
}
