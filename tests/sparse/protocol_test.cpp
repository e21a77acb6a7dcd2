// The solver's step protocol: order of the phases, lengths, damaged work arrays, the texts of every failure.
#include <gtest/gtest.h>

#include "solver_run.hpp"
#include "sparse/numeric.hpp"
#include "sparse/ordering.hpp"
#include "sparse/phase_guard.hpp"
#include "sparse/solve.hpp"
#include "sparse/symbolic.hpp"
#include "sparse/work_layout.hpp"

using namespace tornwalzen;
using namespace tornwalzen::testing_support;

namespace {

std::string solverText() {
  std::string text(run.messages.MSGSTR_solver, messageLength);
  while (!text.empty() && text.back() == ' ') text.pop_back();
  return text;
}

constexpr char steeringLines[] = " FATALER FEHLER  IN DER STEUERUNG DES LOESERS\n";

std::string steering(int phase) {
  return std::string(steeringLines) + "   IDO= " + "   " + std::to_string(phase) +
         " IST FALSCH, BITTE KOMMENTAR IN KMPKTF LESEN\n";
}

void expectNumericPhaseEndsWith(SolverRun& solver, Int code, const std::string& printed) {
  PhaseSizes sizes;
  Int IERR = 0;
  const SparseMatrix& a = solver.a;
  testing::internal::CaptureStdout();
  runPhase(run, run.solver.protocol, 3, {"COLS", a.cols.data(), a.n + 1},
           {"ROWI", a.rowi.data(), run.solver.nsysm}, {"SYSM", a.values.data(), run.solver.nsysm},
           {"WORK", solver.work.data(), run.solver.niwor}, {"RWORK", solver.rwork.data(), run.solver.nrk},
           sizes, IERR);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), printed);
  EXPECT_EQ(IERR, code);
}

}  // namespace

TEST(SolverProtocol, SizingStepUsesThePatternCountsOnly) {
  SolverRun solver(gridMatrix(5, 4, 1));
  solver.step(11);
  EXPECT_EQ(run.solver.niwreq, 11 * run.solver.neq + 40 + 4 * (run.solver.nsysm - run.solver.neq));
}

TEST(SolverProtocol, RequirementsFollowTheStatedFormulas) {
  SolverRun solver(gridMatrix(12, 9, 1));
  solver.step(11);
  solver.supplyLengths();
  solver.step(12);
  const Int NEQ = run.solver.neq, NNZ = run.solver.nsysm, m = run.solver.protocol.supernodes,
            s = solver.work[header::subscripts - 1];
  const Int A = 3 * m + 2 * (NNZ - NEQ) + 39 + 4 * NEQ, P = 13 * m + 2 * s + 42 + 3 * NEQ;
  const Int B = A + 10 * m + 2 + 2 * s - 2 * NNZ;
  EXPECT_EQ(run.solver.niwreq, std::max({A + m + s + 1 + 3 * NEQ, B, P + 2 * m}));
  EXPECT_EQ(run.solver.nrkreq, 4 * NEQ + solver.work[10]);
  const Int afterOrdering = run.solver.niwreq, realAfterOrdering = run.solver.nrkreq;
  solver.supplyLengths();
  solver.step(13);
  const Int f1 = solver.work[header::largestFront - 1], f2 = solver.work[header::largestUpdate - 1],
            g = solver.work[header::realGrowth - 1];
  EXPECT_EQ(run.solver.niwreq, std::max(afterOrdering, P + 2 * (f1 + f2) + m + NNZ + g));
  EXPECT_EQ(run.solver.nrkreq, realAfterOrdering + (g > NEQ ? 2 * g : 0));
}

// Fronts, stack and packing space of a strip fit into the 2·NEQ doubles that are there anyway: between one and two of
// them here.
TEST(SolverProtocol, ScratchWithinTwiceTheEquationsAsksForNoMore) {
  SolverRun solver(gridMatrix(2, 1000, 1));
  solver.analyse();
  const Int scratch = solver.work[header::scratchDoubles - 1];
  ASSERT_GT(scratch, run.solver.neq);
  ASSERT_LE(scratch, 2 * run.solver.neq);
  EXPECT_EQ(solver.work[header::realGrowth - 1], run.solver.neq);
  EXPECT_EQ(run.solver.nrkreq, 4 * run.solver.neq + solver.work[header::realRequirement - 1]);
  solver.factorize();
  const std::vector<double> b = randomVector(solver.a.n, 1);
  EXPECT_LE(solver.scaledResidual(b, solver.solve(b)), 10.0);
  EXPECT_TRUE(solver.guardsHeld);
}

TEST(SolverProtocol, RepeatedSymbolicStepDoesNotGrowTwice) {
  SolverRun solver(gridMatrix(12, 9, 1));
  solver.analyse();
  const Int integers = run.solver.niwreq, reals = run.solver.nrkreq;
  solver.step(13);
  EXPECT_FALSE(failed(run.ierrso));
  EXPECT_EQ(run.solver.niwreq, integers);
  EXPECT_EQ(run.solver.nrkreq, reals);
  solver.factorize();
  solver.step(13);  // and after a factorization
  EXPECT_FALSE(failed(run.ierrso));
  const std::vector<double> b = randomVector(solver.a.n, 1);
  solver.factorize();
  EXPECT_LE(solver.scaledResidual(b, solver.solve(b)), 10.0);
}

TEST(SolverProtocol, SymbolicStepAcceptsTheOrderingSetAside) {
  SolverRun solver(gridMatrix(12, 9, 1));
  solver.step(11);
  solver.supplyLengths();
  solver.step(12);
  solver.supplyLengths();
  const std::vector<Int> setAside = solver.work;
  solver.step(13);
  solver.supplyLengths();
  std::copy(setAside.begin(), setAside.end(), solver.work.begin());
  solver.step(13);
  EXPECT_FALSE(failed(run.ierrso));
  solver.factorize();
  const std::vector<double> b = randomVector(solver.a.n, 1);
  EXPECT_LE(solver.scaledResidual(b, solver.solve(b)), 10.0);
}

TEST(SolverProtocol, NumericPhaseBeforeTheSymbolicOneIsRefused) {
  SolverRun solver(gridMatrix(3, 3, 1));
  solver.step(11);
  solver.supplyLengths();
  solver.step(12);
  solver.supplyLengths();
  EXPECT_EQ(solver.work[header::phase - 1], 1);
  expectNumericPhaseEndsWith(solver, ierr::outOfOrder, "");
  solver.factorize();
  EXPECT_TRUE(failed(run.ierrso));
  EXPECT_EQ(solverText(), " FATALER FEHLER : FEHLER 3 IN LOESUNGSPHASE @");
}

TEST(SolverProtocol, SymbolicPhaseBeforeTheOrderingIsRefused) {
  SolverRun solver(gridMatrix(3, 3, 1));
  solver.step(11);
  solver.supplyLengths();
  solver.step(13);
  EXPECT_EQ(solverText(), " FATALER FEHLER : FEHLER 2 IN LOESUNGSPHASE @");
}

TEST(SolverProtocol, PhaseNumberInAForeignWorkIsNotBelieved) {
  SolverRun solver(gridMatrix(3, 3, 1));
  solver.step(11);
  solver.supplyLengths();
  solver.work[header::phase - 1] = 3;  // left over from another mesh
  solver.factorize();
  EXPECT_EQ(solverText(), " FATALER FEHLER : FEHLER 3 IN LOESUNGSPHASE @");
}

TEST(SolverProtocol, PhaseNumberAheadOfTheOrderingIsOutOfOrderNotDamage) {
  SolverRun solver(gridMatrix(3, 3, 1));
  solver.step(11);
  solver.supplyLengths();
  solver.step(12);
  solver.supplyLengths();
  solver.work[header::phase - 1] = 2;  // as if the symbolic phase had been through
  expectNumericPhaseEndsWith(solver, ierr::outOfOrder, "");
}

TEST(SolverProtocol, DamageIsToldByItsCode) {
  SolverRun solver(gridMatrix(3, 3, 1));
  solver.analyse();
  ++solver.work[header::length];  // PERM(1)
  expectNumericPhaseEndsWith(solver, -1, steering(3));
}

TEST(SolverProtocol, SizingStepForgetsTheLastMesh) {
  SolverRun solver(gridMatrix(3, 3, 1));
  solver.analyse();
  solver.factorize();
  solver.step(11);
  solver.factorize();
  EXPECT_EQ(solverText(), " FATALER FEHLER : FEHLER 3 IN LOESUNGSPHASE @");
}

TEST(SolverProtocol, RepeatedFactorizationsAreAccepted) {
  SolverRun solver(gridMatrix(6, 3, 1));
  solver.analyse();
  for (int i = 0; i < 4; ++i) {
    solver.factorize();
    EXPECT_FALSE(failed(run.ierrso));
  }
}

TEST(SolverProtocol, UnknownStepDoesNothing) {
  SolverRun solver(gridMatrix(3, 3, 1));
  solver.analyse();
  const std::vector<Int> before = solver.work;
  testing::internal::CaptureStdout();
  for (Int ido : {2, 0, -1, 10, 14, 45}) solver.step(ido);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(solver.work, before);
  EXPECT_EQ(run.ierrso, 0);
}

TEST(SolverProtocol, SolveWithoutAnyFactorIsAZeroCorrectionAndAnError) {
  SolverRun solver(gridMatrix(3, 3, 1));
  solver.analyse();
  EXPECT_EQ(solver.solve(randomVector(18, 1)), std::vector<double>(18, 0.0));
  EXPECT_EQ(solverText(), " FATALER FEHLER : FEHLER 4 IN LOESUNGSPHASE @");
}

TEST(SolverProtocol, SolveAfterAFailedFactorizationIsAZeroCorrection) {
  SolverRun solver(gridMatrix(3, 3, 1));
  solver.analyse();
  solver.factorize();
  std::fill(solver.a.values.begin(), solver.a.values.end(), 0.0);
  solver.factorize();
  EXPECT_EQ(solverText(), " FATALER FEHLER : FEHLER 3 IN LOESUNGSPHASE @");
  EXPECT_EQ(solver.solve(randomVector(18, 1)), std::vector<double>(18, 0.0));
  EXPECT_EQ(solverText(), " FATALER FEHLER : FEHLER 3 IN LOESUNGSPHASE @") << "the cause stays";
}

TEST(SolverProtocol, NaNPivotPassesTheZeroTest) {
  SolverRun solver(gridMatrix(3, 3, 1));
  solver.analyse();
  std::fill(solver.a.values.begin(), solver.a.values.end(), std::numeric_limits<double>::quiet_NaN());
  solver.factorize();
  EXPECT_FALSE(failed(run.ierrso));
}

TEST(SolverProtocol, LengthsTooSmallAreNamedByTheFrontEnd) {
  SolverRun solver(gridMatrix(4, 4, 1));
  solver.step(11);
  solver.supplyLengths();
  run.solver.niwor = run.solver.niwreq - 1;
  solver.step(12);
  EXPECT_TRUE(failed(run.ierrso));
  EXPECT_EQ(solverText(), " FATALER FEHLER : mniwor zu klein @");
  run.ierrso = 0;
  solver.supplyLengths();
  solver.step(12);
  solver.supplyLengths();
  run.solver.niwor = run.solver.niwreq - 1;
  solver.step(13);
  EXPECT_EQ(solverText(), " FATALER FEHLER : niwor zu klein @");
  run.solver.nrk = run.solver.nrkreq - 1;
  solver.step(13);
  EXPECT_EQ(solverText(), " FATALER FEHLER : nrk zu klein @") << "wins when both are short";
}

TEST(SolverProtocol, ShortWorkAtEachPhaseLeavesItsRequirement) {
  SolverRun solver(gridMatrix(8, 8, 1));
  const SparseMatrix& a = solver.a;
  const Vector<const Int> COLS("COLS", a.cols.data(), a.n + 1), ROWI("ROWI", a.rowi.data(), run.solver.nsysm);
  const Vector<const double> SYSM("SYSM", a.values.data(), run.solver.nsysm);
  PhaseSizes sizes;
  Int IERR = 0;
  const auto phase = [&](Int number, Int64 integers, Int64 reals) {
    runPhase(run, run.solver.protocol, number, COLS, ROWI, SYSM, {"WORK", solver.work.data(), integers},
             {"RWORK", solver.rwork.data(), reals}, sizes, IERR);
    return IERR;
  };
  solver.step(11);
  solver.supplyLengths();
  EXPECT_EQ(phase(1, run.solver.niwreq - 1, 0), ierr::shortWork1);
  EXPECT_EQ(solver.work[header::shortage - 1], run.solver.niwreq);
  EXPECT_EQ(phase(1, 10, 0), ierr::shortWork1) << "not even the header fits";

  solver.step(12);
  solver.supplyLengths();
  EXPECT_EQ(phase(2, run.solver.niwreq - 1, run.solver.nrk), ierr::shortWork2);
  EXPECT_EQ(solver.work[header::shortage - 1], run.solver.niwreq);
  EXPECT_EQ(phase(2, 34, run.solver.nrk), ierr::outOfOrder) << "no header to read the last phase from";

  EXPECT_EQ(phase(2, run.solver.niwor, run.solver.nrk), ierr::ok);
  solver.step(13);
  solver.supplyLengths();
  const Int64 needed = solver.work[header::freePhase3 - 1];
  EXPECT_EQ(phase(3, needed, run.solver.nrk), ierr::shortWork3);
  EXPECT_GT(solver.work[header::shortage - 1], needed);
  const Int64 scratch = solver.work[header::scratchDoubles - 1], L = solver.work[header::factorEntries - 1];
  EXPECT_EQ(phase(3, run.solver.niwor, L + a.n + scratch - 1), ierr::shortWork3);
  EXPECT_EQ(solver.work[header::shortage - 1], L + a.n + scratch);
  EXPECT_EQ(phase(3, run.solver.niwor, L + a.n + scratch), ierr::ok);

  std::vector<double> x(a.n, 1.0), scratchVector(a.n);
  triangularSolve(kernelsOf(run), nullptr, {"RWORK", solver.rwork.data(), run.solver.nrk},
                  {"WORK", solver.work.data(), needed - 2}, {"WRHS", scratchVector.data(), a.n},
                  {"RB", x.data(), a.n}, IERR);
  EXPECT_EQ(IERR, ierr::shortWorkSolve);
  EXPECT_EQ(solver.work[header::shortage - 1], needed - 1);
}

TEST(SolverProtocol, DamagedWorkIsRecognisedBeforeTheSymbolicPhase) {
  for (std::size_t at :
       {std::size_t{0}, std::size_t{2}, std::size_t{36}, std::size_t{40}, std::size_t{200}}) {
    SolverRun solver(gridMatrix(4, 4, 1));
    solver.step(11);
    solver.supplyLengths();
    solver.step(12);
    solver.supplyLengths();
    solver.work[at] ^= 1 << 7;
    testing::internal::CaptureStdout();
    solver.step(13);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), steering(2));
    EXPECT_EQ(solverText(), " FATALER FEHLER : FEHLER 2 IN LOESUNGSPHASE @");
    EXPECT_TRUE(solver.guardsHeld);
  }
}

TEST(SolverProtocol, DamagedWorkIsRecognisedBeforeTheNumericPhaseAndTheSolve) {
  SolverRun whole(gridMatrix(4, 4, 1));
  whole.analyse();
  whole.factorize();
  const std::size_t guarded = static_cast<std::size_t>(whole.work[header::freePhase3 - 1]) - 1;
  for (std::size_t at = 0; at < guarded; ++at) {
    const Int entry = static_cast<Int>(at) + 1;
    if (entry == header::shortage || entry == header::freeNow1 || entry == header::freeNow2 ||
        entry == header::phase)
      continue;  // entries that the steps themselves change
    SolverRun solver(whole.a);
    solver.analyse();
    solver.factorize();
    solver.work[at] ^= 1 << (at % 31);
    EXPECT_EQ(solver.solve(randomVector(solver.a.n, 1)), std::vector<double>(solver.a.n, 0.0))
        << "entry " << entry;
    EXPECT_EQ(solverText(), " FATALER FEHLER : FEHLER 4 IN LOESUNGSPHASE @");
    run.ierrso = 0;
    testing::internal::CaptureStdout();
    solver.factorize();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), steering(3)) << "entry " << entry;
    EXPECT_EQ(solverText(), " FATALER FEHLER : FEHLER 3 IN LOESUNGSPHASE @");
    EXPECT_TRUE(solver.guardsHeld);
  }
}

TEST(SolverProtocol, DamagedPlacesOfMatrixEntriesAreRecognised) {
  SolverRun solver(gridMatrix(4, 4, 1));
  solver.analyse();
  solver.factorize();
  solver.work[static_cast<std::size_t>(solver.work[header::freePhase3 - 1]) + 3] ^= 1 << 20;
  testing::internal::CaptureStdout();
  solver.factorize();
  EXPECT_EQ(testing::internal::GetCapturedStdout(), steering(3));
}

TEST(SolverProtocol, EntryWithoutAPlaceInTheStructureIsRefused) {
  // Symbolic phases on a path, numeric phase with an entry that couples one end with nodes ever further away.
  const Int n = 60;
  std::map<std::pair<Int, Int>, double> path;
  for (Int i = 1; i <= n; ++i) {
    path[{i, i}] = 4.0;
    if (i < n) path[{i, i + 1}] = 1.0;
  }
  SolverRun solver(SparseMatrix::fromEntries(n, path));
  solver.analyse();
  Int refused = 0;
  for (Int other = 3; other <= n; ++other) {
    SparseMatrix moved = solver.a;
    moved.rowi[1] = other;
    Int IERR = 0;
    numericPhase(
        kernelsOf(run), nullptr, true, {"COLS", moved.cols.data(), n + 1},
        {"ROWI", moved.rowi.data(), run.solver.nsysm}, {"SYSM", moved.values.data(), run.solver.nsysm},
        {"WORK", solver.work.data(), run.solver.niwor}, {"RWORK", solver.rwork.data(), run.solver.nrk}, IERR);
    EXPECT_TRUE(IERR == ierr::ok || IERR == ierr::noPlace);
    refused += IERR == ierr::noPlace;
  }
  EXPECT_GT(refused, n / 2);
  EXPECT_TRUE(solver.guardsHeld);
}

TEST(SolverProtocol, CountsThatDoNotMatchTheAdjacencyAreInconsistent) {
  SolverRun solver(gridMatrix(4, 4, 1));
  solver.step(11);
  solver.supplyLengths();
  solver.step(12);
  solver.supplyLengths();
  const OrderedStructure o =
      orderedStructure({"WORK", solver.work.data(), run.solver.niwor}, run.solver.neq,
                       solver.work[header::adjacency - 1], run.solver.protocol.supernodes);
  for (const Int change : {-1, 1}) {
    std::vector<Int> work = solver.work;
    work[static_cast<std::size_t>(o.COLCNT.data() - solver.work.data())] += change;
    Int f1, f2, g, IERR = 0;
    symbolicPhase(run.solver.nsysm, {"WORK", work.data(), run.solver.niwor}, f1, f2, g, IERR);
    EXPECT_EQ(IERR, ierr::inconsistent);
  }
}

TEST(SolverProtocol, WorkMayShrinkToTheReportedLengthBetweenTheSteps) {
  for (auto [nx, ny] : {std::pair<Int, Int>{30, 30}, {1, 400}, {3, 200}}) {
    SolverRun solver(gridMatrix(nx, ny, 1));
    for (Int ido : {11, 12, 13}) {
      solver.step(ido);
      run.solver.niwor = run.solver.niwreq;
      run.solver.nrk = run.solver.nrkreq;
      solver.work.resize(run.solver.niwor);
      solver.work.shrink_to_fit();
      solver.rwork.resize(run.solver.nrk);
    }
    solver.factorize();
    const std::vector<double> b = randomVector(solver.a.n, 1);
    EXPECT_LE(solver.scaledResidual(b, solver.solve(b)), 10.0);
    EXPECT_TRUE(solver.guardsHeld);
  }
}
