// CHOLMOD by its core interface, 32-bit indices; one ordering, postordered.
#include "contender_cholmod.hpp"

#include <algorithm>

// CHOLMOD assembles its supernodes with OpenMP threads where it was built so: on one core they only get in
// each other's way. There if OpenMP is loaded.
extern "C" void omp_set_num_threads(int) __attribute__((weak));

namespace bench {

Cholmod::Cholmod(const SymmetricMatrix& a, int kind, int ordering, int threads) {
  if (omp_set_num_threads != nullptr) omp_set_num_threads(threads);
  cholmod_start(&common_);
  common_.supernodal = kind;
  common_.nmethods = 1;
  common_.method[0].ordering = ordering;
  common_.postorder = 1;
  common_.print = 0;
  matrix_.nrow = matrix_.ncol = static_cast<std::size_t>(a.n);
  matrix_.nzmax = a.row.size();
  matrix_.p = const_cast<std::int32_t*>(a.start.data());
  matrix_.i = const_cast<std::int32_t*>(a.row.data());
  matrix_.x = const_cast<double*>(a.SYSM.data());
  matrix_.stype = -1;
  matrix_.itype = CHOLMOD_INT;
  matrix_.xtype = CHOLMOD_REAL;
  matrix_.dtype = CHOLMOD_DOUBLE;
  matrix_.sorted = matrix_.packed = 1;
}

Cholmod::~Cholmod() {
  cholmod_free_factor(&L_, &common_);
  for (cholmod_dense** d : {&X_, &Y_, &E_}) cholmod_free_dense(d, &common_);
  cholmod_finish(&common_);
}

void Cholmod::test(bool good) const {
  if (!good || common_.status != CHOLMOD_OK) throw std::runtime_error("CHOLMOD failed");
}

void Cholmod::analyse() {
  L_ = cholmod_analyze(&matrix_, &common_);
  test(L_ != nullptr);
}

void Cholmod::factorize() {
  cholmod_factorize(&matrix_, L_, &common_);
  test(L_->minor == L_->n);
}

void Cholmod::solve(const std::vector<double>& b, std::vector<double>& x) {
  cholmod_dense rhs{};
  rhs.nrow = rhs.nzmax = rhs.d = b.size();
  rhs.ncol = 1;
  rhs.x = const_cast<double*>(b.data());
  rhs.xtype = CHOLMOD_REAL;
  rhs.dtype = CHOLMOD_DOUBLE;
  test(cholmod_solve2(CHOLMOD_A, L_, &rhs, nullptr, &X_, nullptr, &Y_, &E_, &common_) != 0);
  const double* solution = static_cast<const double*>(X_->x);
  x.assign(solution, solution + b.size());
}

double Cholmod::storedEntries() const {
  return static_cast<double>(L_->is_super ? L_->xsize : L_->nzmax);
}

}  // namespace bench
