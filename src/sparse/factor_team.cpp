// Making of the team.
#include "sparse/factor_team.hpp"

#include <new>

namespace tornwalzen {

namespace {

/// CROSSROWS: the rows behind each range in the lists of its supernodes.
void listCrossingRows(const FactorStructure& f, FactorTeam& team) {
  const Vector<Int> CROSSROWS = team.CROSSROWS.vector();
  Int64 count = 0;
  for (Int64 i = 1; i <= team.schedule.RANGES.length(); ++i) {
    const SubtreeRange& r = team.schedule.RANGES.vector()(i);
    const Int behind = f.XSUP(r.last + 1);
    for (Int k = r.first; k <= r.last; ++k) {
      Int64 t = f.XLINDX(k + 1);
      while (t > f.XLINDX(k) && f.LINDX(t - 1) >= behind) --t;  // they rise
      for (; t < f.XLINDX(k + 1); ++t) CROSSROWS(++count) = f.LINDX(t);
    }
  }
}

bool allocate(FactorTeam& team, Vector<Int> WORK) {
  const Int64 NEQ = WORK(header::equations), m = WORK(header::supernodes), others = team.threads - 1;
  const FactorSchedule& s = team.schedule;
  const Int64 space = std::max(team.threads * s.rangeSpace, s.topSpace);
  if (!team.DOUBLES.allocate(s.space() + space + frontAlignment) ||
      !team.INTEGERS.allocate(others * (NEQ + m)) || !team.CROSSING.allocate(s.crossing) ||
      !team.CROSSROWS.allocate(s.crossing) || !team.ROWS.allocate(team.threads * team.rowsOfWorker()) ||
      !team.ENDED.allocate(s.TOP.length()))
    return false;
  team.INTEGERS.fill(0);
  listCrossingRows(factorStructure(WORK), team);
  return true;
}

}  // namespace

Int64 FactorTeam::bytes() const {
  return static_cast<Int64>(sizeof(double)) * (DOUBLES.length() + CROSSING.length() + ROWS.length()) +
         static_cast<Int64>(sizeof(Int)) * (INTEGERS.length() + CROSSROWS.length() + ENDED.length()) +
         schedule.bytes();
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
    const bool made =
        makeSchedule(factorStructure(WORK), WORK(header::supernodes), team->threads, team->schedule) &&
        (!team->schedule.divides || allocate(*team, WORK));
    if (!made) {
      team.reset();
      return nullptr;
    }
  }
  team->pool = pool;
  return team->schedule.divides ? team.get() : nullptr;
}

}  // namespace tornwalzen
