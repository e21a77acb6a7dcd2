// The forming-limit diagram as a picture.
#pragma once

#include <string>
#include <vector>

#include "result/forming_limit.hpp"

namespace host {

// An SVG file: engineering strains in percent, minor to the right, major upwards; the limit curve, the curve of the
// margin below it, and the triangles as squares of half a percent, coloured by zone; triangles whose strains agree to
// half a percent share one. title: any bytes.
std::string fldPicture(const std::vector<double>& major, const std::vector<double>& minor,
                       const LimitResult& result, const LimitCurve& curve, double margin,
                       const std::string& title);

}  // namespace host
