// The user's flow curve: from a table in a file, or from a hardening law.
#pragma once

#include <string>

#include "result/run_data.hpp"

namespace host {

// A text file of two columns, plastic strain and flow stress (MPa), separated by comma, semicolon, tab or
// blank; with semicolons the numbers may have decimal commas. Lines that begin with # and empty ones are
// passed over, and so is a first line of headings. Throws Failure with file and line.
FlowCurve readFlowCurve(const std::string& path);

// NAME:KEY=VALUE,... with the names and keys
//   hollomon:K,n   swift:K,e0,n   ludwik:s0,K,n   voce:s0,ss,rate   hockett-sherby:s0,ss,rate,n
// and for each `to`, the strain up to which points are made (1 if it is not given). Throws Failure.
FlowCurve hardeningLaw(const std::string& text);

}  // namespace host
