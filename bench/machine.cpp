// Peaks by short loops, the best of several.
#include "machine.hpp"

#include <algorithm>
#include <fstream>
#include <numeric>
#include <vector>

#include "clock.hpp"
#ifdef __x86_64__
#include <immintrin.h>
#endif
#ifdef BENCH_OPENBLAS
#include <cblas.h>
extern "C" char* openblas_get_corename(void);
#endif

namespace bench {

namespace {

std::string processorName() {
  std::ifstream info("/proc/cpuinfo");
  for (std::string line; std::getline(info, line);)
    if (line.rfind("model name", 0) == 0) return line.substr(line.find(':') + 2);
  return "unknown processor";
}

// Ten chains of multiply-adds hide the latency of two units.
constexpr int chains = 10;

double portableFma(long rounds) {  // what the baseline instruction set has: a product and a sum
  typedef double V __attribute__((vector_size(16)));
  V s[chains] = {};
  for (long k = 0; k < rounds; ++k)
    for (V& v : s) {
      v = v * 0.999999 + 1e-6;
      asm volatile("" : "+m"(v));
    }
  return 2.0 * chains * 2.0 * static_cast<double>(rounds);
}
#ifdef __x86_64__
__attribute__((target("avx2,fma"))) double avx2Fma(long rounds) {
  __m256d s[chains];
  const __m256d a = _mm256_set1_pd(0.999999), b = _mm256_set1_pd(1e-6);
  for (__m256d& v : s) v = b;
  for (long k = 0; k < rounds; ++k)
#pragma GCC unroll 10
    for (int j = 0; j < chains; ++j) s[j] = _mm256_fmadd_pd(s[j], a, b);
  for (int j = 1; j < chains; ++j) s[0] = _mm256_add_pd(s[0], s[j]);
  volatile double sink = _mm256_cvtsd_f64(s[0]);
  (void)sink;
  return 2.0 * chains * 4.0 * static_cast<double>(rounds);
}
__attribute__((target("avx512f"))) double avx512Fma(long rounds) {
  __m512d s[chains];
  const __m512d a = _mm512_set1_pd(0.999999), b = _mm512_set1_pd(1e-6);
  for (__m512d& v : s) v = b;
  for (long k = 0; k < rounds; ++k)
#pragma GCC unroll 10
    for (int j = 0; j < chains; ++j) s[j] = _mm512_fmadd_pd(s[j], a, b);
  for (int j = 1; j < chains; ++j) s[0] = _mm512_add_pd(s[0], s[j]);
  volatile double sink = _mm512_cvtsd_f64(s[0]);
  (void)sink;
  return 2.0 * chains * 8.0 * static_cast<double>(rounds);
}
#endif

double bestRate(double (*loop)(long)) {  // GFLOP/s
  double best = 0.0;
  for (int k = 0; k < 7; ++k) {
    double flops = 0.0;
    const Seconds t = timed([&] { flops = loop(2000000); });
    best = std::max(best, 1e-9 * flops / t.cpu);
  }
  return best;
}

#ifdef BENCH_OPENBLAS
double dgemmRate() {
  const int n = 768;
  std::vector<double> a(n * n, 0.5), b(n * n, 0.25), c(n * n, 0.0);
  double best = 0.0;
  for (int k = 0; k < 10; ++k) {
    const Seconds t = timed([&] {
      cblas_dgemm(CblasColMajor, CblasNoTrans, CblasTrans, n, n, n, -1.0, a.data(), n, b.data(), n, 1.0,
                  c.data(), n);
    });
    best = std::max(best, 2e-9 * n * n * n / t.cpu);
  }
  return best;
}
#endif

double bandwidth() {  // GB/s
  const std::vector<double> v(std::size_t{32} << 20, 1.0);
  double best = 0.0;
  for (int k = 0; k < 5; ++k) {
    double part[16] = {};
    const Seconds t = timed([&] {
      for (std::size_t i = 0; i < v.size(); i += 16)
        for (int j = 0; j < 16; ++j) part[j] += v[i + j];
    });
    volatile double sink = std::accumulate(part, part + 16, 0.0);
    (void)sink;
    best = std::max(best, 8e-9 * static_cast<double>(v.size()) / t.cpu);
  }
  return best;
}

}  // namespace

bool blasFitsProcessor(const std::string& core, bool avx512, bool avx2, double dgemmPeak, double fmaPeak) {
  const auto isOneOf = [&](std::initializer_list<const char*> names) {
    return std::find(names.begin(), names.end(), core) != names.end();
  };
  if (dgemmPeak < 0.5 * fmaPeak) return false;
  if (avx512) return isOneOf({"SkylakeX", "Cooperlake", "Sapphirerapids", "SapphireRapids"});
  if (avx2) return isOneOf({"Haswell", "Zen", "Excavator", "Skylake"});
  return !core.empty();
}

Machine measureMachine() {
  Machine m;
  bool avx512 = false, avx2 = false;
#ifdef __x86_64__
  __builtin_cpu_init();
  avx512 = __builtin_cpu_supports("avx512f");
  avx2 = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
#endif
  m.processor = processorName() + (avx512 ? ", AVX-512" : avx2 ? ", AVX2" : "");
  m.fmaPeak = bestRate(portableFma);
#ifdef __x86_64__
  if (avx2) m.fmaPeak = std::max(m.fmaPeak, bestRate(avx2Fma));
  if (avx512) m.fmaPeak = std::max(m.fmaPeak, bestRate(avx512Fma));
#endif
#ifdef BENCH_OPENBLAS
  m.blasCore = openblas_get_corename();
  m.dgemmPeak = dgemmRate();
#endif
  m.blasFits = blasFitsProcessor(m.blasCore, avx512, avx2, m.dgemmPeak, m.fmaPeak);
  m.readBandwidth = bandwidth();
  return m;
}

}  // namespace bench
