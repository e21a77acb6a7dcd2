// Making of the team.
#include "sparse/factor_team.hpp"

#include <new>

namespace tornwalzen {

namespace {

bool allocate(FactorTeam& team, Vector<Int> WORK) {
  const Int64 NEQ = WORK(header::equations), m = WORK(header::supernodes), others = team.threads - 1;
  const FactorSchedule& s = team.schedule;
  const Int64 space = std::max(team.threads * s.rangeSpace, s.topSpace);
  if (!team.DOUBLES.allocate(s.space() + space + frontAlignment) ||
      !team.INTEGERS.allocate(others * (NEQ + m)) || !team.CROSSING.allocate(team.solve.CROSSROWS.length()) ||
      !team.ROWS.allocate(team.threads * team.rowsOfWorker()) ||
      !team.ENDED.allocate(team.solve.TOP.length()))
    return false;
  team.INTEGERS.fill(0);
  return true;
}

}  // namespace

Int64 FactorTeam::bytes() const {
  return static_cast<Int64>(sizeof(double)) * (DOUBLES.length() + CROSSING.length() + ROWS.length()) +
         static_cast<Int64>(sizeof(Int)) * (INTEGERS.length() + ENDED.length()) + schedule.bytes() +
         solve.bytes();
}

FactorTeam* teamOf(Analysis& run, SolverProtocol& protocol, Vector<Int> WORK) {
  constexpr int factorPart = 1;  // of structureSum
  ThreadPool* const pool = run.pool.get();
  TeamPointer& team = protocol.team;
  if (pool == nullptr) team.reset();
  if (pool == nullptr) return nullptr;
  const std::uint64_t structure = protocol.structureSum[factorPart];
  if (!team || team->structure != structure || team->threads != pool->threads()) {
    team = TeamPointer(new (std::nothrow) FactorTeam, [](FactorTeam* of) { delete of; });
    if (!team) return nullptr;
    team->structure = structure;
    team->threads = pool->threads();
    const FactorStructure f = factorStructure(WORK);
    const Int m = WORK(header::supernodes);
    const bool made = makeSchedule(f, m, team->threads, team->schedule) &&
                      (!team->schedule.divides ||
                       (makeSolveSchedule(f, m, team->threads, team->solve) && allocate(*team, WORK)));
    if (!made) {
      team.reset();
      return nullptr;
    }
  }
  team->pool = pool;
  return team->schedule.divides ? team.get() : nullptr;
}

}  // namespace tornwalzen
