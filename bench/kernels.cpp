// One front, filled anew before each elimination.
#include "kernels.hpp"

#include <algorithm>
#include <memory>

#include "ground/kernel_tables.hpp"
#include "sparse/kernels/dense_kernels.hpp"
#include "sparse/kernels/front_layout.hpp"

namespace bench {

namespace {

namespace tw = tornwalzen;

struct FreeMemory {
  void operator()(double* p) const { std::free(p); }
};
using OnCacheLine = std::unique_ptr<double, FreeMemory>;

OnCacheLine onCacheLine(tw::Int64 doubles) {
  return OnCacheLine(
      static_cast<double*>(std::aligned_alloc(64, (static_cast<std::size_t>(doubles) * 8 + 63) / 64 * 64)));
}

/// A dominant diagonal: no pivot comes near zero.
void fill(double* F, tw::Int64 c, tw::Int64 w) {
  std::fill(F, F + tw::frontDoubles(c, w), 0.5);
  for (tw::FrontBlock b = tw::firstBlock(c, w); b.first < c; b = tw::blockAfter(b, c, w))
    for (tw::Int64 j = b.first; j < b.end; ++j) F[tw::columnPlace(b, j) + j] = 2.0 * static_cast<double>(c);
}

double rate(const tw::DenseKernels& kernels, tw::Int64 c, tw::Int64 w) {
  const OnCacheLine F = onCacheLine(tw::frontDoubles(c, w)), packing = onCacheLine(tw::packingDoubles(c));
  std::fill(packing.get(), packing.get() + tw::packingDoubles(c), 0.0);
  double flops = 0.0;
  for (tw::Int64 k = 0; k < w; ++k) flops += static_cast<double>((c - k) * (c - k));
  const int within = static_cast<int>(std::clamp(5e6 / flops, 1.0, 10000.0));  // per look at the clock
  // The clock costs as much as a small front: time many, with and without the elimination.
  std::vector<Seconds> filled, both;
  for (int s = 0; s < 7; ++s) {
    filled.push_back(timed([&] {
      for (int k = 0; k < within; ++k) fill(F.get(), c, w);
    }));
    both.push_back(timed([&] {
      for (int k = 0; k < within; ++k) {
        fill(F.get(), c, w);
        kernels.factorFront(F.get(), c, w, packing.get());
      }
    }));
  }
  return 1e-9 * flops * within / (median(both).cpu - median(filled).cpu);
}

}  // namespace

void timeKernels(const Machine& machine, Report& report) {
  const int count = tw::denseKernelTables().count;
  const tw::DenseKernels* const* tables = tw::denseKernelTables().available;
  report.figure("machine", machine.processor.substr(0, machine.processor.find(',')), "fma", "peak",
                machine.fmaPeak, "GFLOP/s");
  if (machine.dgemmPeak > 0.0)
    report.figure("machine", machine.blasCore, "dgemm", "peak", machine.dgemmPeak, "GFLOP/s");
  report.figure("machine", "memory", "read", "bandwidth", machine.readBandwidth, "GB/s");
  std::printf("\nkernels: GFLOP/s of eliminating half of a front, over its rows (FMA peak %.1f)\n%8s",
              machine.fmaPeak, "rows");
  for (int t = 0; t < count; ++t) std::printf(" %10s", tables[t]->name);
  std::printf("\n");
  for (tw::Int64 c : {8, 12, 16, 24, 32, 48, 64, 96, 128, 192, 256, 384, 512, 768, 1024, 1536, 2048}) {
    std::printf("%8d", static_cast<int>(c));
    for (int t = 0; t < count; ++t) {
      const double r = rate(*tables[t], c, c / 2);
      std::printf(" %10.2f", r);
      report.figure("kernel", std::to_string(c), tables[t]->name, "rate", r, "GFLOP/s");
    }
    std::printf("\n");
  }
  std::fflush(stdout);
}

}  // namespace bench
