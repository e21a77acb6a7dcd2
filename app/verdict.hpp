// Whether a run converged, and if not, why, in words for the user.
#ifndef TORNWALZEN_APP_VERDICT_HPP
#define TORNWALZEN_APP_VERDICT_HPP

#include <string>

#include "failure.hpp"
#include "library_run.hpp"
#include "mesh_check.hpp"
#include "run_log.hpp"

namespace host {

struct Verdict {
  bool converged = false;
  std::string reason;  // a sentence without full stop; empty if converged
  ExitStatus status = exitUnconverged;
};

Verdict judge(const Part& part, int material, const RunOutput& run, const RunCounts& counts);

}  // namespace host

#endif
