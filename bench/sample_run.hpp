// One run of the library on one sheet, and the library's arrays for it.
#pragma once

#include <vector>

#include "ground/driver_arrays.hpp"
#include "probes.hpp"
#include "shapes.hpp"

namespace bench {

/// Flags of three held unknowns that take out the rigid motion, 1 held: u and v of the node nearest the middle seen from
/// +z, v of the node farthest from it in x.
std::vector<std::int32_t> heldRigidMotion(const shapes::Sheet& sheet);

/// The host's arrays for one mesh, with the structure set up (OSINIT modes 1 to 3) and three unknowns held
/// that take out the rigid motion: u and v of the node nearest the middle seen from +z, v of the node
/// farthest from it in x.
class SampleRun {
 public:
  /// Throws std::runtime_error if the set-up fails.
  explicit SampleRun(const shapes::Sheet& sheet);

  /// OSMAIN; what happened stands in `probes`. Throws std::runtime_error if a probe stayed silent.
  void analyse(std::int32_t material);
  bool converged() const { return converged_; }

  /// The arrays as the library's procedures take them.
  tornwalzen::DriverArrays arrays();

  std::int32_t nodes() const { return NN_; }
  std::int32_t triangles() const { return NE_; }
  const std::vector<double>& blank() const { return RX_; }

 private:
  void setUp(std::int32_t mode, const shapes::Sheet& sheet);
  void hold(const shapes::Sheet& sheet);

  std::int32_t NN_, NE_, NEQ_, MNSYSM_, NIWOR_ = 0, NRK_ = 0;
  std::vector<std::int32_t> INTA_, ARFA_, COLS_, ROWI_, WORK_;
  std::vector<double> RWORK_, RR_, RB_, RX_, TEMP_, KNG_, KNZ_, KNA_, ELG_, SYSM_, RXA_, WRHS_, EVAL_;
  bool converged_ = false;
};

}  // namespace bench
