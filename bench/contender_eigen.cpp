// Eigen's SimplicialLDLT with AMD.
#include <Eigen/SparseCholesky>

#include "contender.hpp"
#include "heap_count.hpp"

namespace bench {

namespace {

class EigenSimplicial : public Contender {
 public:
  explicit EigenSimplicial(const SymmetricMatrix& a)
      : matrix_(a.n, a.n, static_cast<Eigen::Index>(a.row.size()), a.start.data(), a.row.data(),
                a.SYSM.data()) {}
  void analyse() override {
    counted([&] { ldlt_.analyzePattern(matrix_); });
  }
  void factorize() override {
    counted([&] { ldlt_.factorize(matrix_); });
    if (ldlt_.info() != Eigen::Success) throw std::runtime_error("Eigen failed");
  }
  void solve(const std::vector<double>& b, std::vector<double>& x) override {
    x.resize(b.size());
    counted([&] {
      Eigen::Map<Eigen::VectorXd>(x.data(), matrix_.rows()) =
          ldlt_.solve(Eigen::Map<const Eigen::VectorXd>(b.data(), matrix_.rows()));
    });
    if (!solved_) peak_ = std::max(peak_, own_ + 8.0 * static_cast<double>(x.size()));
    solved_ = true;
  }
  Fill fill() const override {
    Fill f;
    const auto L = ldlt_.matrixL().nestedExpression();
    for (Eigen::Index j = 0; j < L.cols(); ++j) {
      const double c = static_cast<double>(L.outerIndexPtr()[j + 1] - L.outerIndexPtr()[j]) + 1.0;
      f.entries += c;
      f.flops += c * c;
    }
    return f;
  }
  double storedEntries() const override { return fill().entries; }
  double peakBytes() const override { return peak_; }

 private:
  // Other contenders allocate between the calls: only what these calls themselves add is this one's.
  template <class Call>
  void counted(Call call) {
    const double before = heapBytes();
    resetHeapPeak();
    call();
    peak_ = std::max(peak_, own_ + heapPeak() - before);
    own_ += heapBytes() - before;
  }

  Eigen::Map<const Eigen::SparseMatrix<double, Eigen::ColMajor, std::int32_t>> matrix_;
  Eigen::SimplicialLDLT<Eigen::SparseMatrix<double, Eigen::ColMajor, std::int32_t>, Eigen::Lower,
                        Eigen::AMDOrdering<std::int32_t>>
      ldlt_;
  double own_ = 0.0, peak_ = 0.0;
  bool solved_ = false;
};

}  // namespace

std::unique_ptr<Contender> makeEigenSimplicial(const SymmetricMatrix& a) {
  return std::make_unique<EigenSimplicial>(a);
}

}  // namespace bench
