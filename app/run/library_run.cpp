// One run of the library; see the header. Array names and lengths are those of tornwalzen.h.
#include "run/library_run.hpp"

#include <chrono>
#include <limits>
#include <utility>

#include "system/failure.hpp"
#include "run/host_array.hpp"
#include "system/text.hpp"
#include "tornwalzen.h"

namespace host {

namespace {

using Clock = std::chrono::steady_clock;
using Ints = HostArray<std::int32_t>;
using Reals = HostArray<double>;

double secondsBetween(Clock::time_point begin, Clock::time_point end) {
  return std::chrono::duration<double>(end - begin).count();
}

// While it lives the library reports to `record`. Nothing may be thrown through the library: the view only
// prints.
class HandlerRegistration {
 public:
  HandlerRegistration(ProgressRecord& record, const std::function<void(const ProgressRecord&)>& onProgress)
      : record_(record), onProgress_(onProgress) {
    PlivaneSetProgressHdlr(handle, this);
  }
  ~HandlerRegistration() { PlivaneSetProgressHdlr(nullptr, nullptr); }
  HandlerRegistration(const HandlerRegistration&) = delete;
  HandlerRegistration& operator=(const HandlerRegistration&) = delete;

 private:
  static void handle(void* self, const TornwalzenProgress* record) {
    auto& registration = *static_cast<HandlerRegistration*>(self);
    registration.record_.take(*record);
    registration.onProgress_(registration.record_);
  }
  ProgressRecord& record_;
  const std::function<void(const ProgressRecord&)>& onProgress_;
};

// The arrays of one mesh and the four calls on them.
class Session {
 public:
  explicit Session(const Part& part);
  void setUp(int mode, double& seconds);
  void analyse(const Hold& hold, int material);
  RunOutput& output() { return output_; }
  void collect(int material);

 private:
  const Part& part_;
  std::int32_t NN_, NE_, NEQ_, MNSYSM_, NIWOR_ = 0, NRK_ = 0;
  Ints INTA_, COLS_, ROWI_, WORK_;
  Reals RWORK_, KNG_, RX_, EVAL_;
  RunOutput output_;
};

// ROWI never needs more than 3 entries per node and 4 per pair of nodes, three pairs per triangle at most;
// the mesh check has made sure that this fits 32 bits.
Session::Session(const Part& part)
    : part_(part),
      NN_(static_cast<std::int32_t>(part.nodes())),
      NE_(static_cast<std::int32_t>(part.elements())),
      NEQ_(2 * NN_),
      MNSYSM_(static_cast<std::int32_t>(4 * (part.nodes() + 3 * part.elements()) - part.nodes())),
      INTA_(3 * part.elements()),
      COLS_(2 * part.nodes() + 1),
      ROWI_(MNSYSM_),
      KNG_(3 * part.nodes()),
      RX_(2 * part.nodes()),
      EVAL_(5 * part.elements()) {}

[[noreturn]] void failSetUp(const Part& part, int mode) {
  const std::string size = counted(part.nodes(), "node") + " and " + counted(part.elements(), "triangle") +
                           " (not enough memory, or more ";
  const std::string what = mode == 1   ? "build the matrix structure for " + size + "than 2147483647 entries)"
                           : mode == 2 ? "order the equations of " + size + "than 2147483647 work entries)"
                                       : "lay out the factor for " + size + "than 2147483647 entries in it)";
  throw Failure("the library could not " + what, exitRunFailed);
}

void Session::setUp(int mode, double& seconds) {
  const Clock::time_point begin = Clock::now();
  const std::int32_t MODE = mode;
  std::int32_t ISTAT = 0;
  OSINIT(&MODE, &NN_, &NE_, &NEQ_, &MNSYSM_, &NIWOR_, &NRK_, part_.points.data(), part_.corners.data(),
         INTA_.data(), nullptr, COLS_.data(), ROWI_.data(), WORK_.data(), RWORK_.data(), nullptr, nullptr,
         nullptr, nullptr, KNG_.data(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &ISTAT);
  if (ISTAT != 0) failSetUp(part_, mode);
  ROWI_.resize(MNSYSM_);
  WORK_.resize(NIWOR_);
  if (mode > 1) RWORK_.resize(NRK_);
  seconds = secondsBetween(begin, Clock::now());
}

void Session::analyse(const Hold& hold, int material) {
  Reals RR(NEQ_), RB(NEQ_), TEMP(NEQ_), RXA(NEQ_), WRHS(NEQ_);
  Reals KNZ(KNG_.length()), KNA(KNG_.length()), ELG(EVAL_.length()), SYSM(MNSYSM_);
  for (Reals* zero : {&RR, &RB, &TEMP, &RXA, &WRHS, &KNZ, &KNA, &ELG, &SYSM, &RX_}) zero->fill(0.0);
  EVAL_.fill(std::numeric_limits<double>::quiet_NaN());  // stays so if no increment converges
  const std::int32_t ICTRL = material;

  const Clock::time_point begin = Clock::now();
  OSMAIN(INTA_.data(), hold.ARFA.data(), COLS_.data(), ROWI_.data(), WORK_.data(), RWORK_.data(), RR.data(),
         RB.data(), RX_.data(), TEMP.data(), KNG_.data(), KNZ.data(), KNA.data(), ELG.data(), SYSM.data(),
         RXA.data(), WRHS.data(), &ICTRL, EVAL_.data(), &output_.ISTAT);
  const Clock::time_point end = Clock::now();
  const bool developed = output_.progress.phase() == RunPhase::increments;
  const Clock::time_point turn = developed ? output_.progress.developed() : end;
  output_.times.development = secondsBetween(begin, turn);
  output_.times.increments = secondsBetween(turn, end);
  for (std::int64_t n = 0; n < NN_; ++n) {
    output_.startingBlank.push_back(KNA[n]);
    output_.startingBlank.push_back(KNA[NN_ + n]);
  }
}

void Session::collect(int material) {
  output_.matrixEntries = MNSYSM_;
  output_.RX.assign(RX_.data(), RX_.data() + RX_.length());
  output_.EVAL.assign(EVAL_.data(), EVAL_.data() + EVAL_.length());
  output_.corners.reserve(static_cast<std::size_t>(INTA_.length()));
  for (std::int64_t e = 0; e < NE_; ++e)
    for (std::int64_t k = 0; k < 3; ++k) output_.corners.push_back(INTA_[k * NE_ + e]);
  output_.report.size = sizeof output_.report;
  tornwalzen_get_report(&output_.report);
  output_.strains.resize(static_cast<std::size_t>(NE_));
  tornwalzen_element_strains(material, NN_, NE_, part_.points.data(), output_.corners.data(),
                             output_.RX.data(), output_.strains.data());
}

}  // namespace

RunOutput runLibrary(const Part& part, const Hold& hold, const RunSettings& settings,
                     const std::function<void(const ProgressRecord&)>& onProgress) {
  applySettings(settings);
  Session session(part);
  const HandlerRegistration registration(session.output().progress, onProgress);
  session.setUp(1, session.output().times.structure);
  session.setUp(2, session.output().times.ordering);
  session.setUp(3, session.output().times.symbolic);
  session.analyse(hold, settings.material);
  session.collect(settings.material);
  return std::move(session.output());
}

}  // namespace host
