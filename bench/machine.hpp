// What this machine can do, measured on one core: the roofs that the solver's figures are held against.
#pragma once

#include <string>

namespace bench {

struct Machine {
  std::string processor;       // name and widest vector set
  std::string blasCore;        // the processor whose kernels OpenBLAS runs, empty without OpenBLAS
  bool blasFits = false;       // are they this processor's? Without that no ratio is given
  double fmaPeak = 0.0;        // GFLOP/s of independent fused multiply-adds in registers
  double dgemmPeak = 0.0;      // GFLOP/s of OpenBLAS' dgemm, 768 × 768 × 768; 0 without OpenBLAS
  double readBandwidth = 0.0;  // GB/s of summing an array of 256 MB
};

/// Measures; some tenths of a second.
Machine measureMachine();

/// Fits if the kernels are written for the widest vector registers that the processor has: by its own name
/// (SkylakeX, Cooperlake, Sapphirerapids for AVX-512, Haswell, Zen, Excavator, Skylake for AVX2), as several
/// processors of one instruction set share a table, and dgemm reaches at least half of the measured FMA peak.
bool blasFitsProcessor(const std::string& core, bool avx512, bool avx2, double dgemmPeak, double fmaPeak);

}  // namespace bench
