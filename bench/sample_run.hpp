// One run of the library on one sheet, and the library's arrays for it.
#pragma once

#include <vector>

#include "ground/driver_arrays.hpp"
#include "host_kit/fixed_host.hpp"
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

  std::int32_t nodes() const { return host_.nodes(); }
  std::int32_t triangles() const { return host_.triangles(); }
  const std::vector<double>& blank() const { return host_.RX; }

 private:
  host_kit::FixedHost<> host_;
  bool converged_ = false;
};

}  // namespace bench
