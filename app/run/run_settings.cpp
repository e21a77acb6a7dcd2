// What a run of the library is made with; see the header.
#include "run/run_settings.hpp"

#include "system/failure.hpp"
#include "tornwalzen_ext.h"

namespace host {

namespace {

void expectAccepted(int code, const std::string& option) {
  if (code != TORNWALZEN_OK) throw Failure(option + ": " + tornwalzen_error_text(code, 1));
}

}  // namespace

void applySettings(const RunSettings& settings) {
  expectAccepted(tornwalzen_reset(), "reset");
  const FlowCurve& curve = settings.curve;
  if (!curve.strain.empty())
    expectAccepted(tornwalzen_set_flow_curve(settings.material, static_cast<int>(curve.strain.size()),
                                             curve.strain.data(), curve.stress.data()),
                   curve.source);
  expectAccepted(tornwalzen_set_normal_anisotropy(settings.r), "--r");
  expectAccepted(tornwalzen_set_energy_reference(settings.partReference ? 1 : 0), "--energy");
  expectAccepted(tornwalzen_set_tolerance_factors(settings.finalFactor, settings.pathFactor), "--tolerance");
}

}  // namespace host
